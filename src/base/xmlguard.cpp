// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "base/xmlguard.h"

#include <QByteArray>
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

bool hasOverlongTag(const QByteArray &xml)
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
        if (at[1] == '!' || at[1] == '?') {
            if (isAt(at, "<!--"))
                at = endOf(at, "-->");
            else if (isAt(at, "<![CDATA["))
                at = endOf(at, "]]>");
            else
                ++at;
        } else if (const char *tagEnd = endOfTag(at, end)) {
            at = tagEnd;
        } else {
            return end - at > maxTagBytes; // QXmlStreamReader reports a truncated short one
        }
    }
    return false;
}

bool hasDocumentType(QByteArray xml)
{
    xml.replace('\0', QByteArray()); // of UTF-16
    return xml.contains("<!DOCTYPE");
}

bool readRoot(QXmlStreamReader &reader, const QByteArray &xml)
{
    reader.addData(xml);
    if (hasOverlongTag(xml))
        reader.raiseError(QStringLiteral("a tag is too long"));
    if (hasDocumentType(xml))
        reader.raiseError(QStringLiteral("a document type is not accepted"));
    while (!reader.atEnd()) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        if (token == QXmlStreamReader::StartElement)
            return true;
        if (token == QXmlStreamReader::DTD) // in another encoding
            reader.raiseError(QStringLiteral("a document type is not accepted"));
    }
    return false;
}

} // namespace xmlguard
