// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "simulator/attendancerecord.h"
#include "simulator/routehandler.h"
#include "simulator/signatureverifier.h"

#include <QVector>

#include <mutex>

namespace simulator {

class CardHolders;

/**
 * The attendance log of the events service: takes one signed record per POST and greets the person.
 * It also logs unassigned cards, and responds to them with a warning.
 */
class AttendanceRoute : public RouteHandler
{
public:
    static constexpr auto path = "/rs/lumenboard-legacy/attendancelog";

    explicit AttendanceRoute(const CardHolders &holders);

    /// All logged records in order of arrival, repeated ones included.
    [[nodiscard]] QVector<AttendanceRecord> records() const;

    [[nodiscard]] bool owns(const QByteArray &method, const QString &asked) const override;
    [[nodiscard]] Response respond(const QString &path, const RecordedRequest &request) override;
    [[nodiscard]] Response spoil(Response good, Fault fault,
                                 const RecordedRequest &request) override;

private:
    const CardHolders &m_holders;
    SignatureVerifier m_verifier;
    mutable std::mutex m_mutex; ///< protects m_records
    QVector<AttendanceRecord> m_records;
};

} // namespace simulator
