// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "base/xmlguard.h"

#include <QBuffer>
#include <QTextCodec>
#include <QXmlStreamReader>

#include <cstring>
#include <string_view>

namespace xmlguard {

namespace {

    /** The end of the tag that begins at @p tag, or null if the tag is too long. */
    const char *endOfTag(const char *tag, const char *end)
    {
        char quote = 0;
        for (const char *c = tag; c != end && c - tag <= maxTagBytes; ++c) {
            if (quote != 0)
                quote = *c == quote ? 0 : quote;
            else if (*c == '"' || *c == '\'')
                quote = *c;
            else if (*c == '>')
                return c;
        }
        return nullptr;
    }

} // namespace

Obstacle findObstacle(const QByteArray &xml)
{
    const char *const begin = xml.constData();
    const char *const end = begin + xml.size(); // a QByteArray holds '\0' here, so at[1] exists
    const auto isAt = [end](const char *at, std::string_view mark) {
        return static_cast<size_t>(end - at) >= mark.size()
            && std::string_view(at, mark.size()) == mark;
    };
    const auto endOf = [&](const char *at, const char *mark) {
        const int found = xml.indexOf(mark, static_cast<int>(at - begin));
        return found < 0 ? end : begin + found;
    };

    const char *at = begin;
    while ((at = static_cast<const char *>(std::memchr(at, '<', static_cast<size_t>(end - at))))) {
        if (at[1] == '?') {
            at = endOf(at, "?>");
        } else if (isAt(at, "<!--")) {
            at = endOf(at, "-->");
        } else if (isAt(at, "<![CDATA[")) {
            at = endOf(at, "]]>");
        } else if (isAt(at, "<!DOCTYPE")) {
            return Obstacle::DocumentType;
        } else if (const char *tagEnd = endOfTag(at, end)) {
            at = tagEnd;
        } else {
            // QXmlStreamReader reports a truncated short one.
            return end - at > maxTagBytes ? Obstacle::LongTag : Obstacle::None;
        }
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
