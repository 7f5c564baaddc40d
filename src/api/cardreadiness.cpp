// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "api/cardreadiness.h"

using namespace std::chrono_literals;

CardReadiness::CardReadiness(QObject *parent)
    : QObject(parent)
    , m_searchLimit(this)
{
    m_searchLimit.setSingleShot(true);
    m_searchLimit.setInterval(5s);
    connect(&m_searchLimit, &QTimer::timeout, this, [this] { setReaderMissing(true); });
}

QString CardReadiness::warning() const
{
    if (m_isStopped)
        //: Small line at the bottom of the screen, after a fatal error
        return tr("Cards are no longer logged. Please call on a staff member in charge.");
    if (m_isReaderMissing)
        //: Small line at the bottom of the screen
        return tr("No card reader connected: cards are not read.");
    return {};
}

void CardReadiness::onSearchStarted()
{
    m_searchLimit.start();
}

void CardReadiness::onReaderStateChanged(bool connected)
{
    m_searchLimit.stop();
    setReaderMissing(!connected);
}

void CardReadiness::onLoggingStopped()
{
    m_isStopped = true;
    Q_EMIT warningChanged();
}

void CardReadiness::setReaderMissing(bool missing)
{
    if (m_isReaderMissing == missing)
        return;
    m_isReaderMissing = missing;
    Q_EMIT warningChanged();
}
