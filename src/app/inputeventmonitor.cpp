// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/inputeventmonitor.h"

#include <QEvent>

InputEventMonitor::InputEventMonitor(QObject *parent)
    : QObject(parent)
{
}

bool InputEventMonitor::eventFilter(QObject *, QEvent *ev)
{
    if (ev->type() == QEvent::MouseButtonPress || ev->type() == QEvent::TouchBegin)
        Q_EMIT inputEvent();
    return false;
}
