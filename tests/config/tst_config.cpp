// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/config.h"
#include "config/effectivesettings.h"
#include "config/keys.h"
#include "config/refreshgrid.h"
#include "config/secrets.h"
#include "config/settingsfile.h"
#include "config/settingstable.h"
#include "support/testcase.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>

/** What the program reads: a setting by its key, or a property or function by its name. */
static QString valueOf(const Config &config, const QString &name)
{
    if (name == "eventDataUrl"_s)
        return QString::fromLatin1(config.eventDataUrl(QDate(2024, 5, 13)).toEncoded());
    if (name == "scheduleDate"_s)
        return config.scheduleDate().toString(Qt::ISODate);
    const QVariant property = config.property(qPrintable(name));
    return property.canConvert<QString>() ? property.toString()
                                          : QString::number(config.number(name));
}

class TestConfig : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void isDocumented()
    {
        const QString page = settings::read(LUMENBOARD_DOCS "configuration.md"_s);
        const QRegularExpression row( // key, remote, bounds, default
            R"(^\| `([\w/]+)`( ●)?.*? \| (\d+\.\.\d+)?.*? \| `?(.+?)`? \| )"_s,
            QRegularExpression::MultilineOption);
        QStringList documented;
        for (auto each = row.globalMatch(page); each.hasNext();)
            documented.append(each.next().capturedTexts().mid(1).join(QLatin1Char('|')));
        QStringList known;
        for (const Setting &setting : settingsTable()) {
            const bool isBounded = setting.minimum > std::numeric_limits<int>::min();
            const bool isRemote = setting.remote != Setting::Remote::No;
            const QString bounds = "%1..%2"_s.arg(setting.minimum).arg(setting.maximum);
            const QString value = setting.fixedDefault.toString();
            known.append("%1|%2|%3|%4"_s.arg(setting.key, isRemote ? " ●"_s : ""_s,
                                             isBounded ? bounds : ""_s,
                                             value.isEmpty() ? "empty"_s : value));
        }
        documented.sort();
        known.sort();
        QCOMPARE(documented, known);
    }

    void readsSettings_data()
    {
        columns<QString, QString, QString>("name", "line", "expected");
        const auto add = [](const QString &name, const QString &line, const QString &expected) {
            row(qPrintable((name + ": "_s + line).simplified()), name, line, expected);
        };
        const auto addAll = [&add](const QString &key, const QStringList &values, int expected) {
            for (const QString &value : values)
                add(key, "%1=%2"_s.arg(key, value), QString::number(expected));
        };
        const QStringList noNumbers
            = R"(|abc|20.5|20, 21|@Invalid()|@ByteArray(\xff\0)|@Rect(1 2))"_s.split(
                QLatin1Char('|'));
        // Lists and maps, their type as an octal digit, spelt with escapes, and over two lines.
        const QStringList damaged
            = R"(@Variant(\0\0\0\x7f\xff)|@Variant(\0\0\0\v\xff\0\0\0)|@Variant(\0\0\0\013))"
              R"(|@V\x61r\151a"n"t(\0\0\0\t)|@Varia\#nt(\0\0\0\b))"_s
                  .replace(QLatin1Char('#'), QLatin1Char('\n'))
                  .split(QLatin1Char('|'));
        for (const Setting &setting : settingsTable()) {
            if (setting.isNumber())
                addAll(setting.key, noNumbers + damaged, setting.fixedDefault.toInt());
            if (setting.type != Setting::Type::Number)
                continue;
            for (const int bound : { setting.minimum, setting.maximum }) {
                const qint64 beyond = bound + (bound == setting.minimum ? -1LL : 1LL);
                addAll(setting.key, { QString::number(bound), QString::number(beyond) }, bound);
            }
        }
        addAll(keys::tallyxMode, { "99999999999"_s, "3"_s, "-1"_s }, 1);
        addAll(keys::preferredTpRegMode, { "3"_s, "-1"_s }, 1);
        addAll(keys::preferredTpRegMode, { "2"_s }, 2);
        add("initialItem"_s, "defaultView=0"_s, "Default.qml"_s);
        for (const auto &line : { ""_s, "defaultView=2"_s, "defaultView=-1"_s })
            add("initialItem"_s, line, "LectureRoom.qml"_s);
        add("tpRegModeQR"_s, "tpRegModeQR=maybe"_s, "true"_s);
        add("quirlUrl"_s, "quirlUrl=1, two, 3"_s, ""_s);
        add("locationName"_s, "locationName=\"Größe 1, a; b\""_s, "Größe 1, a; b"_s);
        add("eventDataUrl"_s, ""_s, "https://plenar.example/rs/lumenboard/schedule/2024-05-13"_s);
        add("eventDataUrl"_s, "eventDataUrlTemplate=\"'http://[::1]:80/däy/'dd.MM.yy'?x'\""_s,
            "http://[::1]:80/d%C3%A4y/13.05.24?x"_s);
        const QString today = QDate::currentDate().toString(Qt::ISODate);
        add("scheduleDate"_s, "overrideDateDate=2024-05-13"_s, today);
        add("scheduleDate"_s, "overrideDate=true\noverrideDateDate=2024-05-13"_s, "2024-05-13"_s);
        add("scheduleDate"_s, "overrideDate=true\noverrideDateDate=20.5"_s, today);
        add("scheduleDate"_s, // Qt's reader of polygons ends the program
            "overrideDate=true\noverrideDateDate=@Variant(\\0\\0\\0General\\0\\0\\0%\\x8a\\x1f)"_s,
            today);
        add("scheduleDate"_s,
            "overrideDate=true\noverrideDateDate=@Variant(\\0\\0\\0\\xe\\0%\\x8b\\x1c)"_s,
            "2024-05-13"_s);
    }

    void readsSettings()
    {
        const Config *config = settings::startWith(at("line"));
        log().allow("QVariant::load"_s); // Qt's own complaint
        log().allow("Removing 1 damaged lines"_s);
        QTEST(valueOf(*config, at("name")), "expected");
    }

    void warnsOnceOfTextForANumber()
    {
        log().allow(" is no whole number, using "_s);
        settings::startWith("tallyxMode=http://me:secret@x\nrefreshInterval=1, 2\nfontBaseSize="_s
                            + QString(101, QLatin1Char('9')));
        warnOfSettings();
        for (const char *value : { R"("a\n")", "null", "1.5", "true", "3" }) {
            const QByteArray json = R"({"settings":{"defaultView":)" + QByteArray(value) + "}}";
            Config::instance()->applyConfiguration(QJsonDocument::fromJson(json));
            warnOfSettings();
            warnOfSettings();
        }
        QCOMPARE(log().lines().filter("Setting "_s).join(QLatin1Char('|')),
                 R"(Setting tallyxMode: "http://********@x" is no whole number, using 2|)"
                 R"(Setting fontBaseSize: a text of 101 characters is no whole number, using 12|)"
                 R"(Setting refreshInterval: "1, 2" is no whole number, using 300|)"
                 R"(Setting defaultView: "a\n" is no whole number, using 1|)"
                 R"(Setting defaultView: "1.5" is no whole number, using 1|)"
                 R"(Setting defaultView: "true" is no whole number, using 1)"_s);
    }

    void keepsTheSecret()
    {
        const QTemporaryDir credentials;
        const Config *config = settings::startWith("[Keycloak]\nclientId=a\nclientSecret=own"_s,
                                                   "[Keycloak]\nclientSecret=shared"_s);
        const auto shared = fallbackSettingsFiles();
        QVERIFY(secrets::readableByAll(shared).isEmpty());
        QVERIFY(QFile::setPermissions(shared.value(0), QFile::Permissions(0x6004)));
        log().expect("Settings file holds a secret that everybody can read"_s);
        secrets::warn();
        QCOMPARE(config->keycloakClientSecret(), "own"_s);
        settings::write(credentials.filePath("clientSecret"_s), "given\n"_s);
        qputenv("CREDENTIALS_DIRECTORY", QFile::encodeName(credentials.path()));
        QCOMPARE(config->keycloakClientSecret() + config->origin(keys::keycloakClientSecret),
                 "givencredential"_s);
        qunsetenv("CREDENTIALS_DIRECTORY");
        config = settings::startWith("[Keycloak]\nclientId=a"_s);
        log().expect("Keycloak/clientId or Keycloak/clientSecret is not set"_s);
        secrets::warn();
    }

    void storesOnlyWhatDiffers_data()
    {
        columns<QString, QString, bool, bool, QString>("machine", "user", "value", "changes",
                                                       "own");
        const char *on = "hideMouseCursor=true";
        const char *off = "hideMouseCursor=false";
        row("other", "", "", false, true, off);
        row("other again", "", off, false, false, off);
        row("back to default", "", off, true, true, "");
        row("machine says other", off, "", true, true, on);
        row("back, machine differs", off, off, true, true, on);
    }

    void storesOnlyWhatDiffers()
    {
        const bool value = at<bool>("value");
        Config *config = settings::startWith(at("user"), at("machine"));
        QTEST(config->setIfChanged(keys::hideMouseCursor, value), "changes");
        QTEST(settings::own(), "own");
        QCOMPARE(settings::restart()->hideMouseCursor(), value);
    }

    void refreshesAtTheNextPointOfTheGrid_data()
    {
        columns<QTime, int, int>("now", "interval", "expected");
        row("midnight", QTime(0, 0), 300, 300500);
        row("10 s ahead", QTime(10, 4, 50, 500), 300, 10000);
        row("less than 10 s ahead", QTime(10, 4, 50, 501), 300, 309999);
        row("shortest interval", QTime(10, 4, 45), 30, 15500);
        row("no part of the day", QTime(23, 59), 1000, 60500);
        row("just before midnight", QTime(23, 59, 59, 999), 300, 501);
    }

    void refreshesAtTheNextPointOfTheGrid()
    {
        const auto time
            = timeToNextRefresh(at<QTime>("now"), std::chrono::seconds(at<int>("interval")));
        QTEST(static_cast<int>(time.count()), "expected");
    }

    void announcesTheNameInAnyCase()
    {
        Config *config = Config::instance();
        const QSignalSpy changes(config, &Config::locationNameChanged);
        for (int i = 0; i < 2; ++i)
            config->setLocationName("Hörsaal 1, Süd"_s);
        QCOMPARE(changes.count(), 2);
        QCOMPARE(settings::restart()->locationName(), "Hörsaal 1, Süd"_s);
    }

    void appliesADocumentOnce_data()
    {
        columns<QString, QString, bool, QString>("user", "document", "changes", "own");
        row("top level alone", "",
            R"({"plenarLocationId":7,"locationName":"Hörsaal","locationId":5})", true,
            "locationId=5 locationName=Hörsaal plenarLocationId=7");
        row("settings", "tpRegModeQR=true", R"({"settings":{"tpRegModeQR":false,"tallyxMode":0}})",
            true, "tallyxMode=0 tpRegModeQR=false");
        row("unknown and misplaced keys", "fontBaseSize=9",
            R"({"fontBaseSize":20,"tallyxMode":1,"settings":{"locationId":5,"Keycloak/url":"x"}})",
            false, "fontBaseSize=9");
        row("null", "inactivityTimeout=20", R"({"settings":{"inactivityTimeout":null}})", true, "");
        row("null beside another section", "tallyxMode=1\n[Keycloak]\nclientId=Gerät",
            R"({"locationName":"Süd","settings":{"tallyxMode":null}})", true,
            "Keycloak/clientId=Gerät locationName=Süd");
        row("null of a machine's value", "", R"({"settings":{"attendanceEnabled":null}})", false,
            "");
        row("null for settings", "", R"({"locationId":1,"settings":null})", true, "locationId=1");
        row("wrong types", "",
            R"({"locationId":"abc","locationName":["a","b"],"plenarLocationId":true})", true,
            "locationId=abc locationName= plenarLocationId=true");
        row("list", "locationId=1", R"([{"locationId":2}])", false, "locationId=1");
    }

    void appliesADocumentOnce()
    {
        const auto json = QJsonDocument::fromJson(at("document").toUtf8());
        int changes = 0;
        const auto apply = [&](Config *config) {
            const QSignalSpy announced(config, &Config::configChanged);
            config->applyConfiguration(json);
            changes += announced.count();
        };
        apply(settings::startWith(at("user"), "attendanceEnabled=false"_s));
        QCOMPARE(changes, at<bool>("changes") ? 1 : 0);
        QTEST(settings::own(), "own");
        apply(Config::instance());
        apply(settings::restart());
        QCOMPARE(changes, at<bool>("changes") ? 1 : 0);
        QTEST(settings::own(), "own");
    }

    void keepsTheFilePrivate()
    {
        const QFileInfo file(settings::userFile());
        const auto othersMay = [&file] {
            const auto all
                = QFileInfo(file.filePath()).permissions() | QFileInfo(file.path()).permissions();
            return static_cast<int>(all & 0x77);
        };
        Config::instance()->setLocationName("A"_s);
        QCOMPARE(othersMay(), 0);
        QFile::setPermissions(file.filePath(), QFile::Permissions(0x6644));
        for (const auto &name : { "B"_s, "C"_s }) {
            settings::restart()->setLocationName(name);
            QCOMPARE(othersMay(), 0);
        }
        QCOMPARE(log().lines().filter("Settings file was open to others"_s).size(), 1);
    }

    void saysWhatItCanNotReadOrWrite_data()
    {
        columns<QString, QString, bool, bool>("path", "content", "reads", "writes");
        const QString file = settings::userFile();
        row("a file for the folder", QFileInfo(file).path(), "", true, false);
        row("a folder for the file", file + "/x"_s, "", false, false);
        row("not settings", file, "[General\n=\nnonsense", false, true);
    }

    void saysWhatItCanNotReadOrWrite()
    {
        settings::write(at("path"), at("content"));
        log().allow("settings"_s);
        Config *config = settings::restart();
        QCOMPARE(config->inactivityTimeout(), 60);
        config->applyConfiguration(QJsonDocument::fromJson(R"({"locationName":"A"})"));
        QCOMPARE(config->locationName(), "A"_s);
        QTEST(log().lines().filter("Failed to read settings from"_s).isEmpty(), "reads");
        QTEST(log().lines().filter("Failed to write settings to"_s).isEmpty(), "writes");
    }
};

static const RegisterTest<TestConfig> registered;

#include "tst_config.moc"
