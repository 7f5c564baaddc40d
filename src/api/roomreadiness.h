// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QTimer>

/**
 * Knows whether the schedule view has a room to show. Without one it looks like a room in which
 * nothing is on. Gives the configuration service some time after the start. GUI thread.
 */
class RoomReadiness : public QObject
{
    Q_OBJECT

public:
    explicit RoomReadiness(QObject *parent = nullptr);

    /** Why no room is shown; empty if one is, or if the start view shows none. */
    [[nodiscard]] QString warning() const;

Q_SIGNALS:
    void warningChanged();

private:
    QTimer m_patience;
};
