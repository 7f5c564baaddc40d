// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "process.h"

#include <QDir>

#include <ctime>
#include <stdexcept>

namespace {

/** The sum of the numbers in the lines that contain @p key. */
qint64 sumOf(const QString &path, const char *key)
{
    QFile file(path);
    file.open(QIODevice::ReadOnly); // a thread that has just ended counts 0
    const QList<QByteArray> lines = file.readAll().split('\n');
    qint64 sum = 0;
    for (const QByteArray &line : lines) {
        if (line.contains(key))
            sum += line.mid(line.indexOf(':') + 1).simplified().split(' ').first().toLongLong();
    }
    return sum;
}

} // namespace

double dirtyMegabytes(const QString &pid)
{
    const auto rollup = QStringLiteral("/proc/%1/smaps_rollup").arg(pid);
    return static_cast<double>(sumOf(rollup, "Private_Dirty")) / 1024;
}

double peakMegabytes(const QString &pid)
{
    const auto status = QStringLiteral("/proc/%1/status").arg(pid);
    return static_cast<double>(sumOf(status, "VmHWM")) / 1024;
}

MeasuredProcess::MeasuredProcess(const QString &program, const QStringList &arguments,
                                 const QProcessEnvironment &environment)
{
    m_process.setProcessEnvironment(environment);
    m_log.open();
    m_process.setStandardInputFile(QProcess::nullDevice());
    m_process.setStandardErrorFile(m_log.fileName());
    m_process.start(program, arguments);
    m_pid = QString::number(m_process.processId());
}

MeasuredProcess::~MeasuredProcess()
{
    m_process.terminate();
    if (!m_process.waitForFinished(5'000))
        m_process.kill();
    m_process.waitForFinished();
}

double MeasuredProcess::cpuMs() const
{
    clockid_t clock {};
    timespec time {};
    if (clock_getcpuclockid(m_pid.toInt(), &clock) != 0 || clock_gettime(clock, &time) != 0)
        throw std::runtime_error("a measured program has ended early");
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

QHash<QString, qint64> MeasuredProcess::switches() const
{
    QHash<QString, qint64> all;
    const QDir tasks(QStringLiteral("/proc/%1/task").arg(m_pid));
    const QStringList threads = tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &thread : threads) // voluntary and involuntary
        all.insert(thread,
                   sumOf(tasks.filePath(thread + QStringLiteral("/status")), "ctxt_switch"));
    return all;
}

QByteArray MeasuredProcess::log()
{
    m_log.seek(0);
    return m_log.readAll();
}

int MeasuredProcess::frames()
{
    return log().count("Frame rendered");
}

QByteArray MeasuredProcess::output()
{
    constexpr int timeoutMs = 20 * 60'000;
    if (!m_process.waitForFinished(timeoutMs) || m_process.exitCode() != 0)
        throw std::runtime_error("a measured program has failed");
    return m_process.readAllStandardOutput();
}
