// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "simulator/attendanceroute.h"
#include "simulator/cardholders.h"
#include "simulator/configurationroute.h"
#include "simulator/enums.h"
#include "simulator/httpserver.h"
#include "simulator/presencebook.h"
#include "simulator/presencebookingroute.h"
#include "simulator/presencestatusroute.h"
#include "simulator/recordedrequest.h"
#include "simulator/registrationpageroute.h"
#include "simulator/registrationroute.h"
#include "simulator/registrationstatusroute.h"
#include "simulator/scheduleroute.h"
#include "simulator/tokenroute.h"

#include <QDeadlineTimer>
#include <QVector>

#include <array>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

namespace simulator {

/**
 * Connects the HTTP workers with the Simulator: finds the route of a request, records it, applies
 * the fault and sends the response. Functions can be called from any thread, but start() and stop()
 * only from the owner's.
 */
class Backend
{
public:
    using Announce = std::function<void(const QString &line)>;
    using Reply = std::function<void(const QString &text)>;
    using Execute = std::function<void(const QString &command, const Reply &reply)>;

    /**
     * @param announce receives one line per event
     * @param execute runs a command from the control address and passes its output to the reply
     * Both are called in a worker thread and must not wait for the owner's thread.
     */
    Backend(Announce announce, Execute execute);
    Q_DISABLE_COPY_MOVE(Backend)
    ~Backend();

    [[nodiscard]] bool start(quint16 port);
    void stop();
    /// 0 while stopped.
    [[nodiscard]] quint16 port() const { return m_server ? m_server->port() : quint16(0); }

    [[nodiscard]] ScheduleRoute &schedule() { return m_schedule; }
    [[nodiscard]] TokenRoute &tokens() { return m_tokens; }
    [[nodiscard]] ConfigurationRoute &configuration() { return m_configuration; }
    [[nodiscard]] const AttendanceRoute &attendance() const { return m_attendance; }
    [[nodiscard]] const CardHolders &holders() const { return m_holders; }
    [[nodiscard]] PresenceBook &presence() { return m_presence; }

    void setFault(Route route, Fault fault);
    [[nodiscard]] Fault fault(Route route) const;
    void setDripInterval(std::chrono::milliseconds interval);
    [[nodiscard]] QVector<RecordedRequest> requests(Route route) const;
    /// Requests to the other server. Only faults lead there.
    [[nodiscard]] QVector<RecordedRequest> strayRequests() const;

private:
    /** State of one route. */
    struct Service
    {
        RouteHandler *handler;
        Fault fault = Fault::None;
        int switches = 0; ///< number of fault changes; a waiting request ends when it differs
        QVector<RecordedRequest> requests {};
    };

    /// Handles one request. Called in a worker thread, as are the next functions.
    void handle(const httplib::Request &request, httplib::Response &response);
    void serve(Service &service, const httplib::Request &request, RecordedRequest record,
               const QString &path, httplib::Response &response);
    /// Passes the request to the service and records it.
    /// @param fault reset to None if the service itself refuses the request
    [[nodiscard]] Response take(Service &service, const httplib::Request &request,
                                RecordedRequest &record, const QString &path, Fault &fault);
    /// Records a request to the other server. Called in a thread of that server.
    void recordStray(const httplib::Request &request, httplib::Response &response);
    /// Base address of the other server, which runs while the first one does.
    [[nodiscard]] QByteArray otherBaseUrl() const;
    [[nodiscard]] Response control(const RecordedRequest &request);
    /// Waits until the fault changes or the time is over (true), or until the server stops or the
    /// client disconnects (false).
    [[nodiscard]] bool hold(const Service &service, int switches, QDeadlineTimer until);
    /// Waits for one drip interval. Returns how many of the bytes left to send now, 0 to end.
    [[nodiscard]] size_t drip(const Service &service, int switches, size_t left);

    [[nodiscard]] Service &service(Route route) { return m_services[static_cast<size_t>(route)]; }
    [[nodiscard]] const Service &service(Route route) const
    {
        return m_services[static_cast<size_t>(route)];
    }
    [[nodiscard]] Service *ownerOf(const QByteArray &method, const QString &path);

    const Announce m_announce;
    const Execute m_execute;
    CardHolders m_holders;
    PresenceBook m_presence;
    ScheduleRoute m_schedule;
    TokenRoute m_tokens;
    ConfigurationRoute m_configuration { m_tokens };
    AttendanceRoute m_attendance { m_holders };
    PresenceStatusRoute m_presenceStatus { m_holders, m_presence };
    PresenceBookingRoute m_presenceBooking { m_holders, m_tokens, m_presence };
    RegistrationStatusRoute m_registrationStatus { m_holders, m_tokens,
                                                   [this] { return otherBaseUrl(); } };
    RegistrationRoute m_registration { m_holders, m_tokens };
    RegistrationPageRoute m_registrationPage { m_holders };
    std::unique_ptr<HttpServer> m_otherServer; ///< outlives m_server, which redirects to it
    std::unique_ptr<HttpServer> m_server;

    mutable std::mutex m_mutex; ///< protects everything below
    std::condition_variable m_changed;
    bool m_stopping = false;
    QVector<RecordedRequest> m_strayRequests;
    std::chrono::milliseconds m_dripInterval = std::chrono::seconds(10);
    /// In the order of Route. A new service needs an enumerator, a handler above and a row here.
    std::array<Service, 9> m_services { {
        { &m_schedule },
        { &m_tokens },
        { &m_configuration },
        { &m_attendance },
        { &m_presenceStatus },
        { &m_presenceBooking },
        { &m_registrationStatus },
        { &m_registration },
        { &m_registrationPage },
    } };
};

} // namespace simulator
