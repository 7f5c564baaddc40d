// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QTimer>

/**
 * Knows whether cards are read: a notice about a lost reader or about the end of logging can be
 * closed, but the next person must know, too. Outlives the window and the attendance thread, whose
 * signals reach it queued. GUI thread.
 */
class CardReadiness : public QObject
{
    Q_OBJECT

public:
    /** What keeps cards from being logged, the worst first. */
    enum Fault { None = 0, Waiting = 1, Stopped = 2, NotKept = 4, ReaderMissing = 8 };
    Q_DECLARE_FLAGS(Faults, Fault)

    explicit CardReadiness(QObject *parent = nullptr);

    [[nodiscard]] Faults faults() const { return m_faults; }
    /** Why cards are not read; empty while they are. */
    [[nodiscard]] QString warning() const;
    /** The worst fault. */
    [[nodiscard]] Fault fault() const;
    /** @p waiting is true while another kiosk reads the cards of this machine. */
    void setWaiting(bool waiting) { set(Waiting, waiting); }

Q_SIGNALS:
    void warningChanged();

public Q_SLOTS:
    /** A new worker looks for the reader. Without its success within 5 s the reader is missing. */
    void onSearchStarted();
    void onReaderStateChanged(bool connected);
    /** Nothing is logged until the program restarts. */
    void onLoggingStopped();
    /** @p kept is false while no record can be written to the disk. */
    void onRecordsKeptChanged(bool kept);

private:
    void set(Fault fault, bool isThere);

    QTimer m_searchLimit;
    Faults m_faults;
};
