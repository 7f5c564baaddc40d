// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>

/**
 * Application-wide event filter that reports touches and clicks. Ignores keys and moves, and
 * consumes no event. GUI thread.
 */
class InputEventMonitor : public QObject
{
    Q_OBJECT

public:
    explicit InputEventMonitor(QObject *parent = nullptr);

    bool eventFilter(QObject *obj, QEvent *ev) override;

Q_SIGNALS:
    void inputEvent();
};
