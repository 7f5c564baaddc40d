// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QMap>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

namespace simulator {

/**
 * Runs the kiosk as a child with settings, data and cache of its own, so that nothing of the
 * user's is touched. The child's output goes where ours goes; it has no standard input.
 */
class KioskRunner : public QObject
{
    Q_OBJECT

public:
    /// @param home the folder that holds all the kiosk's files and stays in the end, for a second
    /// run to find; empty for a temporary one
    explicit KioskRunner(const QString &home = {}, QObject *parent = nullptr);
    Q_DISABLE_COPY_MOVE(KioskRunner)
    ~KioskRunner() override;

    /// Where the kiosk reads its settings.
    [[nodiscard]] QString settingsPath() const;
    [[nodiscard]] QString errorString() const { return m_errorString; }
    /// Whether the kiosk was started and has not ended.
    [[nodiscard]] bool isRunning() const { return m_process.state() != QProcess::NotRunning; }

    /// Makes the folders and writes the settings; those of an earlier run that are not named stay.
    [[nodiscard]] bool prepare(const QMap<QString, QString> &settings);
    /// Further environment variables for the kiosk.
    void setVariables(const QMap<QString, QString> &variables) { m_variables = variables; }
    /// Ends in one finished(), also when the program can not be started.
    void start(const QString &program, const QStringList &arguments);
    /// Asks the kiosk to end and ends it by force if it has not after five seconds.
    void stop();

Q_SIGNALS:
    /// @param status the exit status as a shell gives it: 128 and the signal after a crash, 127 if
    /// the program could not be started, with errorString() set
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
