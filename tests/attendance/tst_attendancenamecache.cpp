// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "attendance/attendancenamecache.h"
#include "support/testcase.h"

#include <QTemporaryDir>

class TestAttendanceNameCache : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void keepsNamesAcrossARestart()
    {
        const QString path = m_folder.filePath("new/folder/names.xml"_s);
        settings::set("attendanceNameCacheFile"_s, path);
        log().expect("Failed to load name cache: failed to open \"%1\""_s.arg(path));
        {
            AttendanceNameCache cache;
            cache.insert(65535, "Jürgen <\"&"_s);
            cache.insert(1, {});
        }
        QVERIFY(settings::read(path).contains("id=\"65535\""_s));
        AttendanceNameCache later;
        QCOMPARE(later.name(65535), "Jürgen <\"&"_s);
        QVERIFY(QFile::remove(path));
        later.insert(65535, "Jürgen <\"&"_s); // nothing new
        QMetaObject::invokeMethod(&later, "save");
        QVERIFY(!QFile::exists(path));
        later.insert(2, "Neu"_s);
        QMetaObject::invokeMethod(&later, "save");
        QCOMPARE(QFile(path).permissions() & 0xff, 0);
    }

    void livesWithDamage_data()
    {
        columns<QString, QString, QString>("content", "name", "reason");
        row("other root", "<names><entry id='1' name='A'/></names>", "", "Looks strange");
        row("cut off", "<attendanceNameCache><entry id='1' name='A'/><ent", "A", "error reading");
        row("document type",
            "<!DOCTYPE a [<!ATTLIST entry name CDATA 'B'>]><attendanceNameCache><entry id='1'/>",
            "", "document type");
        row("strange entries",
            "<attendanceNameCache><entry id='0x1' name='B'/><other id='1' name='C'/>"
            "<entry id='1' name='A'><entry id='1' name='D'/></entry></attendanceNameCache>",
            "A", "");
    }

    void livesWithDamage()
    {
        const QString path = m_folder.filePath("damaged.xml"_s);
        settings::write(path, at("content"));
        settings::set("attendanceNameCacheFile"_s, path);
        if (!at("reason").isEmpty())
            log().expect("Failed to load name cache: error reading XML"_s);
        const AttendanceNameCache cache;
        QCOMPARE(cache.name(1), at("name"));
        QVERIFY(log().lines().join(QLatin1Char(' ')).contains(at("reason")));
    }

    void triesAgainWhatItCouldNotSave()
    {
        const QString path = m_folder.filePath("a-file/names.xml"_s);
        settings::write(m_folder.filePath("a-file"_s), "in the way"_s);
        settings::set("attendanceNameCacheFile"_s, path);
        log().expect("Failed to load name cache"_s);
        log().expect("Failed to save name cache: failed to create directory \"%1\""_s.arg(
            m_folder.filePath("a-file"_s)));
        AttendanceNameCache cache;
        cache.insert(1, "A"_s);
        QMetaObject::invokeMethod(&cache, "save");
        QVERIFY(QFile::remove(m_folder.filePath("a-file"_s)));
        QMetaObject::invokeMethod(&cache, "save");
        QVERIFY(QFile::exists(path));
    }

private:
    QTemporaryDir m_folder;
};

static RegisterTest<TestAttendanceNameCache> registerAttendanceNameCache;

#include "tst_attendancenamecache.moc"
