// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "base/xmlexcess.h"

#include "base/tagscanner.h"
#include "base/xmlguard.h"

#include <algorithm>
#include <utility>

namespace {

bool isSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

/** An attribute of a start tag, with the space before it. */
struct Attribute
{
    std::string_view name;
    const char *end = nullptr; ///< null if there is none, or one that QXmlStreamReader refuses
};

Attribute readAttribute(const char *at, const char *tagEnd)
{
    const char *const name = std::find_if_not(at, tagEnd, isSpace);
    const char *const nameEnd
        = std::find_if(name, tagEnd, [](char c) { return c == '=' || isSpace(c); });
    const char *const sign = std::find_if_not(nameEnd, tagEnd, isSpace);
    if (sign == tagEnd || *sign != '=')
        return {};
    const char *const quote = std::find_if_not(sign + 1, tagEnd, isSpace);
    if (quote == tagEnd || (*quote != '"' && *quote != '\''))
        return {};
    const char *const valueEnd = std::find(quote + 1, tagEnd, *quote);
    if (valueEnd == tagEnd)
        return {};
    return { { name, static_cast<size_t>(nameEnd - name) }, valueEnd + 1 };
}

/** Copies a document without its excess. */
class ExcessCutter
{
public:
    ExcessCutter(const QByteArray &xml, std::initializer_list<std::string_view> wanted)
        : m_tags(xml)
        , m_wanted(wanted)
        , m_rest(m_tags.begin())
    {
    }

    [[nodiscard]] XmlExcess run();
    void copyTo(QByteArray &xml);

private:
    void cutAttributes();
    void leaveOut(const char *begin, const char *end);

    TagScanner m_tags;
    std::initializer_list<std::string_view> m_wanted;
    XmlExcess m_excess;
    QByteArray m_copy;
    const char *m_rest; ///< the part not processed yet
};

XmlExcess ExcessCutter::run()
{
    using Tag = TagScanner::Tag;
    const char *deep = nullptr; // where elements begin that are nested too deep
    int depth = 0;
    for (Tag tag = m_tags.next(); tag != Tag::None; tag = m_tags.next()) {
        if (tag == Tag::DocumentType) {
            m_excess.hasDocumentType = true;
            break;
        }
        if (tag == Tag::End) {
            if (--depth < xmlguard::maxDepth && deep)
                leaveOut(std::exchange(deep, nullptr), m_tags.begin());
            continue;
        }
        if (depth >= xmlguard::maxDepth) {
            ++m_excess.elements;
            if (!deep)
                deep = m_tags.begin();
        } else if (m_tags.last() - m_tags.begin() > xmlguard::maxTagBytes) {
            cutAttributes();
        }
        if (tag == Tag::Start)
            ++depth;
    }
    if (deep)
        leaveOut(deep, m_tags.end());
    return m_excess;
}

void ExcessCutter::cutAttributes()
{
    int wantedLeft = 8; // keep duplicates, so that QXmlStreamReader refuses them
    const char *at = std::find_if(m_tags.begin(), m_tags.last(), isSpace);
    for (;;) {
        const auto [name, end] = readAttribute(at, m_tags.last());
        if (!end)
            return;
        const bool isWanted = std::find(m_wanted.begin(), m_wanted.end(), name) != m_wanted.end();
        if (!isWanted || wantedLeft-- <= 0) {
            leaveOut(at, end);
            ++m_excess.attributes;
        }
        at = end;
    }
}

/** Copies what is before @p begin, and the line breaks between it and @p end. */
void ExcessCutter::leaveOut(const char *begin, const char *end)
{
    if (m_copy.isEmpty())
        m_copy.reserve(static_cast<int>(m_tags.end() - m_rest));
    m_copy.append(m_rest, static_cast<int>(begin - m_rest));
    m_copy.append(static_cast<int>(std::count(begin, end, '\n')), '\n');
    m_rest = end;
}

void ExcessCutter::copyTo(QByteArray &xml)
{
    m_copy.append(m_rest, static_cast<int>(m_tags.end() - m_rest));
    xml = m_copy;
}

} // namespace

XmlExcess cutExcess(QByteArray &xml, std::initializer_list<std::string_view> wanted)
{
    ExcessCutter cutter(xml, wanted);
    const XmlExcess excess = cutter.run();
    if (excess.attributes > 0 || excess.elements > 0)
        cutter.copyTo(xml);
    return excess;
}
