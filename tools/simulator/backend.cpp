// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/backend.h"

#include "simulator/connection.h"

#include <algorithm>
#include <optional>

namespace simulator {

using namespace std::chrono_literals;

namespace {

    constexpr auto controlPath = "/control";
    constexpr auto address = "127.0.0.1";
    constexpr auto otherAddress = "127.0.0.2"; // another host, not just another port
    constexpr auto movedPrefix = "/moved"; // where redirects lead: no fault applies there
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
            // The library adds the addresses of both ends as if they had been sent.
            if (name != "REMOTE_ADDR" && name != "REMOTE_PORT" && name != "LOCAL_ADDR"
                && name != "LOCAL_PORT")
                record.headers.insert(QByteArray::fromStdString(name).toLower(),
                                      QByteArray::fromStdString(value));
        }
        return record;
    }

    /// What is wrong with the request as HTTP/1.1, or an empty text.
    QString impropriety(const httplib::Request &request, const RecordedRequest &record)
    {
        if (request.version != "HTTP/1.1")
            return QStringLiteral("Only HTTP/1.1 is spoken here");
        const QList<QByteArray> hosts = record.headers.values("host");
        if (hosts.size() != 1 || hosts.first().isEmpty())
            return QStringLiteral("A request needs exactly one Host");
        if (record.headers.contains("content-length")
            && record.headers.contains("transfer-encoding"))
            return QStringLiteral("Two lengths contradict each other");
        if (record.method == "GET" && !record.body.isEmpty())
            return QStringLiteral("A GET has no body");
        return {};
    }

    /// Says how many of the bytes left may be sent now, 0 to end the connection.
    using Gate = std::function<size_t(size_t sent, size_t left)>;

    void send(const Answer &answer, const Gate &gate, httplib::Response &response)
    {
        response.status = answer.status;
        for (const auto &[name, value] : answer.headers)
            response.set_header(name.toStdString(), value.toStdString());
        const std::string type = answer.contentType.toStdString();
        if (answer.body.isEmpty()) {
            response.set_content(std::string(), type);
            return;
        }
        // The provider shares the body; set_content() would copy it for each request.
        response.set_content_provider(
            static_cast<size_t>(answer.body.size()), type,
            [body = answer.body, gate](size_t offset, size_t left, httplib::DataSink &sink) {
                const size_t count = gate(offset, left);
                return count > 0 && sink.write(body.constData() + offset, count);
            });
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
        [this](const httplib::Request &request, httplib::Response &response) {
            handle(request, response);
        });
    m_elsewhere = std::make_unique<HttpServer>(
        [this](const httplib::Request &request, httplib::Response &response) {
            catchStray(request, response);
        });
    if (m_elsewhere->start(otherAddress, 0) && m_server->start(address, port))
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
    m_elsewhere.reset();
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

void Backend::handle(const httplib::Request &request, httplib::Response &response)
{
    const RecordedRequest record = recorded(request);
    if (record.path == QLatin1String(controlPath)) {
        send(control(record), wholeBody, response);
        return;
    }
    const QLatin1String moved(movedPrefix);
    const QString path
        = record.path.startsWith(moved) ? record.path.mid(moved.size()) : record.path;
    if (Service *service = ownerOf(record.method, path)) {
        serve(*service, request, record, path, response);
        return;
    }
    m_announce(QStringLiteral("%1 %2: 404, no such service")
                   .arg(QString::fromLatin1(record.method), record.path));
    send(textAnswer(404, QStringLiteral("No such service")), wholeBody, response);
}

void Backend::serve(Service &service, const httplib::Request &request, RecordedRequest record,
                    const QString &path, httplib::Response &response)
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
    Answer answer = take(service, request, record, path, fault);

    if (fault == Fault::Refuse) {
        m_announce(subject + QStringLiteral("the connection is refused"));
        HttpServer::currentConnection().abort();
        return;
    }
    if (fault == Fault::Hang || fault == Fault::Slow) {
        m_announce(subject
                   + (fault == Fault::Hang ? QStringLiteral("hangs") : QStringLiteral("waits")));
        if (!hold(service, switches, until)) {
            HttpServer::currentConnection().abort();
            return;
        }
    }
    const QByteArray newBase = fault == Fault::RedirectAway ? elsewhere() : QByteArray(movedPrefix);
    answer = spoiled(answer, fault, *service.handler, newBase + path.toUtf8(), record);
    m_announce(
        subject + QStringLiteral("%1, %2 bytes").arg(answer.status).arg(answer.body.size())
        + (fault == Fault::None ? QString() : QStringLiteral(", fault %1").arg(nameOf(fault))));

    Gate gate = wholeBody;
    if (answer.delivery == Answer::Delivery::Half)
        gate = [half = static_cast<size_t>(answer.body.size()) / 2](size_t sent, size_t) {
            return sent < half ? std::min(half - sent, chunkBytes) : 0;
        };
    else if (answer.delivery == Answer::Delivery::Drip)
        gate = [this, &service, switches](size_t, size_t left) {
            return drip(service, switches, left);
        };
    send(answer, gate, response);
}

Answer Backend::take(Service &service, const httplib::Request &request, RecordedRequest &record,
                     const QString &path, Fault &fault)
{
    Answer answer;
    if (fault != Fault::Refuse) {
        const QString complaint = impropriety(request, record);
        answer = complaint.isEmpty() ? service.handler->answer(path, record)
                                     : textAnswer(400, complaint);
        record.accepted = answer.status < 300;
        if (!record.accepted)
            fault = Fault::None;
        else if (answer.takeEffect && letsRequestsThrough(fault))
            answer.takeEffect();
    }
    const std::lock_guard lock(m_mutex);
    service.requests.append(record);
    return answer;
}

void Backend::catchStray(const httplib::Request &request, httplib::Response &response)
{
    const RecordedRequest record = recorded(request);
    m_announce(QStringLiteral("%1 %2: stray, at %3")
                   .arg(QString::fromLatin1(record.method), record.path,
                        QString::fromLatin1(record.headers.value("host"))));
    {
        const std::lock_guard lock(m_mutex);
        m_strayRequests.append(record);
    }
    send(jsonAnswer(200, {}), wholeBody, response);
}

QByteArray Backend::elsewhere() const
{
    return QByteArray("http://") + otherAddress + ':' + QByteArray::number(m_elsewhere->port());
}

Answer Backend::control(const RecordedRequest &request)
{
    if (request.method != "POST")
        return textAnswer(405, QStringLiteral("A command is sent by POST"));
    const QString command = QString::fromUtf8(request.body).trimmed();
    m_announce(QStringLiteral("control: ") + command);

    // Commands are executed in the owner's thread. It may be about to stop the server, and then
    // does not come to it any more: hence a wait that ends with the server.
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
    return result->has_value() ? textAnswer(200, **result)
                               : textAnswer(503, QStringLiteral("The simulator ends"));
}

bool Backend::hold(const Service &service, int switches, QDeadlineTimer until)
{
    const Connection &connection = HttpServer::currentConnection();
    std::unique_lock lock(m_mutex);
    const auto released = [&] { return m_stopping || service.switches != switches; };
    while (!until.hasExpired()) {
        // A request that the other side gave up must not occupy its worker thread any longer.
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
