// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

class QXmlStreamReader;

/** Keeps XML from outside from taking more time than its size warrants. */
namespace xmlguard {

/**
 * The limit of a start tag. QXmlStreamReader compares each attribute of a tag with all others: a
 * tag of a megabyte takes minutes.
 */
constexpr int maxTagBytes = 2048;

/** True if a start tag in @p xml is too long. Comments and CDATA may have any length. */
[[nodiscard]] bool hasOverlongTag(const QByteArray &xml);

/**
 * True if @p xml has a document type, which can add attributes to every element. It is to be
 * refused before QXmlStreamReader sees it: that compares each declared attribute with all others.
 * Also true if a comment or CDATA contains the mark.
 */
[[nodiscard]] bool hasDocumentType(QByteArray xml);

/**
 * Gives @p xml to @p reader and moves to the root element. Raises an error on a tag that is too
 * long and on a document type.
 */
[[nodiscard]] bool readRoot(QXmlStreamReader &reader, const QByteArray &xml);

} // namespace xmlguard
