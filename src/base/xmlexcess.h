// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

#include <initializer_list>
#include <string_view>

/** What a document holds beyond what QXmlStreamReader reads in linear time and little memory. */
struct XmlExcess
{
    bool hasDocumentType = false; ///< what follows it has not been looked at
    int attributes = 0; ///< of tags longer than xmlguard::maxTagBytes
    int elements = 0; ///< nested deeper than xmlguard::maxDepth
};

/**
 * Removes these elements, and these attributes except those named in @p wanted, from @p xml, which
 * is UTF-8. Keeps the line numbers. Linear in the bytes of @p xml.
 */
[[nodiscard]] XmlExcess cutExcess(QByteArray &xml, std::initializer_list<std::string_view> wanted);
