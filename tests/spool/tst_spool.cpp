// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "base/failure.h"
#include "spool/spool.h"
#include "support/crashdisk.h"
#include "support/testcase.h"

#include <QTemporaryDir>

#include <optional>
#include <sys/stat.h>

class TestSpool : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        TestCase::init();
        m_folder.emplace();
        settings::set("spoolDir"_s, m_folder->path());
    }

    void liesWhereItIsNamed()
    {
        QCOMPARE(m_spool.folder(), m_folder->path());
        settings::set("spoolDir"_s, {});
        QVERIFY(m_spool.folder().endsWith("/spool/test"_s));
        qputenv(variable, "/by/variable/");
        QCOMPARE(m_spool.folder(), "/by/variable"_s);
        qunsetenv(variable);
    }

    void keepsRecordsApartAndWhole()
    {
        const CrashDisk disk; // which can not check a name and rename at once
        settings::set("spoolDir"_s, path("new/folder"));
        QStringList paths;
        for (int i = 0; i < 300; ++i) // more than one in a millisecond
            paths.append(m_spool.create(QByteArray::number(i)));
        QCOMPARE(paths.removeDuplicates(), 0);
        QCOMPARE(m_spool.count(), 300);
        QVERIFY(paths.first().endsWith(QLatin1Char('0')));
        const QString stem = paths.first().chopped(1);
        if (paths.at(1).startsWith(stem))
            QCOMPARE(paths.at(1), stem + QLatin1Char('1'));

        Spool::replace(paths.at(7), "new");
        QCOMPARE(settings::read(paths.at(7)), "new"_s);
        QCOMPARE(settings::read(paths.at(8)), "8"_s);
        QCOMPARE(QFile(paths.at(8)).permissions() & 0x77, 0);
        QVERIFY(!Spool::remove(paths.at(7)));
        QVERIFY(!Spool::remove(paths.at(7))); // gone already is as good
        QCOMPARE(allFiles().size(), 299); // nothing unfinished beside them
    }

    void startsAnewWhenItsFolderVanishes()
    {
        settings::set("spoolDir"_s, path("new"));
        DurableFile file = m_spool.write("record");
        QVERIFY(QDir(m_spool.folder()).removeRecursively());
        QCOMPARE(settings::read(m_spool.commit(file)), "record"_s);
    }

    void tellsWhyAFileCanNotBeMadeOrRemoved()
    {
        QVERIFY(m_spool.canBeListed());
        const QString missing = path("missing/record");
        const auto failure = catchFailure([&] { Spool::replace(missing, "x"); });
        const QString text = failure ? failure->text : QString();
        QVERIFY2(text.startsWith("failed to create file \"%1\": 5 "_s.arg(missing)),
                 qPrintable(text));
        const auto problem = Spool::remove(m_folder->path());
        QVERIFY(problem && problem->text.startsWith(m_folder->path() + QLatin1Char(' ')));
        settings::write(path("file"), {});
        settings::set("spoolDir"_s, path("file"));
        log().expect("can not be listed."_s);
        QVERIFY(!m_spool.canBeListed());
    }

    void clearsWhatACrashLeftAndNothingElse()
    {
        for (const char *name : { "kq1f0", ".kq1f1.lumenboard-part", ".hidden", ".kq1f2.part" })
            settings::write(path(name), {});
        QVERIFY(QFile::link(path("kq1f0"), path("link")));
        QCOMPARE(mkfifo(QFile::encodeName(path("pipe")).constData(), 0600), 0);
        m_spool.removeLeftovers();
        QCOMPARE(allFiles().join(QLatin1Char(' ')), ".hidden .kq1f2.part kq1f0 link pipe"_s);
        QCOMPARE(m_spool.count(), 1);
    }

private:
    static constexpr auto variable = "LB_TEST_SPOOL_DIR";

    [[nodiscard]] QString path(const char *name) const
    {
        return m_folder->path() + QLatin1Char('/') + QLatin1String(name);
    }

    [[nodiscard]] QStringList allFiles() const
    {
        return QDir(m_spool.folder())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDir::Name);
    }

    std::optional<QTemporaryDir> m_folder;
    const Spool m_spool { { variable, "spoolDir"_s, "spool/test"_s } };
};

static RegisterTest<TestSpool> registerSpool;

#include "tst_spool.moc"
