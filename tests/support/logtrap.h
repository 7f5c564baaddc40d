// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QMutex>
#include <QStringList>

/** Text in UTF-8; the tests are full of it. */
inline QString operator""_s(const char *text, std::size_t size)
{
    return QString::fromUtf8(text, static_cast<int>(size));
}

/**
 * Takes the log while it lives, and knows what in it was not foreseen.
 *
 * A warning or worse is a surprise unless it was announced, and an announced line that never came
 * is missed. Lines may come from any thread. One trap at a time.
 */
class LogTrap
{
public:
    LogTrap()
    {
        s_trap = this;
        m_previous = qInstallMessageHandler(&LogTrap::handle);
    }
    Q_DISABLE_COPY_MOVE(LogTrap)
    ~LogTrap() { qInstallMessageHandler(m_previous); }

    /** Lines with @p text in them may come, and at least one has to. */
    void expect(const QString &text) { m_expected.append(text); }

    /** Lines with @p text in them may come. */
    void allow(const QString &text) { m_allowed.append(text); }

    /** All lines so far but those of the debug level. */
    [[nodiscard]] QStringList lines() const
    {
        const QMutexLocker lock(&m_mutex);
        return m_lines;
    }

    /** What came unannounced and what did not come; empty if all is well. */
    [[nodiscard]] QString complaints() const
    {
        const QMutexLocker lock(&m_mutex);
        QStringList surprises = m_warnings;
        QString missing;
        for (const QString &text : m_expected + m_allowed) {
            for (const QString &line : m_warnings.filter(text))
                surprises.removeAll(line);
            if (m_expected.contains(text) && m_lines.filter(text).isEmpty())
                missing += QStringLiteral("\nmissing: ") + text;
        }
        return surprises.join(QLatin1Char('\n')) + missing;
    }

private:
    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &text)
    {
        if (type == QtFatalMsg)
            s_trap->m_previous(type, context, text);
        const QMutexLocker lock(&s_trap->m_mutex);
        if (type != QtDebugMsg)
            s_trap->m_lines.append(text);
        if (type != QtDebugMsg && type != QtInfoMsg)
            s_trap->m_warnings.append(text);
    }

    inline static LogTrap *s_trap = nullptr; // a message handler gets no context
    mutable QMutex m_mutex; ///< guards the next two
    QStringList m_lines;
    QStringList m_warnings; ///< those of m_lines that are not mere information
    QStringList m_expected;
    QStringList m_allowed;
    QtMessageHandler m_previous;
};
