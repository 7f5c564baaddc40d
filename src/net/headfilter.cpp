// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "net/headfilter.h"

#include <QDebug>
#include <QEvent>
#include <QNetworkReply>

namespace {

using HeaderLines = QList<QNetworkReply::RawHeaderPair>;

constexpr int maxHeadBytes = 64 * 1024;
constexpr int maxHeadLines = 100;

/** The private slot that takes the head; Qt's thread of the connection posts the call. */
constexpr auto headSlot = "replyDownloadMetaData(QList<QPair<QByteArray,QByteArray> >,int,QString,"
                          "bool,QSharedPointer<char>,qlonglong,qlonglong,bool)";

bool isTooLarge(const HeaderLines &lines, const QString &reason)
{
    if (lines.size() > maxHeadLines)
        return true;
    qint64 size = reason.size();
    for (const auto &[name, value] : lines)
        size += name.size() + value.size();
    return size > maxHeadBytes;
}

/**
 * Receives a posted call in place of the reply, to look at its arguments. Qt passes the call of a
 * slot that this class does not have to qt_metacall().
 */
class CallProbe : public QObject // clazy:exclude=missing-qobject-macro
{
public:
    enum class Call { Function, OtherSlot, Head, LargeHead };

    explicit CallProbe(int headSlotIndex)
        : m_headSlotIndex(headSlotIndex)
    {
    }

    int qt_metacall(QMetaObject::Call /*call*/, int index, void **arguments) override
    {
        m_call = Call::OtherSlot;
        if (index == m_headSlotIndex) {
            const auto &lines = *static_cast<const HeaderLines *>(arguments[1]);
            const auto &reason = *static_cast<const QString *>(arguments[3]);
            m_call = isTooLarge(lines, reason) ? Call::LargeHead : Call::Head;
        }
        return -1;
    }

    [[nodiscard]] Call call() const { return m_call; }

private:
    int m_headSlotIndex;
    Call m_call = Call::Function;
};

/** Sees the calls that are posted to a reply until one of them brings the head. */
class HeadFilter : public QObject
{
    Q_OBJECT

public:
    HeadFilter(QNetworkReply *reply, int headSlotIndex)
        : QObject(reply)
        , m_reply(reply)
        , m_headSlotIndex(headSlotIndex)
    {
        reply->installEventFilter(this);
    }

    bool eventFilter(QObject *reply, QEvent *event) override
    {
        using Call = CallProbe::Call;

        if (event->type() != QEvent::MetaCall)
            return false;
        CallProbe probe(m_headSlotIndex);
        probe.event(event);
        if (probe.call() == Call::Head || probe.call() == Call::LargeHead)
            reply->removeEventFilter(this);
        if (probe.call() == Call::LargeHead)
            refuse(); // can delete this object
        // A function object has been called by now.
        return probe.call() == Call::LargeHead || probe.call() == Call::Function;
    }

private:
    void refuse()
    {
        if (m_reply->isFinished())
            return;
        qWarning() << "Giving up request for" << m_reply->url() << "since its head is too large";
        m_reply->abort();
    }

    QNetworkReply *m_reply;
    int m_headSlotIndex;
};

} // namespace

void filterHead(QNetworkReply *reply)
{
    const int index = reply->metaObject()->indexOfSlot(headSlot);
    if (index >= 0) // a refused address or a data URL has no head
        new HeadFilter(reply, index);
}

#include "headfilter.moc"
