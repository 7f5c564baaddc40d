// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

/**
 * A file that survives a power cut once it is committed. Until then it has a hidden name in the
 * same folder, so nobody reads an incomplete file; a file that is never committed is removed.
 * Readable and writable by its owner only.
 */
class DurableFile
{
public:
    /** Suffix of the hidden name. */
    static constexpr auto unfinishedSuffix = ".lumenboard-part";

    /** Prepares the file @p path; creates nothing yet. */
    explicit DurableFile(const QString &path);
    DurableFile(DurableFile &&other) noexcept;
    DurableFile &operator=(DurableFile &&) = delete;
    Q_DISABLE_COPY(DurableFile)
    ~DurableFile();

    [[nodiscard]] const QString &path() const { return m_path; }
    [[nodiscard]] const QByteArray &content() const { return m_content; }

    /**
     * Writes @p content and lets the disk start, but does not wait for it. Throws
     * AttendanceErrorException.
     */
    void write(const QByteArray &content);
    /**
     * Waits for the disk and renames the file to @p path. Returns false if that name is taken; the
     * caller may then try another one. Throws AttendanceErrorException.
     */
    [[nodiscard]] bool commitAs(const QString &path);
    /** Waits for the disk and replaces path() atomically. Throws AttendanceErrorException. */
    void commitReplacing();

private:
    void sync(const QString &path);

    QString m_path;
    QByteArray m_content;
    QString m_unfinished; ///< path until it is committed, then empty
    int m_descriptor = -1; ///< of the open file
    bool m_isSynced = false;
};

/** Creates @p folder and its missing parents durably; false on failure. */
[[nodiscard]] bool makeDurableFolder(const QString &folder);
