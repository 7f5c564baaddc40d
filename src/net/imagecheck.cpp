// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "net/imagecheck.h"

#include "base/xmlguard.h"

#include <QBuffer>
#include <QImageReader>
#include <QSet>
#include <QXmlStreamReader>

namespace {

constexpr qint64 maxPixels = 4'000'000;

bool isPlainShape(const QStringRef &element)
{
    static const QSet<QString> shapes {
        QStringLiteral("svg"),   QStringLiteral("g"),       QStringLiteral("path"),
        QStringLiteral("rect"),  QStringLiteral("circle"),  QStringLiteral("ellipse"),
        QStringLiteral("line"),  QStringLiteral("polygon"), QStringLiteral("polyline"),
        QStringLiteral("title"), QStringLiteral("desc"),
    };
    return shapes.contains(element.toString());
}

bool isPlain(const QXmlStreamAttribute &attribute)
{
    // Short dashes on a long line cost any amount of memory.
    return attribute.name() != QLatin1String("href")
        && !attribute.name().startsWith(QLatin1String("stroke-dash"))
        && !attribute.value().contains(QLatin1String("stroke-dash"))
        && !attribute.value().contains(QLatin1String("url("), Qt::CaseInsensitive);
}

/** Qt's renderer calls itself for each level. */
constexpr int maxDepth = 32;
/** QXmlStreamReader looks through all that are in force for each element; editors write seven. */
constexpr int maxNamespaces = 16;

/** QXmlStreamReader compares each attribute of a tag with all others. */
bool hasManyAttributes(const QByteArray &svg)
{
    constexpr int maxAttributes = 64;
    int attributes = 0;
    for (const char c : svg) {
        if (c == '<')
            attributes = 0;
        else if (c == '=' && ++attributes > maxAttributes)
            return true;
    }
    return false;
}

QString elementProblem(const QXmlStreamReader &reader)
{
    if (!isPlainShape(reader.name()))
        return QStringLiteral("SVG with the element ") + reader.name().left(50);
    for (const QXmlStreamAttribute &attribute : reader.attributes()) {
        if (!isPlain(attribute))
            return QStringLiteral("SVG with the attribute ") + attribute.name().left(50);
    }
    return {};
}

QString svgProblem(const QByteArray &bytes)
{
    if (xmlguard::foreignCodec(bytes))
        return QStringLiteral("SVG that is not UTF-8");
    if (xmlguard::findObstacle(bytes) == xmlguard::Obstacle::DocumentType)
        return QStringLiteral("SVG with a document type");
    if (hasManyAttributes(bytes))
        return QStringLiteral("SVG with too many attributes");
    QXmlStreamReader reader(bytes);
    int depth = 0;
    int namespaces = 0;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isEndElement())
            --depth;
        if (!reader.isStartElement())
            continue;
        namespaces += reader.namespaceDeclarations().size();
        if (++depth > maxDepth || namespaces > maxNamespaces)
            return QStringLiteral("SVG that is nested too deeply or has too many name spaces");
        const QString problem = elementProblem(reader);
        if (!problem.isEmpty())
            return problem;
    }
    return reader.hasError() ? QStringLiteral("no SVG: ") + reader.errorString() : QString();
}

bool isText(const QByteArray &bytes)
{
    return bytes.trimmed().startsWith('<');
}

} // namespace

QString imageProblem(QByteArray bytes)
{
    if (isText(bytes)) {
        const QString problem = svgProblem(bytes);
        if (!problem.isEmpty())
            return problem; // before the renderer sees it
    } else if (!bytes.startsWith("\x89PNG") && !bytes.startsWith("\xff\xd8\xff")
               && !bytes.startsWith("GIF8")) {
        return QStringLiteral("not PNG, JPEG, GIF or plain SVG");
    }
    QBuffer buffer(&bytes);
    const QImageReader reader(&buffer);
    const QSize size = reader.size();
    if (size.isEmpty())
        return QStringLiteral("not readable");
    if (qint64(size.width()) * size.height() > maxPixels)
        return QStringLiteral("%1 x %2 pixels").arg(size.width()).arg(size.height());
    return {};
}
