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
    connect(&m_searchLimit, &QTimer::timeout, this, [this] { set(ReaderMissing, true); });
}

QString CardReadiness::warning() const
{
    switch (fault()) {
    case Waiting:
        //: Small line at the bottom of the screen of a second program
        return tr("Lumenboard already runs on this device. Cards are read here once the other "
                  "program ends.");
    case Stopped:
        //: Small line at the bottom of the screen, after a fatal error
        return tr("Cards are no longer logged. Please call on a staff member in charge.");
    case NotKept:
        //: Small line at the bottom of the screen
        return tr("Cards cannot be logged: the storage of this device cannot be written to. Please "
                  "call on a staff member in charge.");
    case ReaderMissing:
        //: Small line at the bottom of the screen
        return tr("No card reader connected: cards are not read.");
    case None:
        break;
    }
    return {};
}

CardReadiness::Fault CardReadiness::fault() const
{
    for (const Fault fault : { Waiting, Stopped, NotKept, ReaderMissing }) {
        if (m_faults.testFlag(fault))
            return fault;
    }
    return None;
}

void CardReadiness::onSearchStarted()
{
    m_searchLimit.start();
}

void CardReadiness::onReaderStateChanged(bool connected)
{
    m_searchLimit.stop();
    set(ReaderMissing, !connected);
}

void CardReadiness::onLoggingStopped()
{
    set(Stopped, true);
}

void CardReadiness::onRecordsKeptChanged(bool kept)
{
    set(NotKept, !kept);
}

void CardReadiness::set(Fault fault, bool isThere)
{
    if (m_faults.testFlag(fault) == isThere)
        return;
    m_faults.setFlag(fault, isThere);
    Q_EMIT warningChanged();
}
