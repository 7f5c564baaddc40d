// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "status/statusrules.h"

#include <QByteArray>

class StoredStatus;

/** The output of "--status" in its formats, in UTF-8. */
namespace statusformats {

/** For a technician: one line per part, with ages; first what is wrong. */
[[nodiscard]] QByteArray text(const StoredStatus &status, const QVector<Problem> &problems);
/** The kiosk's own file with the verdict; see docs/status.schema.json. */
[[nodiscard]] QByteArray json(const StoredStatus &status, const QVector<Problem> &problems);
/** Prometheus' text format; docs/monitoring.md lists the metrics. */
[[nodiscard]] QByteArray prometheus(const StoredStatus &status, const QVector<Problem> &problems);

} // namespace statusformats
