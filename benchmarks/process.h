// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QHash>
#include <QProcess>
#include <QTemporaryFile>

/** Private dirty memory of the process in megabytes. @p pid may be "self". */
[[nodiscard]] double dirtyMegabytes(const QString &pid);
/** Peak resident memory of the process in megabytes. @p pid may be "self". */
[[nodiscard]] double peakMegabytes(const QString &pid);

/** Runs a program while this object exists, and measures it. */
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
    /** Number of context switches of each thread so far. */
    [[nodiscard]] QHash<QString, qint64> switches() const;
    /** The program's log so far. */
    [[nodiscard]] QByteArray log();
    /** Number of frames so far, from the lines that Qt logs for them. */
    [[nodiscard]] int frames();
    /** Waits for the end of the program and returns its output. */
    [[nodiscard]] QByteArray output();

private:
    QTemporaryFile m_log;
    QProcess m_process;
    QString m_pid;
};
