// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "attendance/attendancenamecache.h"

#include "base/exceptions.h"
#include "base/failure.h"
#include "base/xmlguard.h"
#include "config/config.h"
#include "config/keys.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace {

namespace xml {
    const QString root = QStringLiteral("attendanceNameCache");
    const QString entry = QStringLiteral("entry");
    const QString id = QStringLiteral("id");
    const QString name = QStringLiteral("name");
} // namespace xml

} // namespace

AttendanceNameCache::AttendanceNameCache(QObject *parent)
    : QObject(parent)
{
    load();
}

AttendanceNameCache::~AttendanceNameCache()
{
    save();
}

void AttendanceNameCache::insert(quint64 transponderId, const QString &name)
{
    constexpr int maxLength = 200; // load() refuses a long tag
    const QString shown = name.left(maxLength);
    const auto known = m_names.constFind(transponderId);
    if (known != m_names.constEnd() && *known == shown)
        return;
    m_names.insert(transponderId, shown);
    m_isDirty = true;
}

QString AttendanceNameCache::name(quint64 transponderId) const
{
    return m_names.value(transponderId);
}

QString AttendanceNameCache::fileName()
{
    return Config::instance()->dataPath("LB_ATTENDANCE_NAME_CACHE_FILE",
                                        keys::attendanceNameCacheFile,
                                        QStringLiteral("attendanceNameCache.xml"));
}

void AttendanceNameCache::save()
{
    if (!m_isDirty)
        return;
    if (const auto failure = catchFailure([this] { write(); }))
        qWarning().noquote() << "Failed to save name cache:" << failure->text;
    else
        m_isDirty = false;
}

void AttendanceNameCache::load()
{
    const auto failure = catchFailure([this] {
        QFile file(fileName());
        if (!file.open(QIODevice::ReadOnly))
            throw Exception(
                QStringLiteral("failed to open \"%1\": %2 %3")
                    .arg(file.fileName(), QString::number(file.error()), file.errorString()));
        read(file.readAll());
    });
    if (failure)
        qWarning().noquote() << "Failed to load name cache:" << failure->text;
    m_isDirty = false;
}

void AttendanceNameCache::read(const QByteArray &document)
{
    QXmlStreamReader reader;
    if (xmlguard::readRoot(reader, document) && reader.name() != xml::root)
        reader.raiseError(QStringLiteral("Looks strange"));
    while (!reader.hasError() && reader.readNextStartElement()) {
        bool isNumber = false;
        const quint64 id = reader.attributes().value(xml::id).toULongLong(&isNumber);
        if (reader.name() == xml::entry && isNumber)
            insert(id, reader.attributes().value(xml::name).toString());
        reader.skipCurrentElement();
    }
    if (reader.hasError())
        throw Exception(QStringLiteral("error reading XML: %1 %2")
                            .arg(QString::number(reader.error()), reader.errorString()));
}

void AttendanceNameCache::write() const
{
    QSaveFile file(fileName());
    const QString folder = QFileInfo(file.fileName()).path();
    if (!QDir().mkpath(folder))
        throw Exception(QStringLiteral("failed to create directory \"%1\"").arg(folder));
    if (!file.open(QIODevice::WriteOnly)
        || !file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner))
        throw Exception(QStringLiteral("failed to create file \"%1\"").arg(file.fileName()));

    QXmlStreamWriter writer(&file);
    writer.writeStartDocument();
    writer.writeStartElement(xml::root);
    for (auto each = m_names.cbegin(); each != m_names.cend(); ++each) {
        writer.writeEmptyElement(xml::entry);
        writer.writeAttribute(xml::id, QString::number(each.key()));
        writer.writeAttribute(xml::name, each.value());
    }
    writer.writeEndDocument();
    if (writer.hasError() || !file.commit())
        throw Exception(QStringLiteral("failed to write XML: %1 %2")
                            .arg(QString::number(file.error()), file.errorString()));
}
