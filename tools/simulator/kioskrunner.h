// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QMap>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

namespace simulator {

/**
 * Runs the kiosk as a child process with private settings, data and cache. The child shares our
 * output and has no standard input.
 */
class KioskRunner : public QObject
{
    Q_OBJECT

public:
    /// @param home the folder for all files of the kiosk, kept for the next run; empty for a
    /// temporary one
    explicit KioskRunner(const QString &home = {}, QObject *parent = nullptr);
    Q_DISABLE_COPY_MOVE(KioskRunner)
    ~KioskRunner() override;

    /// Where the kiosk reads its settings.
    [[nodiscard]] QString settingsPath() const;
    [[nodiscard]] QString errorString() const { return m_errorString; }
    /// Whether the kiosk is running.
    [[nodiscard]] bool isRunning() const { return m_process.state() != QProcess::NotRunning; }

    /// Creates the folders and writes the settings. Other settings of an earlier run stay.
    [[nodiscard]] bool prepare(const QMap<QString, QString> &settings);
    /// Additional environment variables for the kiosk.
    void setVariables(const QMap<QString, QString> &variables) { m_variables = variables; }
    /// Leads to exactly one finished(), even if the program cannot be started.
    void start(const QString &program, const QStringList &arguments);
    /// Terminates the kiosk, and kills it after five seconds.
    void stop();

Q_SIGNALS:
    /// @param status the exit status as in a shell: 128 plus the signal after a crash, 127 if the
    /// program could not be started; errorString() is then set
    void finished(int status);

private:
    void onFinished(int exitCode, QProcess::ExitStatus exitStatus);
    void onErrorOccurred(QProcess::ProcessError error);
    [[nodiscard]] QString folder(const QString &name) const;

    QTemporaryDir m_temporaryHome;
    const QString m_home;
    QString m_errorString;
    QMap<QString, QString> m_variables;
    QProcess m_process;
    QTimer m_killTimer;
};

} // namespace simulator
