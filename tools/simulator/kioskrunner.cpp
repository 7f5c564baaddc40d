// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/kioskrunner.h"

#include <QDir>
#include <QSettings>

#include <array>
#include <chrono>

namespace simulator {

using namespace std::chrono_literals;

namespace {

    constexpr auto stopTimeout = 5s;
    constexpr int notStartedStatus = 127;
    constexpr int crashedStatus = 128;

    struct Folder
    {
        const char *variable;
        const char *name;
    };

    constexpr Folder configFolder { "XDG_CONFIG_HOME", "config" };
    constexpr Folder runtimeFolder { "XDG_RUNTIME_DIR", "run" };
    constexpr std::array<Folder, 4> folders { {
        configFolder,
        { "XDG_DATA_HOME", "data" },
        { "XDG_CACHE_HOME", "cache" },
        runtimeFolder,
    } };

    /** Names the compositor's socket by its path, as the kiosk gets another runtime folder. */
    void keepCompositor(QProcessEnvironment &environment)
    {
        const QString variable = QStringLiteral("WAYLAND_DISPLAY");
        const QString socket = environment.value(variable);
        if (!socket.isEmpty())
            environment.insert(
                variable,
                QDir(environment.value(QLatin1String(runtimeFolder.variable))).filePath(socket));
    }

} // namespace

KioskRunner::KioskRunner(const QString &home, QObject *parent)
    : QObject(parent)
    , m_home(home.isEmpty() ? m_temporaryHome.path() : QDir(home).absolutePath())
{
    m_process.setProcessChannelMode(QProcess::ForwardedChannels);
    m_process.setStandardInputFile(QProcess::nullDevice());
    m_killTimer.setSingleShot(true);
    m_killTimer.setInterval(stopTimeout);
    connect(&m_killTimer, &QTimer::timeout, &m_process, &QProcess::kill);
    connect(&m_process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this,
            &KioskRunner::onFinished);
    connect(&m_process, &QProcess::errorOccurred, this, &KioskRunner::onErrorOccurred);
}

KioskRunner::~KioskRunner()
{
    m_process.disconnect(this);
    if (!isRunning())
        return;
    m_process.terminate();
    if (!m_process.waitForFinished(std::chrono::milliseconds(stopTimeout).count()))
        m_process.kill();
}

QString KioskRunner::settingsPath() const
{
    return folder(QLatin1String(configFolder.name))
        + QStringLiteral("/Kettlewood/Lumenboard2.conf");
}

bool KioskRunner::prepare(const QMap<QString, QString> &settings)
{
    QStringList paths { QFileInfo(settingsPath()).path() };
    for (const Folder &each : folders)
        paths += folder(QLatin1String(each.name));
    const auto ownerOnly = QFile::ReadOwner | QFile::WriteOwner;
    for (const QString &path : qAsConst(paths)) {
        if (!QDir().mkpath(path) || !QFile::setPermissions(path, ownerOnly | QFile::ExeOwner)) {
            m_errorString = QStringLiteral("Cannot create the folder %1").arg(path);
            return false;
        }
    }

    QSettings file(settingsPath(), QSettings::IniFormat);
    file.setIniCodec("UTF-8");
    for (auto setting = settings.begin(); setting != settings.end(); ++setting)
        file.setValue(setting.key(), setting.value());
    file.sync();
    if (file.status() != QSettings::NoError || !QFile::setPermissions(settingsPath(), ownerOnly)) {
        m_errorString = QStringLiteral("Cannot write %1").arg(settingsPath());
        return false;
    }
    return true;
}

void KioskRunner::start(const QString &program, const QStringList &arguments)
{
    auto environment = QProcessEnvironment::systemEnvironment();
    keepCompositor(environment);
    for (const Folder &each : folders)
        environment.insert(QLatin1String(each.variable), folder(QLatin1String(each.name)));
    for (auto each = m_variables.begin(); each != m_variables.end(); ++each)
        environment.insert(each.key(), each.value());
    m_process.setProcessEnvironment(environment);
    m_process.start(program, arguments);
}

void KioskRunner::stop()
{
    // Wait, because before its exec() the child would run our own signal handler.
    if (!m_process.waitForStarted())
        return;
    m_process.terminate();
    m_killTimer.start();
}

void KioskRunner::onFinished(int exitCode, QProcess::ExitStatus exitStatus)
{
    m_killTimer.stop();
    // After a crash Qt reports the signal as the exit code.
    Q_EMIT finished(exitStatus == QProcess::NormalExit ? exitCode : crashedStatus + exitCode);
}

void KioskRunner::onErrorOccurred(QProcess::ProcessError error)
{
    if (error != QProcess::FailedToStart)
        return; // finished() follows
    m_errorString
        = QStringLiteral("Cannot start %1: %2").arg(m_process.program(), m_process.errorString());
    Q_EMIT finished(notStartedStatus);
}

QString KioskRunner::folder(const QString &name) const
{
    return m_home + QLatin1Char('/') + name;
}

} // namespace simulator
