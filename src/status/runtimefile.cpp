// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "status/runtimefile.h"

#include "base/runtimefolder.h"

#include <QDebug>
#include <QFile>
#include <QJsonDocument>

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds interval = 10s; // between two writes
constexpr std::chrono::milliseconds patience = 1s; // changes often come together

} // namespace

RuntimeFile::RuntimeFile(const QString &name, Readers readers, std::function<QJsonObject()> content,
                         QObject *parent)
    : QObject(parent)
    , m_path(runtimeFolder() + QLatin1Char('/') + name)
    , m_readers(readers)
    , m_content(std::move(content))
    , m_timer(this)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &RuntimeFile::write);
}

void RuntimeFile::remove()
{
    QFile file(m_path);
    if (!file.remove() && file.exists())
        qWarning() << "Failed to remove" << m_path << file.errorString();
}

void RuntimeFile::update()
{
    if (m_timer.isActive())
        return;
    const std::chrono::milliseconds since(m_sinceWrite.isValid() ? m_sinceWrite.elapsed() : 0);
    m_timer.start(m_sinceWrite.isValid() ? std::max(patience, interval - since) : patience);
}

void RuntimeFile::touch()
{
    if (!m_written.isEmpty() && !m_hasFailed)
        (void)utimensat(AT_FDCWD, QFile::encodeName(m_path).constData(), nullptr, 0);
}

void RuntimeFile::write()
{
    const QByteArray bytes = QJsonDocument(m_content()).toJson();
    if (bytes == m_written)
        return;
    m_sinceWrite.start();
    if (save(bytes))
        m_written = bytes;
    else
        m_written.clear(); // try again with the next change
}

/** Logs a failure when it begins and when it ends, not each 10 s. */
bool RuntimeFile::save(const QByteArray &bytes)
{
    // Not QSaveFile, whose sync would hold up the interface. Nobody needs this file after a power
    // cut.
    QFile file(m_path + QLatin1String(".part"));
    bool isSaved = file.open(QIODevice::WriteOnly);
    if (isSaved && m_readers == Readers::Everybody) // in a folder that they can enter
        file.setPermissions(file.permissions() | QFile::ReadGroup | QFile::ReadOther);
    isSaved = isSaved && file.write(bytes) == bytes.size() && file.flush();
    file.close();
    const QString problem = file.errorString();
    isSaved = isSaved
        && std::rename(QFile::encodeName(file.fileName()).constData(),
                       QFile::encodeName(m_path).constData())
            == 0;
    const bool hadFailed = std::exchange(m_hasFailed, !isSaved);
    if (!isSaved && !hadFailed)
        qWarning() << "Failed to write" << m_path << problem;
    else if (isSaved && hadFailed)
        qInfo() << "Writing" << m_path << "again.";
    return isSaved;
}
