// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "simulator/attendancerecord.h"
#include "simulator/routehandler.h"
#include "simulator/signatureverifier.h"

#include <QVector>

#include <mutex>

namespace simulator {

/**
 * The events service's log of attendance: takes one signed record per POST and greets the person.
 * A few cards are known, 0A1B2C3D to 0A1B2C40; to others it answers with a warning, and logs them.
 */
class AttendanceRoute : public RouteHandler
{
public:
    static constexpr auto path = "/rs/lumenboard-legacy/attendancelog";

    /// What was logged, in this order; a record that came twice is there twice.
    [[nodiscard]] QVector<AttendanceRecord> records() const;

    [[nodiscard]] bool owns(const QString &asked) const override;
    [[nodiscard]] Answer answer(const QString &path, const RecordedRequest &request) override;
    [[nodiscard]] Answer spoil(Answer good, Fault fault, const RecordedRequest &request) override;

private:
    SignatureVerifier m_verifier;
    mutable std::mutex m_mutex; ///< guards the next one
    QVector<AttendanceRecord> m_records;
};

} // namespace simulator
