// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "spool/disk.h"

#include <QFileInfo>
#include <QMap>
#include <QSet>
#include <QVector>

#include <atomic>
#include <cerrno>
#include <functional>

using Files = QMap<QString, QByteArray>;

/** A disk with what is durable on it and what a power cut may undo. */
struct DiskImage
{
    static constexpr int none = -1;
    static constexpr int folder = 0; // instead of the number of a file

    QVector<std::pair<QByteArray, bool>> files { {} }; ///< content, and whether it is durable
    QMap<QString, QVector<int>> names; ///< the files of a name since the last sync of its folder
    QSet<int> kept; ///< cards whose records must be on disk
    QSet<int> gone; ///< cards whose records must not come back

    void name(const QString &path, int file)
    {
        names[path] = QVector<int>(names.value(path, { none })) << file;
    }

    void syncFolder(const QString &path)
    {
        for (auto each = names.begin(); each != names.end(); ++each)
            if (QFileInfo(each.key()).path() == path)
                each->remove(0, each->size() - 1);
    }

    /** The files after a crash; @p choose gets a number of possibilities, of which 0 is oldest. */
    [[nodiscard]] Files after(const std::function<int(int)> &choose) const
    {
        Files found;
        QStringList lost;
        for (auto each = names.begin(); each != names.end(); ++each) {
            const int number = each->at(choose(each->size()));
            const auto &[content, isDurable] = files.at(std::max(number, 0));
            if (number == none || lost.contains(QFileInfo(each.key()).path()))
                lost.append(each.key());
            else if (number != folder)
                found[each.key()] = isDurable ? content : content.left(choose(content.size() + 1));
        }
        return found;
    }
};

/**
 * The disk of the spools while it lives: makes calls fail, and records what they change. Changes
 * the real files too, but spends no time on syncs.
 */
class CrashDisk : public Disk
{
public:
    enum Call { None, Create, Write, Sync, Rename, SyncFolder, Unlink, AllCalls };
    using Change = std::function<void(DiskImage &image)>;

    CrashDisk() { install(this); }
    Q_DISABLE_COPY_MOVE(CrashDisk)
    ~CrashDisk() override { install(nullptr); }

    /** Makes this call fail with @p code from now on. */
    void fail(Call call, int code = EIO)
    {
        m_code = code;
        m_failing = call;
    }

    [[nodiscard]] const DiskImage &image() const { return m_image; }
    [[nodiscard]] const QVector<std::pair<Call, Change>> &steps() const { return m_steps; }
    bool note(Call call, const Change &change)
    {
        change(m_image);
        m_steps.append({ call, change });
        return true;
    }

    int create(const QString &path) override
    {
        const int descriptor = works(Create) ? Disk::create(path) : -1;
        if (descriptor >= 0)
            note(Create, [path](DiskImage &image) {
                image.name(path, image.files.size());
                image.files.append({ {}, false });
            });
        return descriptor;
    }

    /** Like a nearly full disk, writes only half of what it is given. */
    ssize_t write(int descriptor, const char *data, size_t size) override
    {
        const size_t half = works(Write) ? (size + 1) / 2 : size / 2;
        if (half == 0)
            return -1;
        note(Write, [bytes = QByteArray(data, int(half))](DiskImage &image) {
            image.files.last().first += bytes;
        });
        return Disk::write(descriptor, data, half);
    }

    bool sync(int) override
    {
        return works(Sync)
            && note(Sync, [](DiskImage &image) { image.files.last().second = true; });
    }

    /** Knows no flags, like some file systems. */
    bool rename(const QString &from, const QString &to, unsigned flags) override
    {
        if (flags != 0) {
            errno = EINVAL;
            return false;
        }
        return works(Rename) && Disk::rename(from, to)
            && note(Rename, [from, to](DiskImage &image) {
                   image.name(to, image.names[from].last());
                   image.name(from, DiskImage::none);
               });
    }

    bool syncFolder(const QString &path) override
    {
        return works(SyncFolder)
            && note(SyncFolder, [path](DiskImage &image) { image.syncFolder(path); });
    }

    bool unlink(const QString &path) override
    {
        return works(Unlink) && Disk::unlink(path)
            && note(Unlink, [path](DiskImage &image) { image.name(path, DiskImage::none); });
    }

    bool makeFolder(const QString &path) override
    {
        return Disk::makeFolder(path)
            && note(Create, [path](DiskImage &image) { image.name(path, DiskImage::folder); });
    }

private:
    [[nodiscard]] bool works(Call call) const
    {
        errno = m_code;
        return m_failing != call && m_failing != AllCalls;
    }

    std::atomic<int> m_code = EIO;
    std::atomic<Call> m_failing = None;
    DiskImage m_image;
    QVector<std::pair<Call, Change>> m_steps;
};
