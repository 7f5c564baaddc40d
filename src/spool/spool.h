// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QDir>
#include <QString>

#include <functional>
#include <optional>

/**
 * A folder of records that wait to be sent, one file each, so that neither a failing network nor a
 * power cut loses one. Files of others in the folder are left alone.
 *
 * An object belongs to one thread. Its folder is looked up at each use, since settings change.
 */
class Spool
{
public:
    /** What counts as a record: no links, pipes or hidden files. */
    static constexpr QDir::Filters recordFilter { QDir::Files | QDir::NoSymLinks };

    /** Where the folder is named: by a variable, else by a setting, else below the local data. */
    struct Place
    {
        const char *variable;
        QString setting;
        QString subfolder;
    };

    explicit Spool(Place place);

    /** The folder as it is named now, absolute; it need not exist. */
    [[nodiscard]] QString folder() const;

    /** Whether what waits in it can be seen; logs if not. One that does not exist is fine. */
    [[nodiscard]] bool canBeListed() const;

    /** How many files wait in it. */
    [[nodiscard]] int count() const;

    /**
     * Puts @p record into a new file and returns its path; the record is on disk then. Throws
     * AttendanceErrorException. Without a folder to write to the program ends, as it promises that
     * no record is lost. @p beforeSync is called at most once, when only the disk has to be waited
     * for: the moment for what another thread shall do meanwhile.
     */
    [[nodiscard]] QString create(const QByteArray &record,
                                 std::function<void()> beforeSync = {}) const;

    /** Replaces the content of @p path: the old one or the new one is on disk at any time. */
    static void replace(const QString &path, const QByteArray &record);

    /** Removes @p path if it exists. Returns path, error code and reason of a failure. */
    [[nodiscard]] static std::optional<QString> remove(const QString &path);

    /** Removes what a crash left half written, from a folder that exists. */
    void removeLeftovers() const;

private:
    [[nodiscard]] static QString createIn(const QString &folder, const QByteArray &record,
                                          const std::function<void()> &beforeSync);

    Place m_place;
};
