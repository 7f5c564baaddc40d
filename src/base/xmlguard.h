// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

class QTextCodec;
class QXmlStreamReader;

/** Keeps XML from outside from taking more time than its size warrants. */
namespace xmlguard {

/**
 * The limit of a start tag. QXmlStreamReader compares each attribute of a tag with all others: a
 * tag of a megabyte takes minutes.
 */
constexpr int maxTagBytes = 2048;

/** The limit of open elements. QXmlStreamReader keeps each of them in memory. */
constexpr int maxDepth = 64;

enum class Obstacle {
    None,
    DocumentType, ///< can add attributes to every element
    LongTag
};

/**
 * Why QXmlStreamReader must not see @p xml, which is UTF-8 or similar. Looks at the bytes, since
 * QXmlStreamReader takes too long before it reports anything.
 */
[[nodiscard]] Obstacle findObstacle(const QByteArray &xml);

/** The encoding of @p xml as QXmlStreamReader determines it; null if it is UTF-8 or unknown. */
[[nodiscard]] const QTextCodec *foreignCodec(const QByteArray &xml);

/** Gives @p xml to @p reader and moves to the root element. Raises an error on an obstacle. */
[[nodiscard]] bool readRoot(QXmlStreamReader &reader, const QByteArray &xml);

} // namespace xmlguard
