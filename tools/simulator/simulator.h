// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "simulator/attendancerecord.h"
#include "simulator/cardregistration.h"
#include "simulator/enums.h"
#include "simulator/presencebooking.h"
#include "simulator/recordedrequest.h"

#include <QMap>
#include <QObject>
#include <QUrl>
#include <QVector>

#include <chrono>
#include <functional>
#include <memory>

namespace simulator {

class Backend;

/**
 * Plays the services around the kiosk on 127.0.0.1, good and broken, and records what they are
 * asked. Lives in one thread, which need not run an event loop while requests are answered; only
 * requestServed() and the control address need one.
 */
class Simulator : public QObject
{
    Q_OBJECT

public:
    /// Executes a line of text and returns the answer.
    using CommandHandler = std::function<QString(const QString &command)>;

    explicit Simulator(QObject *parent = nullptr);
    Q_DISABLE_COPY_MOVE(Simulator)
    ~Simulator() override;

    /// Starts to serve, on a free port if it is 0. On failure see errorString().
    [[nodiscard]] bool start(quint16 port = 0);
    /// Returns promptly, whatever answers are under way: hanging and dripping ones end unfinished.
    void stop();
    [[nodiscard]] QString errorString() const { return m_errorString; }

    /// Without a slash at the end; empty while stopped.
    [[nodiscard]] QUrl baseUrl() const;
    /// The address of a day's schedule as a pattern for QDate::toString().
    [[nodiscard]] QString scheduleUrlTemplate() const;

    /// Serves these bytes on every date; empty goes back to the generated day, made anew.
    void setSchedule(const QByteArray &xml);
    /// Serves the file on every date. It is read at each request and can be edited meanwhile.
    /// @param error the reason of a refusal; may be null
    bool setScheduleFile(const QString &path, QString *error);

    /// Serves this JSON as every screen's configuration; empty goes back to the default.
    void setConfiguration(const QByteArray &json);
    /// The settings that lead a kiosk to these services: addresses and credentials, nothing else.
    [[nodiscard]] QMap<QString, QString> kioskSettings() const;

    /// Applies to requests that come from now on; requests that hang or drip are completed.
    void setFault(Route route, Fault fault);
    [[nodiscard]] Fault fault(Route route) const;
    void clearFaults();
    /// 10 s if never set.
    void setDripInterval(std::chrono::milliseconds interval);

    /// All requests to the route since the construction, refused ones included.
    [[nodiscard]] QVector<RecordedRequest> requests(Route route) const;
    [[nodiscard]] int requestCount(Route route) const { return requests(route).size(); }
    /// All attendance that the service has logged, in this order, whether or not its answer
    /// arrived.
    [[nodiscard]] QVector<AttendanceRecord> attendanceRecords() const;

    /// All presence that the service has booked, likewise.
    [[nodiscard]] QVector<PresenceBooking> presenceBookings() const;
    /// Has the holder of the card come this moment, or leave. Returns whether anybody holds it.
    bool setPresent(quint64 card, bool present);

    /// The cards that were registered since the construction, by the kiosk or by phone.
    [[nodiscard]] QVector<CardRegistration> registrations() const;
    /// What another server got, to which Fault::RedirectAway and a hostile QR code lead. Nothing
    /// may ever arrive there.
    [[nodiscard]] QVector<RecordedRequest> strayRequests() const;

    /// Answers POST /control, whose body is the command; called in this object's thread.
    void setCommandHandler(const CommandHandler &handler) { m_commandHandler = handler; }

Q_SIGNALS:
    /// One line per event, emitted from this object's event loop.
    void requestServed(const QString &line);

private:
    CommandHandler m_commandHandler;
    QString m_errorString;
    std::unique_ptr<Backend> m_backend;
};

} // namespace simulator
