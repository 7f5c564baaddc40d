// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "notifications/notificationbutton.h"

NotificationButton::NotificationButton(QObject *parent)
    : QObject(parent)
{
}

void NotificationButton::setIcon(const QString &icon)
{
    if (m_icon == icon)
        return;
    m_icon = icon;
    Q_EMIT iconChanged();
}

void NotificationButton::setText(const QString &text)
{
    if (m_text == text)
        return;
    m_text = text;
    Q_EMIT textChanged();
}

void NotificationButton::setHighlighted(bool highlighted)
{
    if (m_highlighted == highlighted)
        return;
    m_highlighted = highlighted;
    Q_EMIT highlightedChanged();
}

void NotificationButton::setFlashing(bool flashing)
{
    if (m_flashing == flashing)
        return;
    m_flashing = flashing;
    Q_EMIT flashingChanged();
}

void NotificationButton::setEnabled(bool enabled)
{
    if (m_enabled == enabled)
        return;
    m_enabled = enabled;
    Q_EMIT enabledChanged();
}
