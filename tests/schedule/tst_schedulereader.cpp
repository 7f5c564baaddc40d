// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "schedule/scheduledocument.h"
#include "support/testcase.h"

#include <QTextCodec>

static const QByteArray day = R"(<schedule>
<locations><location id="3" displayOrder="1"><shortName>H1</shortName><name>Hall</name></location>
</locations><audiences><audience id="5" displayOrder="1"><name>Group</name></audience></audiences>
<events><event id="7"><start>2024-05-13T09:30:00</start><end>2024-05-13T11:00:00</end>
<locationId>3</locationId><title>T</title><speakers><speaker>A</speaker></speakers>
<audiences><audience><id>5</id><mandatory>true</mandatory></audience></audiences></event></events>
</schedule>)";

/** How many there are of each kind. */
static QString contents(const EventData &data)
{
    return "%1 events, %2 locations, %3 audiences"_s.arg(data.objects().events.size())
        .arg(data.objects().locations.size())
        .arg(data.objects().audiences.size());
}

class TestScheduleReader : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void readsOrSaysWhyNot_data()
    {
        columns<QByteArray, QString, QString>("xml", "line", "contents");
        const char *all = "1 events, 1 locations, 1 audiences";
        const char *nothing = "0 events, 0 locations, 0 audiences";
        row("good", day, "", all);
        row("good, then bad", QByteArray(day).replace("</schedule>", "<events></more>"),
            "Error reading event data: (3) ", all);

        for (const char *before : { "<locations>", "</locations>", "<shortName>", "</location>",
                                    "<name>Group", "<events>", "<event id", "<start>", "<speaker>",
                                    "<audience><id>", "<id>", "<mandatory>", "</events>" }) {
            const QByteArray more = "<more a='1'><title>X</title><event id='x'/></more>";
            row(before, QByteArray(day).insert(day.indexOf(before), more),
                "Event data: ignoring unexpected element \"more\" at line ", all);
        }

        const auto invalid = [](const char *from, const char *to, const char *field,
                                const char *element, const char *left) {
            const auto line = QString::asprintf("Error reading event data: (2) invalid or missing "
                                                "value for \"%s\" at \"%s\" (line ",
                                                field, element);
            row(from, QByteArray(day).replace(from, to), line, left);
        };
        invalid("location id=\"3\"", "location id=\"0\"", "id", "location", nothing);
        invalid("<shortName>H1</shortName>", "", "shortName", "location", nothing);
        invalid("<name>Hall</name>", "<name/>", "name", "location", nothing);
        const char *half = "0 events, 1 locations, 0 audiences";
        invalid("5\" displayOrder=\"1\"", "5\"", "displayOrder", "audience", half);
        invalid("<name>Group</name>", "", "name", "audience", half);
        const char *noEvent = "0 events, 1 locations, 1 audiences";
        invalid("event id=\"7\"", "event", "id", "event", noEvent);
        invalid("<start>2024", "<start>x2024", "startTime", "event", noEvent);
        invalid("<end>2024-05", "<end>2024-13", "endTime", "event", noEvent);
        invalid("<locationId>3", "<locationId>abc", "locationId", "locationId", noEvent);
        invalid("<title>T</title>", "", "title", "event", noEvent);
        invalid("<id>5</id>", "", "audience/id", "audience", noEvent);
        invalid("<mandatory>true", "<mandatory>TRUE", "audience/mandatory", "audience", noEvent);

        row("other root", QByteArray("<Schedule/>"), "this doesn't look like event data", nothing);
        row("truncated", day.left(300), "Error reading event data: (4) ", noEvent);
        row("text", QByteArray("502 Bad Gateway"), "Error reading event data: (3) ", nothing);
        row("child in a text", QByteArray(day).replace("Hall", "<b>Hall</b>"),
            "Error reading event data: (1) ", nothing);
        const QByteArray noise = QByteArray(" a:b='/>' c = \"<\"").repeated(200);
        const QByteArray noisy = QByteArray(day).replace("id=\"7\"", noise + " id = '7'" + noise);
        const char *skipped = "Event data: ignoring 800 attributes of long tags, 0 elements";
        row("long tag", noisy, skipped, all);
        const QByteArray dtd = "<!DOCTYPE schedule [<!ATTLIST a b CDATA 'c'>]>";
        row("document type", dtd + day,
            "Error reading event data: (2) a document type definition is not allowed", nothing);
        row("hidden document type", "<?a <!-- ?>" + dtd + day,
            "Error reading event data: (2) a document type definition is not allowed", nothing);
        const auto wide = [](const QByteArray &xml) { return QString::fromUtf8(xml); };
        const auto encoded = [](const char *codec, const QString &text) {
            return QTextCodec::codecForName(codec)->fromUnicode(text);
        };
        row("UTF-16", encoded("UTF-16", wide(day)), "", all);
        row("long tag in UTF-16", encoded("UTF-16", wide(noisy)), skipped, all);
        row("EBCDIC", "<?xml version='1.0' encoding='IBM037'?>" + encoded("IBM037", wide(day)),
            "Error reading event data: (3) ", nothing);
        row("foreign prefix", QByteArray(day).replace("<title", "<title a:b='c'"), "", all);
        row("much between tags",
            QByteArray(day).replace("<title>", "<!-- <" + noise + "--><title>"), "", all);
    }

    void readsOrSaysWhyNot()
    {
        const QString line = at("line");
        const bool fails = !line.isEmpty() && !line.contains("ignoring"_s);
        log().allow(line);
        const auto data = readSchedule(at<QByteArray>("xml"));
        QCOMPARE(data->error(), fails);
        QTEST(contents(*data), "contents");
        QCOMPARE(log().lines().size(), line.isEmpty() ? 0 : 1);
        QVERIFY2(log().lines().value(0, ""_s).startsWith(line), qPrintable(log().lines().value(0)));
        QCOMPARE(data->errorMessage(), fails ? log().lines().first() : "No error"_s);
    }

    void sortsAndLinks()
    {
        const auto data = readSchedule(R"(<schedule>
            <locations>
              <location id="1" displayOrder="2"><shortName>x</shortName><name>a</name></location>
              <location id="3" displayOrder="2"><shortName>x</shortName><name>B</name></location>
            </locations><audiences>
              <audience id="5" displayOrder="2"><name>a</name></audience>
              <audience id="6" displayOrder="2"><name>B</name></audience>
            </audiences><events>
              <event id="1"><title>x</title><end>2024-05-13T11:00:00</end><title>late</title>
                <start>2024-05-13T10:00:00</start><locationId>3</locationId>
                <speakers><speaker>A</speaker></speakers><speakers><speaker> B</speaker></speakers>
                <audiences>
                  <audience><id>5</id><mandatory>true</mandatory></audience>
                  <audience><id>6</id><mandatory>false</mandatory></audience>
                  <audience><mandatory>true</mandatory><id>9</id></audience>
                </audiences></event>
            </events><locations>
              <location id="3" displayOrder="10"><shortName>x</shortName><name>c</name></location>
              <location id="3" displayOrder="1"><shortName>x</shortName><name>z</name></location>
            </locations><audiences>
              <audience id="5" displayOrder="-1"><name>z</name></audience>
            </audiences><events>
              <event id="2"><title>early</title><start>2024-05-13T09:00:00</start>
                <end>2024-05-13T10:00:00</end><locationId>3</locationId></event>
              <event id="3"><title>elsewhere</title><start>2024-05-13T09:00:00</start>
                <end>2024-05-13T10:00:00</end><locationId>-4</locationId></event>
            </events></schedule>)");
        QVERIFY(!data->error());
        const auto names = [](const auto &objects) {
            QString all;
            for (const auto *object : objects)
                all += object->name();
            return all;
        };
        QCOMPARE(names(data->objects().locations), "zaBc"_s);
        QCOMPARE(names(data->objects().audiences), "zBa"_s);
        const QList<Event *> events = data->objects().events;
        QCOMPARE(events.first()->title() + events.first()->speakers(), "lateA,  B"_s);
        QCOMPARE(events.first()->mAudiencesStr(), "z, null"_s);
        QCOMPARE(events.first()->oAudiencesStr(), "B"_s);
        QCOMPARE(events.first()->location()->name(), "z"_s);
        QCOMPARE(data->location(3)->events(), QList<Event *>({ events.at(1), events.at(0) }));
        for (const EventLocation *location : data->objects().locations) // or memory is squared
            QCOMPARE(location->events().isSharedWith(data->location(3)->events()),
                     location->id() == 3);
        QVERIFY(!events.last()->location());
        QCOMPARE(events.last()->mAudiencesStr(), ""_s);
    }

    void boundsWhatADocumentCosts()
    {
        log().expect("cutting a text of 20000 characters at line"_s);
        log().allow("ignoring unexpected"_s);
        QByteArray xml(day);
        xml.replace("<title>T", "<title>" + QByteArray(20000, 'x'));
        xml.replace("<speaker>A", QByteArray("<speaker>A</speaker>").repeated(9999) + "<speaker>");
        const auto data = readSchedule(xml);
        QCOMPARE(data->error(), false);
        QCOMPARE(data->objects().events.first()->title().size(), 10000);
        QCOMPARE(data->objects().events.first()->speakers().size(), 10000);

        const auto withMore = [](const QByteArray &more) {
            return readSchedule(QByteArray(day).replace("<events>", "<events>" + more));
        };
        const QByteArray deep = QByteArray("<a>").repeated(66) + "<!-- </a> --><b c='/>'/><b/>"
            + "<![CDATA[</a>]]>" + QByteArray("</a>").repeated(66);
        log().expect("ignoring 0 attributes of long tags, 6 elements nested too deep and 0 more"_s);
        QCOMPARE(withMore(deep)->error(), false);
        log().expect("0 elements nested too deep and 4000 more unexpected ones"_s);
        QCOMPARE(withMore(QByteArray("<more/>").repeated(5000))->error(), false);
        QVERIFY(log().lines().size() < 1100);
        log().expect("ignoring 392 attributes of long tags"_s);
        log().expect("Attribute 'id' redefined. (line 404, "_s);
        QVERIFY(withMore("<a" + QByteArray("\nid='1'").repeated(400) + ">")->error());
        log().expect("(2) reading takes too long (line "_s);
        QVERIFY(readSchedule(xml, QDeadlineTimer(0))->error());
    }

    void speaksGermanLocalTime()
    {
        const auto data
            = readSchedule(scheduleXml(eventXml("2024-05-12T23:30:00Z", "2024-05-13T09:30:00+05:00")
                                       + eventXml("2024-05-13T09:30:00", "2024-05-13T11:05:59")));
        const QList<Event *> events = data->objects().events;
        QCOMPARE(events.first()->startDateStr(), "Montag, 13. Mai 2024"_s);
        QCOMPARE(events.first()->startEndTimeStr(), "01:30 - 06:30"_s);
        QCOMPARE(events.last()->startEndTimeStr(), "09:30 - 11:05"_s);
    }
};

static const RegisterTest<TestScheduleReader> registered;

#include "tst_schedulereader.moc"
