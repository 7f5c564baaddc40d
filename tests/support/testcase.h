// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "simulator/simulator.h"
#include "support/logtrap.h"

#include <QSignalSpy>
#include <QTest>

#include <functional>
#include <memory>

class Config;

/** The settings of the process under test, in its private folders (see testmain.cpp). */
namespace settings {
/** The user's file, which the program writes. */
[[nodiscard]] QString userFile();
/** Stores a value in that file; takes effect at once. */
void set(const QString &key, const QVariant &value);
/** Its content as "key=value", sorted by key. */
[[nodiscard]] QString own();
/** Content of a file; empty if it does not exist. */
[[nodiscard]] QString read(const QString &path);
/** Writes a file; takes effect at the next restart(). */
void write(const QString &path, const QString &content);
/** Like a new start of the program: deletes the singletons and reads the files again. */
Config *restart();
/** The same with these texts in the user's file and in the machine-wide file. */
Config *startWith(const QString &user, const QString &machine = {});
} // namespace settings

/** Base of the test classes: each test starts with empty settings, no singletons and a LogTrap. */
class TestCase : public QObject
{
    Q_OBJECT

protected:
    [[nodiscard]] LogTrap &log() { return *m_log; }

    /** The simulated services, started on first use; the settings then point to room 1 there. */
    simulator::Simulator &services();

    /** The address of today's schedule in services(). */
    [[nodiscard]] QUrl today()
    {
        return QUrl(QDate::currentDate().toString(services().scheduleUrlTemplate()));
    }

    template <typename... Types, typename... Names> static void columns(Names... names)
    {
        (QTest::addColumn<Types>(names), ...);
    }

    /** Stores string literals as QString. */
    template <typename... Cells> static void row(const char *tag, Cells... cells)
    {
        (QTest::newRow(tag) << ... << cells);
    }

    /** The value of @p column in the current row. */
    template <typename T = QString> [[nodiscard]] static T at(const char *column)
    {
        return *static_cast<T *>(QTest::qData(column, qMetaTypeId<T>()));
    }

protected Q_SLOTS:
    void init();
    void cleanup();

private:
    std::unique_ptr<LogTrap> m_log;
    std::unique_ptr<simulator::Simulator> m_services;
};

/** The test classes that the executable runs. */
inline QVector<std::function<std::unique_ptr<QObject>()>> registeredTests;

/** An object of this type in the file of test class T registers it. */
template <typename T> struct RegisterTest
{
    RegisterTest()
    {
        registeredTests.append([] { return std::make_unique<T>(); });
    }
};
