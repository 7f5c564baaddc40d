// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QMutex>
#include <QStringList>

/** A string literal in UTF-8. */
inline QString operator""_s(const char *text, std::size_t size)
{
    return QString::fromUtf8(text, static_cast<int>(size));
}

/**
 * Captures the log of all threads while it lives. A warning or worse is unexpected unless the test
 * announces it. Only one trap exists at a time.
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

    /** Lines that contain @p text may come, and at least one must. */
    void expect(const QString &text) { m_expected.append(text); }

    /** Lines that contain @p text may come. */
    void allow(const QString &text) { m_allowed.append(text); }

    /** All lines so far. */
    [[nodiscard]] QStringList lines() const
    {
        const QMutexLocker lock(&m_mutex);
        return m_lines;
    }

    /** Unexpected and missing lines. */
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
        s_trap->m_lines.append(text);
        if (type != QtDebugMsg && type != QtInfoMsg)
            s_trap->m_warnings.append(text);
    }

    inline static LogTrap *s_trap = nullptr; // a message handler gets no context
    mutable QMutex m_mutex; ///< guards the next two
    QStringList m_lines;
    QStringList m_warnings; ///< the lines of m_lines above the info level
    QStringList m_expected;
    QStringList m_allowed;
    QtMessageHandler m_previous;
};
