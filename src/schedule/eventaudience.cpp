// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "schedule/eventaudience.h"

EventAudience::EventAudience(QObject *parent)
    : QObject(parent)
{
}

EventAudience::EventAudience(qint64 id, int displayOrder, const QString &name, QObject *parent)
    : QObject(parent)
    , m_id(id)
    , m_displayOrder(displayOrder)
    , m_name(name)
{
}

bool EventAudience::sortsBefore(const EventAudience *a, const EventAudience *b)
{
    if (a->m_displayOrder != b->m_displayOrder)
        return a->m_displayOrder < b->m_displayOrder;
    return a->m_name < b->m_name;
}
