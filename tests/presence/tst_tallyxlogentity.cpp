// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "base/exceptions.h"
#include "presence/tallyxlogentity.h"
#include "support/testcase.h"

#include <QJsonObject>
#include <QTemporaryDir>

class TestTallyxLogEntity : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void keepsOneFileThroughEachChange()
    {
        const QTemporaryDir folder;
        settings::set("tallyxSpoolDir"_s, folder.path());
        settings::set("plenarLocationId"_s, 7);
        TallyxLogEntity record(0xFFFFFFFF, TallyxLogEntity::CONTINUOUS);
        record.save();
        const QString path = record.spoolPath();
        for (const auto type : { TallyxLogEntity::IN, TallyxLogEntity::OUT }) {
            record.setType(type);
            record.setLogDelay(-5); // the clock was set
            record.save();
            QCOMPARE(tallyxSpool().count(), 1);
            QCOMPARE(record.spoolPath(), path);
            QCOMPARE(TallyxLogEntity(path).toJson(), record.toJson());
        }
        QCOMPARE(record.toJson().object().keys().join(QLatin1Char(' ')),
                 "locationId logDelay tid time transmissionDelay type"_s);
        QCOMPARE(settings::read(path), QString::fromUtf8(record.toJson().toJson()));
    }

    void refusesInvalidRecords_data()
    {
        columns<QString>("document");
        const QString good = R"({"type":1,"time":"2026-11-23T10:00:00","logDelay":0,)"
                             R"("transmissionDelay":0,"tid":5,"locationId":1})"_s;
        const auto with = [&good](const char *from, const char *to) {
            return QString(good).replace(QLatin1String(from), QLatin1String(to));
        };
        row("cut off", good.chopped(2));
        row("list", "[%1]"_s.arg(good));
        row("unknown type", with("\"type\":1", "\"type\":4"));
        row("type is text", with("\"type\":1", "\"type\":\"1\""));
        row("broken number", with("\"tid\":5", "\"tid\":5.5"));
        row("huge number", with("\"tid\":5", "\"tid\":1e300"));
        row("no time", with("2026-11-23T10:00:00", "gestern"));
        row("no place", with("locationId", "place"));
    }

    void refusesInvalidRecords()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("record"_s);
        settings::write(path, at("document"));
        log().expect("Not a presence record: \"%1\""_s.arg(path));
        QVERIFY_EXCEPTION_THROWN(TallyxLogEntity { path }, AttendanceErrorException);
    }
};

static RegisterTest<TestTallyxLogEntity> registerTallyxLogEntity;

#include "tst_tallyxlogentity.moc"
