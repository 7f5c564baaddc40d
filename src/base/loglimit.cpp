// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "base/loglimit.h"

#include <QAbstractEventDispatcher>
#include <QLocale>
#include <QTimer>

#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr auto window = 1s;

QtMessageHandler s_write = nullptr; ///< Qt's own handler
int s_lines = LogLimit::defaultLines;
/// Trivial, so that it can still be read when the thread has destroyed its other variables.
thread_local bool s_isThreadOver = false;

RateLimit::Time now()
{
    return std::chrono::duration_cast<RateLimit::Time>(
        std::chrono::steady_clock::now().time_since_epoch());
}

/**
 * The limits of one thread. Each thread has its own: a mutex here would stay locked if the thread
 * that holds it were terminated, and then block every thread that logs.
 */
class ThreadLog
{
public:
    ThreadLog()
        : m_limit(s_lines, s_write)
    {
    }
    Q_DISABLE_COPY_MOVE(ThreadLog)
    ~ThreadLog()
    {
        s_isThreadOver = true;
        m_limit.flushAll();
    }

    void log(QtMsgType type, const QMessageLogContext &context, const QString &text)
    {
        if (m_limit.log(type, context, text, now()))
            flushLater();
    }
    void flush() { m_limit.flushAll(); }

private:
    /** Without an event loop the next line of the source, or the end of the thread, does it. */
    void flushLater()
    {
        if (m_isWaiting || !QAbstractEventDispatcher::instance())
            return;
        m_isWaiting = true;
        QTimer::singleShot(window, Qt::CoarseTimer, [this] {
            m_isWaiting = false;
            if (m_limit.flush(now()))
                flushLater();
        });
    }

    LogLimit m_limit;
    bool m_isWaiting = false;
};

ThreadLog &threadLog()
{
    thread_local ThreadLog log;
    return log;
}

/** Compares names by content, since QML passes them in buffers of its own. */
uint sourceOf(const QMessageLogContext &context)
{
    const uint category = qHashBits(context.category, qstrlen(context.category));
    return qHashBits(context.file, qstrlen(context.file), category)
        ^ static_cast<uint>(context.line);
}

void handleMessage(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type == QtFatalMsg || s_isThreadOver)
        s_write(type, context, type == QtFatalMsg ? text : logExcerpt(text));
    else
        threadLog().log(type, context, text);
}

} // namespace

LogLimit::LogLimit(int lines, Writer write)
    : m_lines(lines)
    , m_write(std::move(write))
{
}

bool LogLimit::log(QtMsgType type, const QMessageLogContext &context, const QString &text, Time now)
{
    if (m_lines <= 0) {
        m_write(type, context, logExcerpt(text));
        return false;
    }
    const uint source = sourceOf(context);
    auto each = m_sources.find(source);
    if (each == m_sources.end())
        each = m_sources.insert(source, { RateLimit(m_lines, window), type, {} });
    if (each->limit.isOver(now))
        writeCount(*each);
    const bool isFirst = !each->limit.hasRefused();
    if (each->limit.admits(now)) {
        m_write(type, context, logExcerpt(text));
        return false;
    }
    if (isFirst)
        each->refused = logExcerpt(text);
    return isFirst;
}

bool LogLimit::flush(Time now)
{
    bool isCounting = false;
    for (Source &source : m_sources) {
        if (source.limit.isOver(now))
            writeCount(source);
        isCounting |= source.limit.hasRefused();
    }
    return isCounting;
}

void LogLimit::writeCount(Source &source)
{
    constexpr int shownLength = 60;
    if (!source.limit.hasRefused())
        return;
    const QString number = QLocale(QLocale::English)
                               .toString(source.limit.takeRefused())
                               .replace(QLatin1Char(','), QLatin1Char(' '));
    m_write(source.type, QMessageLogContext(),
            QStringLiteral("… and %1 more: %2").arg(number, source.refused.left(shownLength)));
}

QString logExcerpt(const QString &text)
{
    QByteArray bytes = text.leftRef(LogLimit::maxBytes).toUtf8();
    const bool isCut = text.size() > LogLimit::maxBytes || bytes.size() > LogLimit::maxBytes;
    if (isCut) {
        const QByteArray mark = QByteArrayLiteral(" …");
        int end = LogLimit::maxBytes - mark.size();
        while (end > 0 && (bytes.at(end) & 0xC0) == 0x80) // inside a character
            --end;
        bytes = bytes.left(end) + mark;
    }
    // A line break from outside could forge a line.
    QString line = QString::fromUtf8(bytes);
    for (QChar &c : line)
        if (c.category() == QChar::Other_Control)
            c = QLatin1Char(' ');
    return line;
}

void installLogLimit()
{
    bool isNumber = false;
    const int lines = qEnvironmentVariableIntValue("LUMENBOARD_LOG_LINES", &isNumber);
    if (isNumber)
        s_lines = lines;
    s_write = qInstallMessageHandler(&handleMessage);
}

void flushLog()
{
    threadLog().flush();
}
