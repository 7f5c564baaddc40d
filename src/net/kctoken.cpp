// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "net/kctoken.h"

KCToken::KCToken(const QString &text, int validity, const QDateTime &obtained, QObject *parent)
    : QObject(parent)
    , m_text(text)
    , m_validity(validity)
    , m_obtained(obtained)
{
}

bool KCToken::isExpired(const QDateTime &now) const
{
    return m_obtained.addSecs(m_validity) <= now;
}
