// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <optional>

/**
 * Tells which process is the kiosk of this user's records: two of them would take the reader and
 * the records from each other.
 *
 * The kernel gives the lock back when its holder ends, however that happens, so none is ever left
 * behind. Belongs to one thread.
 */
class InstanceLock
{
public:
    /** Of the folder with this user's data; in runtimeFolder(). */
    [[nodiscard]] static QString defaultPath();
    /** Process id of the lock's holder; nothing if the lock is free. */
    [[nodiscard]] static std::optional<qint64> holder(const QString &path = defaultPath());

    explicit InstanceLock(QString path = defaultPath());
    Q_DISABLE_COPY_MOVE(InstanceLock)
    ~InstanceLock();

    [[nodiscard]] const QString &path() const { return m_path; }
    /**
     * Takes the lock for the life of this object, unless another process holds it; then returns
     * false. Where nothing can be locked it returns true with a log line: better two than none.
     */
    [[nodiscard]] bool take();

private:
    QString m_path;
    int m_descriptor = -1;
};
