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
    explicit CardReadiness(QObject *parent = nullptr);

    /** Why cards are not read; empty while they are. */
    [[nodiscard]] QString warning() const;

Q_SIGNALS:
    void warningChanged();

public Q_SLOTS:
    /** A new worker looks for the reader. Without its success within 5 s the reader is missing. */
    void onSearchStarted();
    void onReaderStateChanged(bool connected);
    /** Nothing is logged until the program restarts. */
    void onLoggingStopped();

private:
    void setReaderMissing(bool missing);

    QTimer m_searchLimit;
    bool m_isReaderMissing = false;
    bool m_isStopped = false;
};
