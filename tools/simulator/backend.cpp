// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/backend.h"

#include "simulator/connection.h"
#include "simulator/faults.h"

#include <algorithm>
#include <optional>

namespace simulator {

using namespace std::chrono_literals;

namespace {

    constexpr auto controlPath = "/control";
    constexpr auto address = "127.0.0.1";
    constexpr auto otherAddress = "127.0.0.2"; // another host as well as another port
    constexpr auto movedPrefix = "/moved"; // target of redirects; no fault applies there
    constexpr auto hangCheckInterval = 100ms;
    constexpr size_t chunkBytes = 65'536;

    RecordedRequest recorded(const httplib::Request &request)
    {
        RecordedRequest record;
        record.time = QDateTime::currentDateTime();
        record.method = QByteArray::fromStdString(request.method);
        record.path = QString::fromStdString(request.target);
        record.body = QByteArray::fromStdString(request.body);
        for (const auto &[name, value] : request.headers) {
            // The library adds the addresses of both ends as headers.
            if (name != "REMOTE_ADDR" && name != "REMOTE_PORT" && name != "LOCAL_ADDR"
                && name != "LOCAL_PORT")
                record.headers.insert(QByteArray::fromStdString(name).toLower(),
                                      QByteArray::fromStdString(value));
        }
        return record;
    }

    /// What violates HTTP/1.1 in the request, or an empty text.
    QString protocolError(const httplib::Request &request, const RecordedRequest &record)
    {
        if (request.version != "HTTP/1.1")
            return QStringLiteral("Only HTTP/1.1 is supported");
        const QList<QByteArray> hosts = record.headers.values("host");
        if (hosts.size() != 1 || hosts.first().isEmpty())
            return QStringLiteral("Exactly one Host header is required");
        if (record.headers.contains("content-length")
            && record.headers.contains("transfer-encoding"))
            return QStringLiteral("Content-Length and Transfer-Encoding exclude each other");
        if (record.headers.contains("cookie"))
            return QStringLiteral("The cookie of the last response must not come back");
        if (record.method == "GET" && !record.body.isEmpty())
            return QStringLiteral("A GET request must not have a body");
        return {};
    }

    /// Returns how many of the bytes left to send now, 0 to end the connection.
    using Gate = std::function<size_t(size_t sent, size_t left)>;

    void send(const Response &response, const Gate &gate, httplib::Response &out)
    {
        out.status = response.status;
        for (const auto &[name, value] : response.headers)
            out.set_header(name.toStdString(), value.toStdString());
        out.set_header("Set-Cookie", "session=of-one-visitor; Path=/");
        const std::string type = response.contentType.toStdString();
        if (response.body.isEmpty()) {
            out.set_content(std::string(), type);
            return;
        }
        // The provider shares the body. set_content() would copy it for each request.
        out.set_content_provider(
            static_cast<size_t>(response.body.size()), type,
            [body = response.body, gate](size_t offset, size_t left, httplib::DataSink &sink) {
                const size_t count = gate(offset, left);
                return count > 0 && sink.write(body.constData() + offset, count);
            });
    }

    Gate halfOf(const QByteArray &body)
    {
        return [half = static_cast<size_t>(body.size()) / 2](size_t sent, size_t /*left*/) {
            return sent < half ? std::min(half - sent, chunkBytes) : 0;
        };
    }

    size_t wholeBody(size_t /*sent*/, size_t left)
    {
        return std::min(left, chunkBytes);
    }

} // namespace

Backend::Backend(Announce announce, Execute execute)
    : m_announce(std::move(announce))
    , m_execute(std::move(execute))
{
}

Backend::~Backend()
{
    stop();
}

bool Backend::start(quint16 port)
{
    stop();
    m_stopping = false;
    m_server = std::make_unique<HttpServer>(
        [this](const httplib::Request &request, httplib::Response &out) { handle(request, out); });
    m_otherServer = std::make_unique<HttpServer>(
        [this](const httplib::Request &request, httplib::Response &out) {
            recordStray(request, out);
        });
    if (m_otherServer->start(otherAddress, 0) && m_server->start(address, port))
        return true;
    stop();
    return false;
}

void Backend::stop()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
    }
    m_changed.notify_all();
    m_server.reset();
    m_otherServer.reset();
}

void Backend::setFault(Route route, Fault fault)
{
    {
        const std::lock_guard lock(m_mutex);
        Service &changed = service(route);
        if (changed.fault == fault)
            return;
        changed.fault = fault;
        ++changed.switches;
    }
    m_changed.notify_all();
}

Fault Backend::fault(Route route) const
{
    const std::lock_guard lock(m_mutex);
    return service(route).fault;
}

void Backend::setDripInterval(std::chrono::milliseconds interval)
{
    const std::lock_guard lock(m_mutex);
    m_dripInterval = interval;
}

QVector<RecordedRequest> Backend::requests(Route route) const
{
    const std::lock_guard lock(m_mutex);
    return service(route).requests;
}

QVector<RecordedRequest> Backend::strayRequests() const
{
    const std::lock_guard lock(m_mutex);
    return m_strayRequests;
}

void Backend::handle(const httplib::Request &request, httplib::Response &out)
{
    const RecordedRequest record = recorded(request);
    if (record.path == QLatin1String(controlPath)) {
        send(control(record), wholeBody, out);
        return;
    }
    const QLatin1String moved(movedPrefix);
    const QString path
        = record.path.startsWith(moved) ? record.path.mid(moved.size()) : record.path;
    if (Service *service = ownerOf(record.method, path)) {
        serve(*service, request, record, path, out);
        return;
    }
    m_announce(QStringLiteral("%1 %2: 404, no such service")
                   .arg(QString::fromLatin1(record.method), record.path));
    send(textResponse(404, QStringLiteral("No such service")), wholeBody, out);
}

void Backend::serve(Service &service, const httplib::Request &request, RecordedRequest record,
                    const QString &path, httplib::Response &out)
{
    const QString subject
        = QStringLiteral("%1 %2: ").arg(QString::fromLatin1(record.method), record.path);
    const bool moved = path != record.path;
    Fault fault = Fault::None;
    int switches = 0;
    QDeadlineTimer until(QDeadlineTimer::Forever);
    {
        const std::lock_guard lock(m_mutex);
        fault = moved ? Fault::None : service.fault;
        switches = service.switches;
        if (fault == Fault::Slow)
            until = QDeadlineTimer(m_dripInterval);
    }
    Response response = take(service, request, record, path, fault);

    const bool isHeld = fault == Fault::Hang || fault == Fault::Slow;
    if (isHeld)
        m_announce(subject
                   + (fault == Fault::Hang ? QStringLiteral("hangs") : QStringLiteral("waits")));
    if (fault == Fault::Refuse)
        m_announce(subject + QStringLiteral("the connection is refused"));
    if (fault == Fault::Refuse || (isHeld && !hold(service, switches, until))) {
        HttpServer::currentConnection().abort();
        return;
    }
    const QByteArray newBase
        = fault == Fault::RedirectAway ? otherBaseUrl() : QByteArray(movedPrefix);
    response = spoiled(response, fault, *service.handler, newBase + path.toUtf8(), record);
    m_announce(
        subject + QStringLiteral("%1, %2 bytes").arg(response.status).arg(response.body.size())
        + (fault == Fault::None ? QString() : QStringLiteral(", fault %1").arg(nameOf(fault))));

    Gate gate = wholeBody;
    if (response.delivery == Response::Delivery::Half)
        gate = halfOf(response.body);
    else if (response.delivery == Response::Delivery::Drip)
        gate = [this, &service, switches](size_t, size_t left) {
            return drip(service, switches, left);
        };
    send(response, gate, out);
}

Response Backend::take(Service &service, const httplib::Request &request, RecordedRequest &record,
                       const QString &path, Fault &fault)
{
    Response response;
    if (fault != Fault::Refuse) {
        const QString complaint = protocolError(request, record);
        response = complaint.isEmpty() ? service.handler->respond(path, record)
                                       : textResponse(400, complaint);
        record.accepted = response.status < 300;
        if (!record.accepted)
            fault = Fault::None;
        else if (response.takeEffect && letsRequestsThrough(fault))
            response.takeEffect();
    }
    const std::lock_guard lock(m_mutex);
    service.requests.append(record);
    return response;
}

void Backend::recordStray(const httplib::Request &request, httplib::Response &out)
{
    const RecordedRequest record = recorded(request);
    m_announce(QStringLiteral("%1 %2: stray, at %3")
                   .arg(QString::fromLatin1(record.method), record.path,
                        QString::fromLatin1(record.headers.value("host"))));
    {
        const std::lock_guard lock(m_mutex);
        m_strayRequests.append(record);
    }
    send(jsonResponse(200, {}), wholeBody, out);
}

QByteArray Backend::otherBaseUrl() const
{
    return QByteArray("http://") + otherAddress + ':' + QByteArray::number(m_otherServer->port());
}

Response Backend::control(const RecordedRequest &request)
{
    if (request.method != "POST")
        return textResponse(405, QStringLiteral("Use POST to send a command"));
    const QString command = QString::fromUtf8(request.body).trimmed();
    m_announce(QStringLiteral("control: ") + command);

    // Commands run in the owner's thread. If that thread is about to stop the server, it never
    // runs the command, so end the wait with the server as well.
    const auto result = std::make_shared<std::optional<QString>>();
    m_execute(command, [this, result](const QString &text) {
        {
            const std::lock_guard lock(m_mutex);
            *result = text;
        }
        m_changed.notify_all();
    });
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this, &result] { return m_stopping || result->has_value(); });
    return result->has_value() ? textResponse(200, **result)
                               : textResponse(503, QStringLiteral("The simulator is stopping"));
}

bool Backend::hold(const Service &service, int switches, QDeadlineTimer until)
{
    const Connection &connection = HttpServer::currentConnection();
    std::unique_lock lock(m_mutex);
    const auto released = [&] { return m_stopping || service.switches != switches; };
    while (!until.hasExpired()) {
        // Release the worker thread when the client has disconnected.
        const auto wait = until.isForever()
            ? hangCheckInterval
            : std::min(hangCheckInterval, std::chrono::milliseconds(until.remainingTime()));
        if (m_changed.wait_for(lock, wait, released))
            break;
        if (connection.peerHasGone())
            return false;
    }
    return !m_stopping;
}

size_t Backend::drip(const Service &service, int switches, size_t left)
{
    std::unique_lock lock(m_mutex);
    const bool released = m_changed.wait_for(
        lock, m_dripInterval, [&] { return m_stopping || service.switches != switches; });
    if (m_stopping)
        return 0;
    return released ? left : 1;
}

Backend::Service *Backend::ownerOf(const QByteArray &method, const QString &path)
{
    const auto found = std::find_if(m_services.begin(), m_services.end(), [&](const Service &each) {
        return each.handler->owns(method, path);
    });
    return found == m_services.end() ? nullptr : &*found;
}

} // namespace simulator
