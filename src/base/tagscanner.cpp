// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "base/tagscanner.h"

#include <cstring>

namespace {

bool isAt(const char *at, std::string_view mark)
{
    return std::strncmp(at, mark.data(), mark.size()) == 0; // ends at a null byte
}

} // namespace

TagScanner::TagScanner(const QByteArray &xml)
    : m_xml(xml)
    , m_end(m_xml.constData() + m_xml.size())
    , m_at(m_xml.constData())
    , m_begin(m_at)
{
}

TagScanner::Tag TagScanner::next()
{
    while (const void *found = std::memchr(m_at, '<', static_cast<size_t>(m_end - m_at))) {
        m_begin = static_cast<const char *>(found);
        if (m_begin[1] == '/') {
            m_at = m_begin + 2; // no '<' may follow in the tag
            return Tag::End;
        }
        if (m_begin[1] != '!' && m_begin[1] != '?') {
            m_at = lastOfTag(m_begin + 1);
            return m_at[-1] == '/' ? Tag::Empty : Tag::Start;
        }
        if (isAt(m_begin, "<!DOCTYPE"))
            return Tag::DocumentType;
        m_at = lastOfOther(m_begin);
    }
    return Tag::None;
}

const char *TagScanner::lastOfTag(const char *at) const
{
    for (;; ++at) {
        while (static_cast<uchar>(*at) > '>') // most of a name
            ++at;
        if (*at == '>' || at == m_end)
            return at;
        if (*at == '"' || *at == '\'') {
            at = find(at + 1, std::string_view(at, 1));
            if (at == m_end)
                return at;
        }
    }
}

/** The last byte of a comment, a CDATA section or a processing instruction. */
const char *TagScanner::lastOfOther(const char *at) const
{
    if (isAt(at, "<?"))
        return find(at + 2, "?>");
    if (isAt(at, "<!--"))
        return find(at + 4, "-->");
    if (isAt(at, "<![CDATA["))
        return find(at + 9, "]]>");
    return at + 1; // QXmlStreamReader refuses it
}

const char *TagScanner::find(const char *at, std::string_view mark) const
{
    const size_t found = std::string_view(at, static_cast<size_t>(m_end - at)).find(mark);
    return found == std::string_view::npos ? m_end : at + found;
}
