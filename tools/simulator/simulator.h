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
 * Simulates the kiosk's services on 127.0.0.1, working or faulty, and records their requests. Lives
 * in one thread. Only requestServed() and the control address need its event loop.
 */
class Simulator : public QObject
{
    Q_OBJECT

public:
    /// Executes a line of text and returns its output.
    using CommandHandler = std::function<QString(const QString &command)>;

    explicit Simulator(QObject *parent = nullptr);
    Q_DISABLE_COPY_MOVE(Simulator)
    ~Simulator() override;

    /// Starts the services on the port, or on a free one if it is 0. On failure see errorString().
    [[nodiscard]] bool start(quint16 port = 0);
    /// Returns promptly. Pending responses end unfinished.
    void stop();
    [[nodiscard]] QString errorString() const { return m_errorString; }

    /// Without a trailing slash. Empty while stopped.
    [[nodiscard]] QUrl baseUrl() const;
    /// The address of a day's schedule as a pattern for QDate::toString().
    [[nodiscard]] QString scheduleUrlTemplate() const;

    /// Serves these bytes for every date. Empty restores a newly generated day.
    void setSchedule(const QByteArray &xml);
    /// Serves the file for every date and reads it at each request, so that it can be edited.
    /// @param error receives the reason of a failure; may be null
    bool setScheduleFile(const QString &path, QString *error);

    /// Takes the tokens of a real identity server instead of its own; before start().
    /// @param endpoint for the introspection of tokens, with name and secret of a service
    void setIntrospection(const QUrl &endpoint);
    /// Serves this JSON as the configuration. Empty restores the default.
    void setConfiguration(const QByteArray &json);
    /// The settings that connect a kiosk to these services: addresses and credentials.
    [[nodiscard]] QMap<QString, QString> kioskSettings() const;

    /// Applies to new requests. Hanging and dripping ones are completed.
    void setFault(Route route, Fault fault);
    [[nodiscard]] Fault fault(Route route) const;
    void clearFaults();
    /// Default: 10 s.
    void setDripInterval(std::chrono::milliseconds interval);

    /// All requests to the route since construction, refused ones included.
    [[nodiscard]] QVector<RecordedRequest> requests(Route route) const;
    [[nodiscard]] int requestCount(Route route) const { return requests(route).size(); }
    /// All logged attendance records in order of arrival, even if the response was lost.
    [[nodiscard]] QVector<AttendanceRecord> attendanceRecords() const;

    /// All presence bookings, likewise.
    [[nodiscard]] QVector<PresenceBooking> presenceBookings() const;
    /// Marks the holder of the card as present from now on, or as absent. False without a holder.
    bool setPresent(quint64 card, bool present);

    /// The cards registered since construction, by the kiosk or by phone.
    [[nodiscard]] QVector<CardRegistration> registrations() const;
    /// Requests to the other server, to which Fault::RedirectAway and a hostile QR code lead. A
    /// correct kiosk sends none.
    [[nodiscard]] QVector<RecordedRequest> strayRequests() const;

    /// Handles POST /control, whose body is the command. Called in this object's thread.
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
