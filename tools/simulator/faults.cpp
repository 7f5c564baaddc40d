// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/faults.h"

#include "simulator/routehandler.h"

#include <utility>
#include <zlib.h>

namespace simulator {
namespace {

    constexpr auto loginPage = R"(<!DOCTYPE html>
<html lang="de">
<head><meta charset="utf-8"><title>Gastnetz</title></head>
<body>
<h1>Willkommen im Gastnetz</h1>
<form method="post" action="/login">
<p><label>Zugangscode <input name="code"></label> <button>Anmelden</button></p>
<p>Mit der Anmeldung stimmen Sie der Benutzungsordnung zu.<br>Der Zugang gilt 24 Stunden.</p>
</form>
</body>
</html>
)";

    QByteArray gzipped(const QByteArray &data)
    {
        // The added 16 asks zlib for a gzip header instead of its own.
        constexpr int gzipWindowBits = MAX_WBITS + 16;
        constexpr int memoryLevel = 8;
        z_stream stream {};
        if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, gzipWindowBits, memoryLevel,
                         Z_DEFAULT_STRATEGY)
            != Z_OK)
            return {};
        QByteArray input = data;
        const auto inputSize = static_cast<uLong>(input.size());
        QByteArray output(static_cast<int>(deflateBound(&stream, inputSize)), Qt::Uninitialized);
        stream.next_in = reinterpret_cast<Bytef *>(input.data());
        stream.avail_in = static_cast<uInt>(input.size());
        stream.next_out = reinterpret_cast<Bytef *>(output.data());
        stream.avail_out = static_cast<uInt>(output.size());
        deflate(&stream, Z_FINISH);
        output.truncate(static_cast<int>(stream.total_out));
        deflateEnd(&stream);
        return output;
    }

} // namespace

bool letsRequestsThrough(Fault fault)
{
    switch (fault) {
    case Fault::ErrorObject:
    case Fault::CaptivePortal:
    case Fault::Redirect:
    case Fault::RedirectAway:
    case Fault::NotFound:
    case Fault::ServerError:
    case Fault::Refuse:
    case Fault::WrongCredentials:
        return false;
    default:
        return true;
    }
}

Response spoiled(Response response, Fault fault, RouteHandler &handler,
                 const QByteArray &newLocation, const RecordedRequest &request)
{
    switch (fault) {
    case Fault::None:
    case Fault::Hang:
    case Fault::Slow:
    case Fault::Refuse:
        break;
    case Fault::Empty:
        response.body.clear();
        break;
    case Fault::Truncated:
        response.body.truncate(response.body.size() / 2);
        break;
    case Fault::BrokenJson:
        response.body = R"({ "access_token": "abc", )";
        break;
    case Fault::EmptyList:
        response.body = "[]";
        break;
    case Fault::ErrorObject:
        return jsonResponse(200, { { QStringLiteral("error"), QStringLiteral("not now") } });
    case Fault::WrongRoot:
    case Fault::InvalidValue:
    case Fault::Huge:
    case Fault::Oversize:
    case Fault::EntityBomb:
    case Fault::TinyExpiry:
    case Fault::NoRefreshToken:
    case Fault::ExpiredRefreshToken:
    case Fault::HostileValues:
        return handler.spoil(std::move(response), fault, request);
    case Fault::WrongCredentials:
        return jsonResponse(401, { { QStringLiteral("error"), QStringLiteral("invalid_client") } });
    case Fault::CaptivePortal:
        return { 200, "text/html; charset=utf-8", loginPage };
    case Fault::Redirect:
    case Fault::RedirectAway:
        // 307 makes a careless client send its body again.
        response = textResponse(fault == Fault::Redirect ? 302 : 307, QStringLiteral("Moved"));
        response.headers["Location"] = newLocation;
        break;
    case Fault::NotFound:
        return textResponse(404, QStringLiteral("Not found"));
    case Fault::ServerError:
        return textResponse(500, QStringLiteral("Internal server error"));
    case Fault::Drop:
        response.delivery = Response::Delivery::Half;
        break;
    case Fault::Drip:
        response.delivery = Response::Delivery::Drip;
        break;
    case Fault::Gzip:
        response.body = gzipped(response.body);
        response.headers["Content-Encoding"] = "gzip";
        break;
    }
    return response;
}

} // namespace simulator
