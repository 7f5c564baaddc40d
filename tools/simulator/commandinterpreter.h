// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>

namespace simulator {

class Simulator;
class VirtualReader;

/** Executes the simulator's commands, given as lines of text. */
class CommandInterpreter : public QObject
{
    Q_OBJECT

public:
    /// @param simulator the object of the commands; not owned
    explicit CommandInterpreter(Simulator *simulator, QObject *parent = nullptr);

    /// The reader for the commands, not owned. Null for none.
    void setReader(VirtualReader *reader) { m_reader = reader; }
    /// Executes one line and returns its output without a line end. An error begins with "error:".
    [[nodiscard]] QString execute(const QString &line);
    /// Sets a fault by name, for the command "fault" and the option `--fault`.
    [[nodiscard]] QString setFault(const QString &route, const QString &fault);

Q_SIGNALS:
    /// Emitted within execute(). Connect it queued: the output has yet to be delivered.
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
    /// Why the reader cannot be used, or an empty text.
    [[nodiscard]] QString readerProblem(bool mustBePlugged) const;
    [[nodiscard]] QString help(const QString &arguments);
    [[nodiscard]] QString quit(const QString &arguments);

    Simulator *const m_simulator;
    VirtualReader *m_reader = nullptr;
};

} // namespace simulator
