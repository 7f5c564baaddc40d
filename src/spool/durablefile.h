// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

class QFile;

/**
 * A file that survives a power cut once it is committed. Until then its content lies under a hidden
 * name in the same folder, so nobody sees half of it; a file that is never committed leaves nothing
 * behind. Readable and writable by its owner only.
 */
class DurableFile
{
public:
    /** Ends the hidden name. */
    static constexpr auto unfinishedEnding = ".lumenboard-part";

    /** A file that is to become @p path. Nothing is on disk yet. */
    explicit DurableFile(const QString &path);
    DurableFile(DurableFile &&other) noexcept;
    DurableFile &operator=(DurableFile &&) = delete;
    Q_DISABLE_COPY(DurableFile)
    ~DurableFile();

    [[nodiscard]] const QString &path() const { return m_path; }
    [[nodiscard]] const QByteArray &content() const { return m_content; }

    /**
     * Writes @p content and returns without waiting for the disk, which begins at once. Throws
     * AttendanceErrorException.
     */
    void write(const QByteArray &content);
    /**
     * Waits for the disk and names the file @p path. Returns false if that name is taken; another
     * one can be tried then. Throws AttendanceErrorException.
     */
    [[nodiscard]] bool commitAs(const QString &path);
    /** Waits for the disk and replaces path() at once. Throws AttendanceErrorException. */
    void commitReplacing();

private:
    void sync(const QString &path);

    QString m_path;
    QByteArray m_content;
    std::unique_ptr<QFile> m_unfinished; ///< until it is committed
};

/** Creates @p folder and its missing parents durably; false on failure. */
[[nodiscard]] bool makeDurableFolder(const QString &folder);

/** Makes the names in @p folder durable, new and removed ones; false on failure, with errno set. */
[[nodiscard]] bool syncFolder(const QString &folder);
