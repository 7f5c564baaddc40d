// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <sys/types.h>

/**
 * All system calls by which the spools change the disk. Tests install a disk that fails, or that
 * records what a power cut would leave. Has no state, so any thread may call it. Every function
 * reports a failure with the reason in errno.
 */
class Disk
{
public:
    Disk() = default;
    Q_DISABLE_COPY_MOVE(Disk)
    virtual ~Disk() = default;

    /** The installed disk; the real one by default. */
    [[nodiscard]] static Disk &instance();
    /** Installs @p disk, or the real one if it is null. Only while no other thread uses the old. */
    static void install(Disk *disk);

    /** Creates or empties a file that only its owner can use; returns a descriptor or -1. */
    [[nodiscard]] virtual int create(const QString &path);
    /** Writes to the file @p descriptor; returns the number of bytes or -1. May write less. */
    [[nodiscard]] virtual ssize_t write(int descriptor, const char *data, size_t size);
    /** Waits until the file's content is durable. */
    [[nodiscard]] virtual bool sync(int descriptor);
    /** Renames a file; @p flags as for renameat2(). */
    [[nodiscard]] virtual bool rename(const QString &from, const QString &to, unsigned flags = 0);
    /** Waits until new, changed and removed names in @p folder are durable. */
    [[nodiscard]] virtual bool syncFolder(const QString &folder);
    [[nodiscard]] virtual bool unlink(const QString &path);
    /** Creates a folder that only its owner can use. Its parent must exist. */
    [[nodiscard]] virtual bool makeFolder(const QString &path);
};
