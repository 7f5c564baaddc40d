// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "base/xmlguard.h"

#include "base/tagscanner.h"

#include <QBuffer>
#include <QTextCodec>
#include <QXmlStreamReader>

namespace xmlguard {

Obstacle findObstacle(const QByteArray &xml)
{
    using Tag = TagScanner::Tag;
    TagScanner tags(xml);
    for (Tag tag = tags.next(); tag != Tag::None; tag = tags.next()) {
        if (tag == Tag::DocumentType)
            return Obstacle::DocumentType;
        if (tag != Tag::End && tags.last() - tags.begin() > maxTagBytes)
            return Obstacle::LongTag;
    }
    return Obstacle::None;
}

const QTextCodec *foreignCodec(const QByteArray &xml)
{
    constexpr int utf8Mib = 106;

    // From bytes instead of a device, QXmlStreamReader would decode everything at once.
    QBuffer device;
    device.setData(xml);
    device.open(QIODevice::ReadOnly);
    QXmlStreamReader start(&device);
    start.readNext();
    const QByteArray declared = start.documentEncoding().toLatin1();
    const QTextCodec *codec = QTextCodec::codecForUtfText(
        xml, declared.isEmpty() ? nullptr : QTextCodec::codecForName(declared));
    return codec && codec->mibEnum() != utf8Mib ? codec : nullptr;
}

bool readRoot(QXmlStreamReader &reader, const QByteArray &xml)
{
    reader.setNamespaceProcessing(false); // compares each prefix with all that are declared
    QByteArray seen = xml;
    if (const QTextCodec *codec = foreignCodec(xml)) {
        const QString text = codec->toUnicode(xml);
        reader.addData(text); // which ignores the declared encoding
        seen = text.toUtf8();
    } else {
        reader.addData(xml);
    }
    if (findObstacle(seen) != Obstacle::None)
        reader.raiseError(QStringLiteral("a long tag or a document type is not accepted"));
    return reader.readNextStartElement();
}

} // namespace xmlguard
