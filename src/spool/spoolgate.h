// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "spool/spool.h"

#include <QObject>
#include <QTimer>

/**
 * Knows whether a spool's folder can be used, before a card needs it: a card that finds out ends
 * the program. Shut while it cannot; then looks again every 10 s, and logs both changes.
 *
 * Lives in the attendance worker's thread.
 */
class SpoolGate : public QObject
{
    Q_OBJECT

public:
    /** Looks at the folder for the first time. */
    explicit SpoolGate(const Spool &spool, QObject *parent = nullptr);

    [[nodiscard]] bool isOpen() const { return m_isOpen; }
    /** Looks at the folder and returns isOpen(). */
    bool look();

Q_SIGNALS:
    /** After each look at a folder that cannot be used, and after the one that ends it. */
    void looked();

private:
    Spool m_spool;
    QTimer m_timer;
    bool m_isOpen = true;
};
