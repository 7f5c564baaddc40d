// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "base/instancelock.h"

#include <QObject>
#include <QTimer>

/**
 * Keeps a second kiosk of the same user away from reader and records: it shows its schedule and a
 * line that says why no card is read, waits, and takes over when the first one ends. GUI thread.
 */
class InstanceGuard : public QObject
{
    Q_OBJECT

public:
    /** Tries to be the first one, and begins to wait if it is not. */
    explicit InstanceGuard(QObject *parent = nullptr);

    /** True if this kiosk may use reader and records. Stays true. */
    [[nodiscard]] bool isFirst() const { return m_isFirst; }

Q_SIGNALS:
    /** isFirst() has become true after a wait. */
    void becameFirst();

private:
    void tryAgain();

    InstanceLock m_lock;
    QTimer m_timer;
    bool m_isFirst;
};
