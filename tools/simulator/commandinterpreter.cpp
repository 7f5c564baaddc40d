// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/commandinterpreter.h"

#include "simulator/cardholders.h"
#include "simulator/simulator.h"
#include "simulator/virtualreader.h"

#include <algorithm>

namespace simulator {
namespace {

    constexpr int listedRequests = 20;

    QString error(const QString &text)
    {
        return QStringLiteral("error: ") + text;
    }

    /// Decodes hexadecimal digits; blanks are ignored. Nothing for any other text.
    std::optional<QByteArray> bytesOf(const QString &text)
    {
        const QByteArray digits = text.toLatin1().replace(' ', "").toLower();
        const QByteArray bytes = QByteArray::fromHex(digits);
        return bytes.toHex() == digits ? std::optional(bytes) : std::nullopt;
    }

    QString noBytes(const QString &text)
    {
        return error(QStringLiteral("\"%1\" is not a sequence of bytes in hex").arg(text));
    }

    /// Card and time of reading, which identify a record.
    using Sightings = QVector<QPair<quint64, QDateTime>>;

    QString repetitions(const char *title, const Sightings &sightings)
    {
        QMap<QPair<quint64, QDateTime>, int> times;
        for (const auto &each : sightings)
            ++times[each];
        return QStringLiteral("%1: %2 accepted, %3 distinct, %4 more than once")
            .arg(QLatin1String(title))
            .arg(sightings.size())
            .arg(times.size())
            .arg(std::count_if(times.begin(), times.end(), [](int n) { return n > 1; }));
    }

} // namespace

struct CommandInterpreter::Command
{
    const char *name;
    const char *arguments; ///< as shown in the help; empty for none
    const char *effect;
    QString (CommandInterpreter::*function)(const QString &arguments);
};

const QVector<CommandInterpreter::Command> &CommandInterpreter::commands()
{
    using Self = CommandInterpreter;
    static const QVector<Command> list {
        { "fault", "ROUTE KIND", "spoil the responses of a route", &Self::fault },
        { "faults", "", "list the faults of all routes", &Self::faults },
        { "schedule", "FILE|default", "serve a file or the generated day", &Self::schedule },
        { "configuration", "JSON|default", "serve this configuration", &Self::configuration },
        { "tap", "ID", "hold a card to the reader", &Self::tap },
        { "send", "HEX", "send these bytes from the reader", &Self::send },
        { "stale", "HEX", "put these bytes into the line for the next plug", &Self::stale },
        { "unplug", "", "unplug the reader", &Self::unplug },
        { "plug", "", "plug the reader in", &Self::plug },
        { "requests", "", "list the latest requests", &Self::requests },
        { "audit", "", "count requests, records and bookings", &Self::audit },
        { "records", "", "list the accepted attendance records", &Self::records },
        { "bookings", "", "list the accepted presence bookings", &Self::bookings },
        { "present", "ID", "mark the holder of a card as present", &Self::present },
        { "absent", "ID", "mark the holder of a card as absent", &Self::absent },
        { "registrations", "", "list the registered cards", &Self::registrations },
        { "help", "", "show this text", &Self::help },
        { "quit", "", "end the kiosk and the simulator", &Self::quit },
    };
    return list;
}

CommandInterpreter::CommandInterpreter(Simulator *simulator, QObject *parent)
    : QObject(parent)
    , m_simulator(simulator)
{
}

QString CommandInterpreter::execute(const QString &line)
{
    const QString text = line.trimmed();
    const QString name = text.section(QLatin1Char(' '), 0, 0);
    const QString arguments = text.mid(name.size()).trimmed();
    const auto command
        = std::find_if(commands().begin(), commands().end(),
                       [&name](const Command &each) { return name == QLatin1String(each.name); });
    if (command == commands().end())
        return error(QStringLiteral("unknown command \"%1\", try help").arg(name));
    if (arguments.isEmpty() != (*command->arguments == '\0'))
        return error(
            QStringLiteral("usage: %1 %2").arg(name, QLatin1String(command->arguments)).trimmed());
    return (this->*command->function)(arguments);
}

QString CommandInterpreter::setFault(const QString &route, const QString &fault)
{
    const auto knownRoute = fromName<Route>(route);
    if (!knownRoute)
        return error(QStringLiteral("unknown route \"%1\", try faults").arg(route));
    const auto knownFault = fromName<Fault>(fault);
    if (!knownFault)
        return error(QStringLiteral("unknown fault \"%1\", try help").arg(fault));
    m_simulator->setFault(*knownRoute, *knownFault);
    return QStringLiteral("%1: %2").arg(route, fault);
}

QString CommandInterpreter::fault(const QString &arguments)
{
    const QStringList words = arguments.simplified().split(QLatin1Char(' '));
    return words.size() == 2 ? setFault(words[0], words[1])
                             : error(QStringLiteral("usage: fault ROUTE KIND"));
}

QString CommandInterpreter::faults(const QString & /*arguments*/)
{
    QStringList lines;
    for (const Route route : values<Route>())
        lines += QStringLiteral("%1: %2").arg(nameOf(route), nameOf(m_simulator->fault(route)));
    return lines.join(QLatin1Char('\n'));
}

QString CommandInterpreter::schedule(const QString &arguments)
{
    if (arguments == QLatin1String("default")) {
        m_simulator->setSchedule({});
        return QStringLiteral("serving the generated day");
    }
    QString reason;
    return m_simulator->setScheduleFile(arguments, &reason)
        ? QStringLiteral("serving %1").arg(arguments)
        : error(reason);
}

QString CommandInterpreter::configuration(const QString &arguments)
{
    const bool isDefault = arguments == QLatin1String("default");
    m_simulator->setConfiguration(isDefault ? QByteArray() : arguments.toUtf8());
    return QStringLiteral("the kiosk fetches it within five minutes");
}

QString CommandInterpreter::requests(const QString & /*arguments*/)
{
    QStringList lines;
    for (const Route route : values<Route>()) {
        const auto recent = m_simulator->requests(route).mid(
            std::max(0, m_simulator->requestCount(route) - listedRequests));
        for (const RecordedRequest &request : recent)
            lines += QStringLiteral("%1 %2 %3%4")
                         .arg(request.time.toString(QStringLiteral("HH:mm:ss")),
                              QString::fromLatin1(request.method), request.path,
                              request.accepted ? QString() : QStringLiteral(" (refused)"));
    }
    return lines.isEmpty() ? QStringLiteral("no requests yet") : lines.join(QLatin1Char('\n'));
}

QString CommandInterpreter::audit(const QString & /*arguments*/)
{
    QStringList lines;
    for (const Route route : values<Route>()) {
        const auto all = m_simulator->requests(route);
        const auto accepted
            = std::count_if(all.begin(), all.end(), [](const auto &each) { return each.accepted; });
        lines += QStringLiteral("%1: %2 requests, %3 refused")
                     .arg(nameOf(route))
                     .arg(all.size())
                     .arg(all.size() - accepted);
    }
    Sightings records;
    for (const AttendanceRecord &each : m_simulator->attendanceRecords())
        records += { each.transponderId, each.clientTime };
    lines += repetitions("attendance records", records);
    Sightings bookings;
    for (const PresenceBooking &each : m_simulator->presenceBookings())
        bookings += { each.tid, each.time };
    lines += repetitions("presence bookings", bookings);
    lines += QStringLiteral("stray requests: %1").arg(m_simulator->strayRequests().size());
    return lines.join(QLatin1Char('\n'));
}

QString CommandInterpreter::records(const QString & /*arguments*/)
{
    QStringList lines;
    const auto records = m_simulator->attendanceRecords();
    for (const AttendanceRecord &record : records)
        lines += QStringLiteral("record: card %1 in %2 at %3%4")
                     .arg(record.transponderId)
                     .arg(record.locationId)
                     .arg(record.clientTime.toString(Qt::ISODate),
                          record.lagMs ? QStringLiteral(", %1 ms late").arg(*record.lagMs)
                                       : QString());
    return lines.isEmpty() ? QStringLiteral("no records yet") : lines.join(QLatin1Char('\n'));
}

QString CommandInterpreter::bookings(const QString & /*arguments*/)
{
    QStringList lines;
    const auto bookings = m_simulator->presenceBookings();
    for (const PresenceBooking &booking : bookings)
        lines += QStringLiteral("booking: card %1 %2 at %3, location %4")
                     .arg(booking.tid)
                     .arg(nameOf(booking.type), booking.time.toString(Qt::ISODate))
                     .arg(booking.locationId);
    return lines.isEmpty() ? QStringLiteral("no bookings yet") : lines.join(QLatin1Char('\n'));
}

QString CommandInterpreter::present(const QString &arguments)
{
    return setPresent(arguments, true);
}

QString CommandInterpreter::absent(const QString &arguments)
{
    return setPresent(arguments, false);
}

QString CommandInterpreter::setPresent(const QString &card, bool isPresent)
{
    const auto number = CardHolders::numberOf(card);
    if (!number || !m_simulator->setPresent(*number, isPresent))
        return error(QStringLiteral("nobody holds the card \"%1\"").arg(card));
    return QStringLiteral("%1 is %2")
        .arg(card, isPresent ? QStringLiteral("present") : QStringLiteral("absent"));
}

QString CommandInterpreter::registrations(const QString & /*arguments*/)
{
    QStringList lines;
    const auto registrations = m_simulator->registrations();
    for (const CardRegistration &each : registrations)
        lines += QStringLiteral("registration: card %1 to %2 at %3%4")
                     .arg(each.tid, each.owner, each.time.toString(Qt::ISODate),
                          each.byPhone ? QStringLiteral(", by phone") : QString());
    return lines.isEmpty() ? QStringLiteral("no registrations yet") : lines.join(QLatin1Char('\n'));
}

QString CommandInterpreter::readerProblem(bool mustBePlugged) const
{
    if (!m_reader)
        return error(QStringLiteral("there is no reader, see --no-reader and --run"));
    if (mustBePlugged && !m_reader->isPlugged())
        return error(QStringLiteral("the reader is not plugged in"));
    return {};
}

QString CommandInterpreter::tap(const QString &arguments)
{
    const QString problem = readerProblem(true);
    if (!problem.isEmpty())
        return problem;
    m_reader->tap(arguments.toUtf8());
    return QStringLiteral("sent %1").arg(arguments);
}

QString CommandInterpreter::send(const QString &arguments)
{
    const QString problem = readerProblem(true);
    if (!problem.isEmpty())
        return problem;
    const auto bytes = bytesOf(arguments);
    if (!bytes)
        return noBytes(arguments);
    m_reader->send(*bytes);
    return QStringLiteral("sent %1 bytes").arg(bytes->size());
}

QString CommandInterpreter::stale(const QString &arguments)
{
    const QString problem = readerProblem(false);
    if (!problem.isEmpty())
        return problem;
    const auto bytes = bytesOf(arguments);
    if (!bytes)
        return noBytes(arguments);
    m_reader->setStaleBytes(*bytes);
    return QStringLiteral("%1 bytes wait for the next plug").arg(bytes->size());
}

QString CommandInterpreter::unplug(const QString & /*arguments*/)
{
    const QString problem = readerProblem(true);
    if (!problem.isEmpty())
        return problem;
    m_reader->unplug();
    return QStringLiteral("%1 is unplugged").arg(m_reader->portName());
}

QString CommandInterpreter::plug(const QString & /*arguments*/)
{
    const QString problem = readerProblem(false);
    if (!problem.isEmpty())
        return problem;
    return m_reader->plug() ? QStringLiteral("%1 is plugged in").arg(m_reader->portName())
                            : error(m_reader->errorString());
}

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): all commands have one type
QString CommandInterpreter::help(const QString & /*arguments*/)
{
    QString text;
    for (const Command &each : commands())
        text += QStringLiteral("%1 %2\n")
                    .arg(QStringLiteral("%1 %2").arg(QLatin1String(each.name),
                                                     QLatin1String(each.arguments)),
                         -22)
                    .arg(QLatin1String(each.effect));
    const auto separator = QStringLiteral(" ");
    return text
        + QStringLiteral("ROUTE: %1\nKIND: %2")
              .arg(names<Route>().join(separator), names<Fault>().join(separator));
}

QString CommandInterpreter::quit(const QString & /*arguments*/)
{
    Q_EMIT quitRequested();
    return QStringLiteral("bye");
}

} // namespace simulator
