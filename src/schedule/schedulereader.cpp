// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "schedule/schedulereader.h"

#include "base/exceptions.h"
#include "base/xmlguard.h"
#include "schedule/event.h"
#include "schedule/eventaudience.h"
#include "schedule/eventeaudience.h"
#include "schedule/eventlocation.h"
#include "schedule/scheduleobjects.h"

#include <QDebug>
#include <QTextCodec>

#include <algorithm>
#include <utility>
#include <vector>

namespace {

// More than a screen shows. Laying out a title of several megabytes would block the interface for
// minutes.
constexpr int maxTextLength = 10000;

// Further unexpected elements are not logged: they would fill the disk.
constexpr int maxWarnings = 1000;

/**
 * Sorts by display order, then by name regardless of case. Folds each name once: a comparison would
 * fold two of them.
 */
void sortForDisplay(QList<EventLocation *> &locations)
{
    std::vector<std::pair<QString, EventLocation *>> named;
    named.reserve(static_cast<size_t>(locations.size()));
    for (EventLocation *location : qAsConst(locations))
        named.emplace_back(location->name().toLower(), location);
    std::sort(named.begin(), named.end(), [](const auto &a, const auto &b) {
        if (a.second->displayOrder() != b.second->displayOrder())
            return a.second->displayOrder() < b.second->displayOrder();
        return a.first < b.first;
    });
    std::transform(named.cbegin(), named.cend(), locations.begin(),
                   [](const auto &each) { return each.second; });
}

} // namespace

ScheduleReader::ScheduleReader(const QByteArray &document, ScheduleObjects &objects,
                               std::function<bool()> mustStop)
    : m_objects(objects)
    , m_mustStop(std::move(mustStop))
{
    const QTextCodec *codec = xmlguard::foreignCodec(document);
    QByteArray xml = codec ? codec->toUnicode(document).toUtf8() : document;
    m_excess = cutExcess(xml, { "id", "displayOrder" });
    m_isForeign = m_excess.hasDocumentType && !xml.contains("<!DOCTYPE schedule");
    if (codec) {
        m_xml.addData(QString::fromUtf8(xml)); // which ignores the declared encoding
    } else {
        // From bytes instead of a device, QXmlStreamReader would decode everything at once.
        m_document.setData(xml);
        m_document.open(QIODevice::ReadOnly);
        m_xml.setDevice(&m_document);
    }
    m_xml.setNamespaceProcessing(false); // compares each prefix with all that are declared
}

void ScheduleReader::read()
{
    if (m_isForeign)
        refuseForeignDocument(); // the log-in page of a guest network
    if (m_excess.hasDocumentType)
        raise(QStringLiteral("a document type definition is not allowed"));
    if (readNextElement()) {
        if (m_xml.name() != QLatin1String("schedule"))
            refuseForeignDocument();
        readSchedule();
        sortForDisplay(m_objects.locations);
        std::sort(m_objects.audiences.begin(), m_objects.audiences.end(),
                  &EventAudience::sortsBefore);
    }
    logSkipped();
    if (m_xml.hasError())
        failAtError();
}

void ScheduleReader::refuseForeignDocument()
{
    constexpr auto source = QT_TR_NOOP("this doesn't look like event data");
    throw Exception(QString::fromLatin1(source), tr(source));
}

bool ScheduleReader::readNextElement()
{
    stopInTime();
    return m_xml.readNextStartElement(); // false after an error
}

/** To be called for each element; looks now and then. */
void ScheduleReader::stopInTime()
{
    constexpr int elementsPerLook = 256;
    if (++m_elements % elementsPerLook == 0 && m_mustStop())
        raise(QStringLiteral("reading takes too long"));
}

void ScheduleReader::readSchedule()
{
    while (readNextElement()) {
        const QStringRef name = m_xml.name();
        if (name == QLatin1String("locations")) {
            readChildren(QLatin1String("location"), [this] { readLocation(); });
        } else if (name == QLatin1String("audiences")) {
            readChildren(QLatin1String("audience"), [this] { readAudience(); });
        } else if (name == QLatin1String("events")) {
            readChildren(QLatin1String("event"), [this] { readEvent(); });
        } else {
            skipUnexpected();
        }
    }
}

/** Calls @p readChild for each child called @p name and skips all others. */
template <typename ReadChild>
void ScheduleReader::readChildren(QLatin1String name, ReadChild readChild)
{
    while (readNextElement()) {
        if (m_xml.name() == name)
            readChild();
        else
            skipUnexpected();
    }
}

void ScheduleReader::readLocation()
{
    const qint64 id = readId();
    const int displayOrder = readDisplayOrder();
    QString shortName;
    QString name;
    while (readNextElement()) {
        if (m_xml.name() == QLatin1String("shortName"))
            shortName = text();
        else if (m_xml.name() == QLatin1String("name"))
            name = text();
        else
            skipUnexpected();
    }
    if (shortName.isEmpty())
        reportInvalid("shortName");
    if (name.isEmpty())
        reportInvalid("name");
    if (!m_xml.hasError())
        m_objects.locations.append(new EventLocation(id, displayOrder, shortName, name));
}

void ScheduleReader::readAudience()
{
    const qint64 id = readId();
    const int displayOrder = readDisplayOrder();
    QString name;
    readChildren(QLatin1String("name"), [&] { name = text(); });
    if (name.isEmpty())
        reportInvalid("name");
    if (!m_xml.hasError())
        m_objects.audiences.append(new EventAudience(id, displayOrder, name));
}

void ScheduleReader::readEvent()
{
    EventFields fields;
    QList<EventEAudience *> links;
    fields.id = readId();
    while (readNextElement())
        readEventChild(fields, links);

    if (fields.title.isEmpty())
        reportInvalid("title");
    if (!fields.start.isValid())
        reportInvalid("startTime");
    if (!fields.end.isValid())
        reportInvalid("endTime");
    if (m_xml.hasError()) {
        qDeleteAll(links);
        return;
    }
    m_objects.events.append(new Event(std::move(fields), std::move(links)));
}

void ScheduleReader::readEventChild(EventFields &fields, QList<EventEAudience *> &links)
{
    const QStringRef name = m_xml.name();
    if (name == QLatin1String("start")) {
        fields.start = readDateTime();
    } else if (name == QLatin1String("end")) {
        fields.end = readDateTime();
    } else if (name == QLatin1String("locationId")) {
        bool ok = false;
        fields.locationId = text().toLongLong(&ok);
        if (!ok)
            reportInvalid("locationId");
    } else if (name == QLatin1String("title")) {
        fields.title = text();
    } else if (name == QLatin1String("shortTitle")) {
        fields.shortTitle = text();
    } else if (name == QLatin1String("subTitle")) {
        fields.subTitle = text();
    } else if (name == QLatin1String("description")) {
        fields.description = text();
    } else if (name == QLatin1String("speakers")) {
        readChildren(QLatin1String("speaker"), [&] { fields.speakers.append(text()); });
    } else if (name == QLatin1String("audiences")) {
        readChildren(QLatin1String("audience"), [&] { readEventAudience(links); });
    } else {
        skipUnexpected();
    }
}

void ScheduleReader::readEventAudience(QList<EventEAudience *> &links)
{
    qint64 id = 0;
    QString mandatory;
    while (readNextElement()) {
        if (m_xml.name() == QLatin1String("id")) {
            bool ok = false;
            id = text().toLongLong(&ok);
            if (!ok)
                reportInvalid("audience/id");
        } else if (m_xml.name() == QLatin1String("mandatory")) {
            mandatory = text();
        } else {
            skipUnexpected();
        }
    }
    const bool isMandatory = mandatory == QLatin1String("true");
    if (id <= 0)
        reportInvalid("audience/id");
    else if (!isMandatory && mandatory != QLatin1String("false"))
        reportInvalid("audience/mandatory");
    links.append(new EventEAudience(id, isMandatory));
}

QString ScheduleReader::text()
{
    QString text = m_xml.readElementText();
    if (text.size() <= maxTextLength)
        return text;
    qWarning() << "Event data: cutting a text of" << text.size() << "characters at line"
               << m_xml.lineNumber();
    return text.left(maxTextLength);
}

qint64 ScheduleReader::readId()
{
    const qint64 id = m_xml.attributes().value(QLatin1String("id")).toLongLong();
    if (id <= 0)
        reportInvalid("id");
    return id;
}

int ScheduleReader::readDisplayOrder()
{
    bool ok = false;
    const int order = m_xml.attributes().value(QLatin1String("displayOrder")).toInt(&ok);
    if (!ok)
        reportInvalid("displayOrder");
    return order;
}

QDateTime ScheduleReader::readDateTime()
{
    const QString iso = text();
    auto &[known, time] = m_knownTimes[qHash(iso) % m_knownTimes.size()];
    if (known != iso) {
        known = iso;
        time = QDateTime::fromString(iso, Qt::ISODate);
    }
    return time;
}

/** Logs the current element and skips it with its content. */
void ScheduleReader::skipUnexpected()
{
    if (m_unexpected++ < maxWarnings)
        qWarning().noquote() << QStringLiteral("Event data: ignoring unexpected element \"%1\" at "
                                               "line %2, column %3")
                                    .arg(m_xml.name().toString().left(xmlguard::maxTagBytes),
                                         QString::number(m_xml.lineNumber()),
                                         QString::number(m_xml.columnNumber()));

    int depth = 1;
    while (depth > 0 && !m_xml.hasError()) {
        stopInTime();
        const QXmlStreamReader::TokenType token = m_xml.readNext();
        if (token == QXmlStreamReader::StartElement)
            ++depth;
        else if (token == QXmlStreamReader::EndElement)
            --depth;
    }
}

/** Logs how much has been skipped without a line of its own. */
void ScheduleReader::logSkipped() const
{
    const int unexpected = std::max(0, m_unexpected - maxWarnings);
    if (m_excess.attributes + m_excess.elements + unexpected == 0)
        return;
    qWarning().noquote() << QStringLiteral("Event data: ignoring %1 attributes of long tags, %2 "
                                           "elements nested too deep and %3 more unexpected ones")
                                .arg(m_excess.attributes)
                                .arg(m_excess.elements)
                                .arg(unexpected);
}

void ScheduleReader::reportInvalid(const char *field)
{
    raise(QStringLiteral("invalid or missing value for \"%2\" at \"%1\"")
              .arg(m_xml.name().toString(), QLatin1String(field)));
}

/** Ends reading: after an error m_xml returns no further element. Keeps the first error. */
void ScheduleReader::raise(const QString &error)
{
    if (!m_xml.hasError())
        m_xml.raiseError(error);
}

void ScheduleReader::failAtError() const
{
    throw Exception(QStringLiteral("Error reading event data: (%1) %2 (line %3, column %4)")
                        .arg(QString::number(m_xml.error()), m_xml.errorString(),
                             QString::number(m_xml.lineNumber()),
                             QString::number(m_xml.columnNumber())),
                    tr("The schedule is damaged and therefore incomplete."));
}
