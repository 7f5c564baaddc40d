// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>

namespace simulator {

class Simulator;
class VirtualReader;

/** The simulator's commands as lines of text, from wherever they come. */
class CommandInterpreter : public QObject
{
    Q_OBJECT

public:
    /// @param simulator what the commands act on; not owned
    explicit CommandInterpreter(Simulator *simulator, QObject *parent = nullptr);

    /// The reader that the commands act on; none if null. Not owned.
    void setReader(VirtualReader *reader) { m_reader = reader; }
    /// Executes one line and returns the answer without a line end; an error begins with "error:".
    [[nodiscard]] QString execute(const QString &line);
    /// Sets a fault written as two words, the same as the command "fault" and `--fault` do.
    [[nodiscard]] QString setFault(const QString &route, const QString &fault);

Q_SIGNALS:
    /// Emitted within execute(); connect it queued, for the answer has yet to be delivered.
    void quitRequested();

private:
    struct Command;
    static const QVector<Command> &commands();

    [[nodiscard]] QString fault(const QString &arguments);
    [[nodiscard]] QString faults(const QString &arguments);
    [[nodiscard]] QString schedule(const QString &arguments);
    [[nodiscard]] QString configuration(const QString &arguments);
    [[nodiscard]] QString requests(const QString &arguments);
    [[nodiscard]] QString audit(const QString &arguments);
    [[nodiscard]] QString records(const QString &arguments);
    [[nodiscard]] QString bookings(const QString &arguments);
    [[nodiscard]] QString present(const QString &arguments);
    [[nodiscard]] QString absent(const QString &arguments);
    [[nodiscard]] QString setPresent(const QString &card, bool isPresent);
    [[nodiscard]] QString registrations(const QString &arguments);
    [[nodiscard]] QString tap(const QString &arguments);
    [[nodiscard]] QString send(const QString &arguments);
    [[nodiscard]] QString stale(const QString &arguments);
    [[nodiscard]] QString unplug(const QString &arguments);
    [[nodiscard]] QString plug(const QString &arguments);
    /// What keeps the reader from sending, or an empty text.
    [[nodiscard]] QString readerProblem(bool hasToBePlugged) const;
    [[nodiscard]] QString help(const QString &arguments);
    [[nodiscard]] QString quit(const QString &arguments);

    Simulator *const m_simulator;
    VirtualReader *m_reader = nullptr;
};

} // namespace simulator
