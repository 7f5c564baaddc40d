// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QJsonDocument>

class QByteArray;

/**
 * Reads JSON from outside. Like QJsonDocument::fromJson(), but an object that has a key twice is an
 * illegal value: Qt never frees the first one's content.
 */
[[nodiscard]] QJsonDocument readJson(const QByteArray &json, QJsonParseError *error = nullptr);
