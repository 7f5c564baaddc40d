// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "base/exceptions.h"
#include "spool/spool.h"
#include "support/fulldisk.h"
#include "support/testcase.h"

#include <QTemporaryDir>

#include <csignal>
#include <optional>
#include <sys/resource.h>
#include <sys/stat.h>

class TestSpool : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void liesWhereItIsNamed()
    {
        const Spool spool({ variable, "spoolDir"_s, "spool/test"_s });
        QVERIFY(spool.folder().endsWith("/spool/test"_s));
        settings::set("spoolDir"_s, "/by/setting"_s);
        QCOMPARE(spool.folder(), "/by/setting"_s);
        qputenv(variable, "/by/variable/");
        QCOMPARE(spool.folder(), "/by/variable"_s);
        qunsetenv(variable);
    }

    void keepsRecordsApartAndWhole()
    {
        const Spool spool = makeSpool();
        QStringList paths;
        for (int i = 0; i < 300; ++i) // more than one in a millisecond
            paths.append(spool.create(QByteArray::number(i)));
        QCOMPARE(paths.removeDuplicates(), 0);
        QCOMPARE(spool.count(), 300);
        QVERIFY(paths.first().endsWith(QLatin1Char('0')));
        const QString stem = paths.first().chopped(1);
        if (paths.at(1).startsWith(stem))
            QCOMPARE(paths.at(1), stem + QLatin1Char('1'));

        Spool::replace(paths.at(7), "new");
        QCOMPARE(read(paths.at(7)), QByteArray("new"));
        QCOMPARE(read(paths.at(8)), QByteArray("8"));
        QCOMPARE(QFile(paths.at(8)).permissions() & 0x77, 0);
        QVERIFY(!Spool::remove(paths.at(7)));
        QVERIFY(!Spool::remove(paths.at(7))); // gone already is as good
        QCOMPARE(spool.count(), 299);
        QCOMPARE(allFiles().size(), 299); // nothing unfinished beside them
    }

    void leavesNothingOfAFailedWrite()
    {
        const Spool spool = makeSpool();
        const QString path = spool.create("old");
        QString fresh;
        QString replaced;
        {
            const FullDisk full(1000);
            fresh = failure([&] { (void)spool.create(QByteArray(5000, 'x')); });
            replaced = failure([&] { Spool::replace(path, QByteArray(5000, 'x')); });
        }
        QVERIFY2(fresh.startsWith("failed to write to file \""_s + m_folder->path()),
                 qPrintable(fresh));
        QVERIFY2(replaced.startsWith("failed to write to file \"%1\": 2 "_s.arg(path)),
                 qPrintable(replaced));
        QCOMPARE(allFiles(), QStringList { QFileInfo(path).fileName() });
        QCOMPARE(read(path), QByteArray("old"));
    }

    void tellsWhyAFileCanNotBeMadeOrRemoved()
    {
        const Spool spool = makeSpool();
        QVERIFY(spool.canBeListed());
        const QString missing = m_folder->filePath("missing/record"_s);
        const QString text = failure([&] { Spool::replace(missing, "x"); });
        QVERIFY2(text.startsWith("failed to create file \"%1\": 5 "_s.arg(missing)),
                 qPrintable(text));
        const QString folder = m_folder->filePath("folder"_s);
        QVERIFY(QDir().mkpath(folder));
        const auto problem = Spool::remove(folder);
        QVERIFY(problem && problem->startsWith(folder + QLatin1Char(' ')));
        write("file"_s);
        settings::set("spoolDir"_s, m_folder->filePath("file"_s));
        log().expect("can not be listed."_s);
        QVERIFY(!spool.canBeListed());
    }

    void clearsWhatACrashLeftAndNothingElse()
    {
        const Spool spool = makeSpool();
        for (const auto &name :
             { "kq1f0"_s, ".kq1f1.lumenboard-part"_s, ".hidden"_s, ".kq1f2.part"_s })
            write(name);
        QVERIFY(QFile::link(m_folder->filePath("kq1f0"_s), m_folder->filePath("link"_s)));
        QCOMPARE(mkfifo(QFile::encodeName(m_folder->filePath("pipe"_s)).constData(), 0600), 0);
        spool.removeLeftovers();
        QCOMPARE(allFiles().join(QLatin1Char(' ')), ".hidden .kq1f2.part kq1f0 link pipe"_s);
        QCOMPARE(spool.count(), 1);
    }

private:
    static constexpr auto variable = "LB_TEST_SPOOL_DIR";

    Spool makeSpool()
    {
        m_folder.emplace();
        settings::set("spoolDir"_s, m_folder->path());
        return Spool({ variable, "spoolDir"_s, {} });
    }

    template <typename Function> static QString failure(Function function)
    {
        try {
            function();
        } catch (const AttendanceErrorException &e) {
            return QString::fromUtf8(e.what());
        }
        return {};
    }

    QStringList allFiles() const
    {
        return QDir(m_folder->path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDir::Name);
    }

    void write(const QString &name) const
    {
        QFile file(m_folder->filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }

    static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(unreadable)");
    }

    std::optional<QTemporaryDir> m_folder;
};

static RegisterTest<TestSpool> registerSpool;

#include "tst_spool.moc"
