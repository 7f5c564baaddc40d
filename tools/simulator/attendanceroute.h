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
 * The events service's log of attendance: takes one signed record per POST and greets the person.
 * To cards that are nobody's it answers with a warning, and logs them.
 */
class AttendanceRoute : public RouteHandler
{
public:
    static constexpr auto path = "/rs/lumenboard-legacy/attendancelog";

    explicit AttendanceRoute(const CardHolders &holders);

    /// What was logged, in this order; a record that came twice is there twice.
    [[nodiscard]] QVector<AttendanceRecord> records() const;

    [[nodiscard]] bool owns(const QByteArray &method, const QString &asked) const override;
    [[nodiscard]] Answer answer(const QString &path, const RecordedRequest &request) override;
    [[nodiscard]] Answer spoil(Answer good, Fault fault, const RecordedRequest &request) override;

private:
    const CardHolders &m_holders;
    SignatureVerifier m_verifier;
    mutable std::mutex m_mutex; ///< guards the next one
    QVector<AttendanceRecord> m_records;
};

} // namespace simulator
