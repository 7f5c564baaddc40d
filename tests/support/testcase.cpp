// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/testcase.h"

#include "api/lbapi.h"

#include <QDir>
#include <QSettings>

namespace settings {
namespace {

    /** Qt parses a file anew only if its time stamp or size has changed. */
    void touch(QFile &file)
    {
        static QDateTime stamp = QDateTime::currentDateTimeUtc();
        stamp = stamp.addSecs(-1);
        file.setFileTime(stamp, QFileDevice::FileModificationTime);
    }

    void forgetSingletons()
    {
        delete qApp->findChild<LBAPI *>();
        delete qApp->findChild<Config *>();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

} // namespace

QString userFile()
{
    return qEnvironmentVariable("XDG_CONFIG_HOME") + "/Kettlewood/Lumenboard2.conf"_s;
}

void set(const QString &key, const QVariant &value)
{
    QSettings store;
    store.setIniCodec("UTF-8");
    store.setValue(key, value);
}

QString own()
{
    QSettings store;
    store.setIniCodec("UTF-8");
    store.setFallbacksEnabled(false);
    QStringList lines;
    for (const QString &key : store.allKeys())
        lines.append("%1=%2"_s.arg(key, store.value(key).toString()));
    return lines.join(QLatin1Char(' '));
}

QString read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void write(const QString &path, const QString &content)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content.toUtf8()) < 0 || !file.flush())
        qFatal("Cannot write %s", qPrintable(path));
    touch(file);
}

Config *restart()
{
    forgetSingletons();
    QFile file(userFile());
    if (file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly))
        touch(file);
    return Config::instance();
}

Config *startWith(const QString &user, const QString &machine)
{
    write(userFile(), user);
    write(qEnvironmentVariable("XDG_CONFIG_DIRS") + "/Kettlewood/Lumenboard2.conf"_s, machine);
    return restart();
}

} // namespace settings

simulator::Simulator &TestCase::services()
{
    if (!m_services) {
        m_services = std::make_unique<simulator::Simulator>();
        if (!m_services->start())
            qFatal("%s", qPrintable(m_services->errorString()));
        const auto addresses = m_services->kioskSettings();
        for (auto each = addresses.begin(); each != addresses.end(); ++each)
            settings::set(each.key(), each.value());
        settings::set("plenarLocationId"_s, 1);
    }
    return *m_services;
}

void TestCase::init()
{
    m_log = std::make_unique<LogTrap>();
}

void TestCase::cleanup()
{
    settings::forgetSingletons();
    for (const char *folder : { "XDG_CONFIG_HOME", "XDG_CONFIG_DIRS" })
        QDir(qEnvironmentVariable(folder)).removeRecursively();
    m_services.reset();
    const std::unique_ptr<LogTrap> log = std::move(m_log);
    if (QTest::currentTestFailed())
        qInfo().noquote() << "The log:" << log->lines().join(QLatin1Char('\n'));
    QVERIFY2(log->complaints().isEmpty(), qPrintable(log->complaints()));
}
