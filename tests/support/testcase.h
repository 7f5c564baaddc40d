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

/** The settings of the process under test, which lie in folders of its own (see testmain.cpp). */
namespace settings {
/** The file of the user, the one that the program writes. */
[[nodiscard]] QString userFile();
/** Stores a value in that file, in force at once. */
void set(const QString &key, const QVariant &value);
/** All that stands in it, as "key=value" in the order of the keys. */
[[nodiscard]] QString own();
/** Content of a file, empty when there is none. */
[[nodiscard]] QString read(const QString &path);
/** Writes a file by hand, in force from the next restart(). */
void write(const QString &path, const QString &content);
/** As a new start of the program: the singletons are gone, and the files are read anew. */
Config *restart();
/** The same with these texts in the user's file and in the machine-wide one behind it. */
Config *startWith(const QString &user, const QString &machine = {});
} // namespace settings

/** Base of the test classes: each test has empty settings, no singleton yet, and a trapped log. */
class TestCase : public QObject
{
    Q_OBJECT

protected:
    [[nodiscard]] LogTrap &log() { return *m_log; }

    /** The services of the test, started on first use; the settings then lead to room 1 there. */
    simulator::Simulator &services();

    /** A download from services(). */
    [[nodiscard]] QUrl today()
    {
        return QUrl(QDate::currentDate().toString(services().scheduleUrlTemplate()));
    }

    template <typename... Types, typename... Names> static void columns(Names... names)
    {
        (QTest::addColumn<Types>(names), ...);
    }

    /** Cells that are plain text become a QString. */
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

/** What the executable runs. */
inline QVector<std::function<std::unique_ptr<QObject>()>> registeredTests;

/** One object of this in the file of a test class T puts it on the list. */
template <typename T> struct RegisterTest
{
    RegisterTest()
    {
        registeredTests.append([] { return std::make_unique<T>(); });
    }
};
