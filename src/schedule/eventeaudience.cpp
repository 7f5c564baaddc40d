// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "schedule/eventeaudience.h"

EventEAudience::EventEAudience(QObject *parent)
    : QObject(parent)
{
}

EventEAudience::EventEAudience(qint64 audienceId, bool mandatory, QObject *parent)
    : QObject(parent)
    , m_audienceId(audienceId)
    , m_mandatory(mandatory)
{
}
