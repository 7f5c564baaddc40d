// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "base/json.h"

#include <QByteArray>
#include <QJsonArray>

#include <optional>
#include <set>
#include <vector>

namespace {

constexpr size_t maxDepth = 1024; // Qt refuses more

/** The place behind the string that begins at @p start. */
int endOfString(const QByteArray &json, int start)
{
    int at = start + 1;
    while (at < json.size() && json.at(at) != '"')
        at += json.at(at) == '\\' ? 2 : 1;
    return at + 1;
}

/** The key as Qt reads it: escapes can spell it in several ways. */
QString decoded(const QByteArray &quoted)
{
    if (!quoted.contains('\\'))
        return QString::fromUtf8(quoted);
    const QString key = QJsonDocument::fromJson('[' + quoted + ']').array().at(0).toString();
    return QLatin1Char('"') + key + QLatin1Char('"');
}

/** The place of a key that its object already has, or -1. Need not understand invalid JSON. */
int findRepeatedKey(const QByteArray &json)
{
    using Keys = std::set<QString>; // sorted: no choice of keys makes it slow
    std::vector<std::optional<Keys>> open; // objects; nothing for an array
    bool isKeyNext = false;
    for (int at = 0; at < json.size() && open.size() <= maxDepth; ++at) {
        const char c = json.at(at);
        if (c == '"') {
            const int end = endOfString(json, at);
            if (isKeyNext && !open.back()->insert(decoded(json.mid(at, end - at))).second)
                return at;
            isKeyNext = false;
            at = end - 1;
        } else if (c == '{' || c == '[') {
            isKeyNext = c == '{';
            open.push_back(isKeyNext ? std::make_optional<Keys>() : std::nullopt);
        } else if ((c == '}' || c == ']') && !open.empty()) {
            isKeyNext = false;
            open.pop_back();
        } else if (c == ',') {
            isKeyNext = !open.empty() && open.back();
        }
    }
    return -1;
}

} // namespace

QJsonDocument readJson(const QByteArray &json, QJsonParseError *error)
{
    const int repeated = findRepeatedKey(json);
    if (repeated < 0)
        return QJsonDocument::fromJson(json, error);
    if (error) {
        error->error = QJsonParseError::IllegalValue;
        error->offset = repeated;
    }
    return {};
}
