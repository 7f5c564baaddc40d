// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QHash>
#include <QProcess>
#include <QTemporaryFile>

/** Megabytes that the process has written to and shares with nobody; @p pid may be "self". */
[[nodiscard]] double dirtyMegabytes(const QString &pid);
/** The most megabytes that the process ever had in memory; @p pid may be "self". */
[[nodiscard]] double peakMegabytes(const QString &pid);

/** A program that runs as long as this object, and what the system says of it. */
class MeasuredProcess
{
public:
    explicit MeasuredProcess(const QString &program, const QStringList &arguments = {},
                             const QProcessEnvironment &environment
                             = QProcessEnvironment::systemEnvironment());
    Q_DISABLE_COPY_MOVE(MeasuredProcess)
    ~MeasuredProcess();

    [[nodiscard]] double dirtyMb() const { return dirtyMegabytes(m_pid); }
    [[nodiscard]] double cpuMs() const;
    /** How often each thread was given the processor so far. */
    [[nodiscard]] QHash<QString, qint64> switches() const;
    /** What it has logged so far. */
    [[nodiscard]] QByteArray log();
    /** How many frames its scene graph has drawn, by the lines that Qt logs for them. */
    [[nodiscard]] int frames();
    /** Waits for its end and returns what it printed. */
    [[nodiscard]] QByteArray output();

private:
    QTemporaryFile m_log;
    QProcess m_process;
    QString m_pid;
};
