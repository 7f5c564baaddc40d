// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

#include <string_view>

/**
 * Finds the tags of an XML document without parsing it, in linear time whatever it holds. Agrees
 * with QXmlStreamReader on where they are, up to the first error that the latter reports.
 */
class TagScanner
{
public:
    enum class Tag {
        None, ///< the end of the document
        Start,
        Empty, ///< start and end in one
        End,
        DocumentType ///< a document type definition; there is no way past it
    };

    /** @p xml is UTF-8 or similar. */
    explicit TagScanner(const QByteArray &xml);

    /** Moves to the next tag. */
    [[nodiscard]] Tag next();

    /** Where the tag begins. */
    [[nodiscard]] const char *begin() const { return m_begin; }
    /** The last byte of a Start or Empty tag; the end of the document if it is cut off. */
    [[nodiscard]] const char *last() const { return m_at; }
    /** The end of the document. */
    [[nodiscard]] const char *end() const { return m_end; }

private:
    [[nodiscard]] const char *lastOfTag(const char *at) const;
    [[nodiscard]] const char *lastOfOther(const char *at) const;
    [[nodiscard]] const char *find(const char *at, std::string_view mark) const;

    QByteArray m_xml;
    const char *m_end; ///< of m_xml, which holds a null byte there
    const char *m_at;
    const char *m_begin;
};
