// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "base/failure.h"
#include "spool/durablefile.h"

#include <QByteArray>
#include <QDir>
#include <QString>

#include <optional>

/**
 * A folder of records that wait to be sent, one file each, so that neither a failing network nor a
 * power cut loses one. Foreign files in the folder are left alone.
 *
 * An object belongs to one thread. It looks up its folder at each use, since settings change.
 */
class Spool
{
public:
    /** Matches records: no links, pipes or hidden files. */
    static constexpr QDir::Filters recordFilter { QDir::Files | QDir::NoSymLinks };

    /** Source of the folder's path: a variable, else a setting, else the local data. */
    struct Place
    {
        const char *variable;
        QString setting;
        QString subfolder;
    };

    explicit Spool(Place place);

    /** The absolute path of the folder by the current settings; it need not exist. */
    [[nodiscard]] QString folder() const;

    /** True if the records can be listed or the folder does not exist; otherwise logs a warning. */
    [[nodiscard]] bool canBeListed() const;

    /** Number of records. */
    [[nodiscard]] int count() const;

    /**
     * Puts @p record into a new file and returns its path; the record is on disk then. Throws
     * AttendanceErrorException.
     */
    [[nodiscard]] QString create(const QByteArray &record) const;

    /**
     * First half of create(): writes the record and returns without waiting for the disk, so that
     * the caller can act meanwhile. Throws AttendanceErrorException. Ends the program if the folder
     * cannot be created or is not writable: going on would lose records.
     */
    [[nodiscard]] DurableFile write(const QByteArray &record) const;
    /**
     * Second half of create(): waits for the disk and returns the path of the record. If the folder
     * has vanished, writes the record again. Throws AttendanceErrorException.
     */
    [[nodiscard]] QString commit(DurableFile &file) const;

    /** Content of the record @p path; empty, with a log line, if it cannot be a record. */
    [[nodiscard]] static QByteArray read(const QString &path);

    /** Replaces the content of @p path; the disk always holds the old or the new one. Throws. */
    static void replace(const QString &path, const QByteArray &record);

    /** Removes @p path if it exists. A failure's text has path, error code and reason. */
    [[nodiscard]] static std::optional<Failure> remove(const QString &path);

    /**
     * Removes unfinished records that a crash left behind, and makes the removals of the run before
     * durable. Failures are logged.
     */
    void removeLeftovers() const;

private:
    Place m_place;
};
