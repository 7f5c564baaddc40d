// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/simulator.h"

#include "simulator/backend.h"

#include <QFile>

namespace simulator {

Simulator::Simulator(QObject *parent)
    : QObject(parent)
{
    const auto announce = [this](const QString &line) {
        QMetaObject::invokeMethod(
            this, [this, line] { Q_EMIT requestServed(line); }, Qt::QueuedConnection);
    };
    const auto execute = [this](const QString &command, const Backend::Reply &reply) {
        QMetaObject::invokeMethod(
            this,
            [this, command, reply] {
                reply(m_commandHandler ? m_commandHandler(command)
                                       : QStringLiteral("error: no command handler"));
            },
            Qt::QueuedConnection);
    };
    m_backend = std::make_unique<Backend>(announce, execute);
}

Simulator::~Simulator() = default;

bool Simulator::start(quint16 port)
{
    if (m_backend->start(port))
        return true;
    m_errorString = QStringLiteral("Cannot listen on 127.0.0.1:%1; is the port in use?").arg(port);
    return false;
}

void Simulator::stop()
{
    m_backend->stop();
}

QUrl Simulator::baseUrl() const
{
    const quint16 port = m_backend->port();
    return port == 0 ? QUrl() : QUrl(QStringLiteral("http://127.0.0.1:%1").arg(port));
}

QString Simulator::scheduleUrlTemplate() const
{
    return QStringLiteral("'%1%2'yyyy-MM-dd")
        .arg(baseUrl().toString(), QLatin1String(ScheduleRoute::pathPrefix));
}

void Simulator::setSchedule(const QByteArray &xml)
{
    m_backend->schedule().setDocument(xml);
}

bool Simulator::setScheduleFile(const QString &path, QString *error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (error)
            *error = QStringLiteral("%1: %2").arg(path, file.errorString());
        return false;
    }
    m_backend->schedule().setFile(path);
    return true;
}

void Simulator::setIntrospection(const QUrl &endpoint)
{
    m_backend->tokens().setIntrospection(endpoint);
}

void Simulator::setConfiguration(const QByteArray &json)
{
    m_backend->configuration().setDocument(json);
}

QMap<QString, QString> Simulator::kioskSettings() const
{
    const QString base = baseUrl().toString();
    return {
        { QStringLiteral("eventDataUrlTemplate"), scheduleUrlTemplate() },
        { QStringLiteral("quirlUrl"), base },
        { QStringLiteral("attendanceLogUrl"), base + QLatin1String(AttendanceRoute::path) },
        { QStringLiteral("tallyxLogUrl"), base + QLatin1String(PresenceStatusRoute::path) },
        { QStringLiteral("Keycloak/url"), base + QLatin1String(TokenRoute::path) },
        { QStringLiteral("Keycloak/clientId"), QLatin1String(TokenRoute::clientId) },
        { QStringLiteral("Keycloak/clientSecret"), QLatin1String(TokenRoute::clientSecret) },
    };
}

void Simulator::setFault(Route route, Fault fault)
{
    m_backend->setFault(route, fault);
}

Fault Simulator::fault(Route route) const
{
    return m_backend->fault(route);
}

void Simulator::clearFaults()
{
    for (const Route route : values<Route>())
        m_backend->setFault(route, Fault::None);
}

void Simulator::setDripInterval(std::chrono::milliseconds interval)
{
    m_backend->setDripInterval(interval);
}

QVector<RecordedRequest> Simulator::requests(Route route) const
{
    return m_backend->requests(route);
}

QVector<AttendanceRecord> Simulator::attendanceRecords() const
{
    return m_backend->attendance().records();
}

QVector<PresenceBooking> Simulator::presenceBookings() const
{
    return m_backend->presence().bookings();
}

bool Simulator::setPresent(quint64 card, bool present)
{
    if (m_backend->holders().nameOf(card).isEmpty())
        return false;
    m_backend->presence().setPresent(card, present);
    return true;
}

QVector<CardRegistration> Simulator::registrations() const
{
    return m_backend->holders().registrations();
}

QVector<RecordedRequest> Simulator::strayRequests() const
{
    return m_backend->strayRequests();
}

} // namespace simulator
