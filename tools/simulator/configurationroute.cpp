// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/configurationroute.h"

#include "simulator/tokenroute.h"

namespace simulator {
namespace {

    constexpr auto jsonType = "application/json";
    constexpr int longTextBytes = 900'000; // the kiosk accepts 1 MiB in all

    constexpr auto defaultDocument = R"({
  "locationId": 101,
  "locationName": "Hörsaal 1",
  "plenarLocationId": 1,
  "settings": { "defaultView": 1, "inactivityTimeout": 60, "attendanceEnabled": true }
}
)";

    /// Every value has a type or range that its key does not allow.
    QByteArray hostileDocument()
    {
        return R"({ "locationId": [1, 2], "locationName": ")"
            + QByteArray("<b>Lang</b> ").repeated(longTextBytes / 12)
            + R"(", "plenarLocationId": 1e300, "settings": { "defaultView": { "a": { "b": [] } },)"
              R"( "inactivityTimeout": -99999999999, "attendanceEnabled": "vielleicht",)"
              R"( "tallyxMode": 1.5, "tallyxLogUrl": 7, "tpRegModeQR": {}, "unknown": true } })";
    }

} // namespace

ConfigurationRoute::ConfigurationRoute(const TokenRoute &tokens)
    : m_tokens(tokens)
{
}

void ConfigurationRoute::setDocument(const QByteArray &json)
{
    const std::lock_guard lock(m_mutex);
    m_document = json;
}

bool ConfigurationRoute::owns(const QByteArray & /*method*/, const QString &asked) const
{
    return asked == QLatin1String(path);
}

Response ConfigurationRoute::respond(const QString & /*path*/, const RecordedRequest &request)
{
    if (request.method != "GET")
        return textResponse(405, QStringLiteral("Use GET to fetch the configuration"));
    if (const auto refusal = m_tokens.refusalOf(request))
        return *refusal;
    const std::lock_guard lock(m_mutex);
    return { 200, jsonType, m_document.isEmpty() ? QByteArray(defaultDocument) : m_document };
}

Response ConfigurationRoute::spoil(Response good, Fault fault, const RecordedRequest & /*request*/)
{
    if (fault == Fault::HostileValues)
        good.body = hostileDocument();
    else if (fault == Fault::Oversize)
        good.body = QByteArray(2 * longTextBytes, ' ') + good.body;
    return good;
}

} // namespace simulator
