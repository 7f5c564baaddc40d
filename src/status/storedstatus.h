// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "status/startcount.h"

#include <QDateTime>
#include <QJsonObject>
#include <QString>

#include <chrono>
#include <optional>

/**
 * What a kiosk has left in its runtime folder, at one moment, as "--status" reads it. The kiosk may
 * be another user's. Paths name a value by its keys, as "schedule.received".
 */
class StoredStatus
{
public:
    /** The folder of the packaged service if it exists, else the user's; or RUNTIME_DIRECTORY. */
    [[nodiscard]] static QString defaultFolder();

    /** Throws Exception if the folder or its files exist and cannot be read. */
    [[nodiscard]] static StoredStatus read(const QString &folder);

    /** True if a process holds the lock of a kiosk. */
    [[nodiscard]] bool isRunning() const { return m_process.has_value(); }
    /** True if the status is that of the running kiosk, else it is of one that has ended. */
    [[nodiscard]] bool isPresent() const;
    [[nodiscard]] const QJsonObject &json() const { return m_json; }
    [[nodiscard]] const StartCount &starts() const { return m_starts; }
    /** When all parts of the kiosk answered last; invalid if none ever did. */
    [[nodiscard]] QDateTime signOfLife() const { return m_signOfLife; }
    /** When the kiosk took its lock; invalid if it does not run. */
    [[nodiscard]] QDateTime lockTime() const { return m_lockTime; }
    /** The moment of the reading. */
    [[nodiscard]] QDateTime now() const { return m_now; }

    [[nodiscard]] QJsonValue value(const QString &path) const;
    [[nodiscard]] QString text(const QString &path) const { return value(path).toString(); }
    [[nodiscard]] int number(const QString &path) const { return value(path).toInt(); }
    [[nodiscard]] bool flag(const QString &path) const { return value(path).toBool(); }
    /** Invalid if it never happened. */
    [[nodiscard]] QDateTime time(const QString &path) const;
    /** Time since then, or nothing. Negative for the future, as after a clock was set. */
    [[nodiscard]] std::optional<std::chrono::seconds> age(const QString &path) const;
    [[nodiscard]] std::chrono::seconds age(const QDateTime &time) const;

private:
    void readLocks(const QString &folder);
    void readStatus(const QString &path);

    QJsonObject m_json;
    StartCount m_starts;
    std::optional<qint64> m_process; ///< that holds the lock
    QDateTime m_lockTime;
    QDateTime m_signOfLife;
    QDateTime m_now = QDateTime::currentDateTimeUtc();
};
