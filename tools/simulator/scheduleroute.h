// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "simulator/routehandler.h"

#include <QDate>
#include <QHash>

#include <mutex>

namespace simulator {

/**
 * The events service: one schedule per day at pathPrefix followed by the ISO date. Serves a
 * generated day unless a document or a file is set.
 */
class ScheduleRoute : public RouteHandler
{
public:
    static constexpr auto pathPrefix = "/rs/lumenboard/schedule/";

    /// Serves the document for every date. Empty restores a newly generated day.
    void setDocument(const QByteArray &xml);
    /// Serves the file for every date and reads it at each request.
    void setFile(const QString &path);

    [[nodiscard]] bool owns(const QByteArray &method, const QString &path) const override;
    [[nodiscard]] Response respond(const QString &path, const RecordedRequest &request) override;
    [[nodiscard]] Response spoil(Response good, Fault fault,
                                 const RecordedRequest &request) override;

private:
    /// Generates a day around the time of its first request, and keeps it: if the schedule moved
    /// with the clock, no event would ever end.
    [[nodiscard]] QByteArray generatedDay(const QDate &date);

    std::mutex m_mutex; ///< protects everything below
    QByteArray m_document;
    QString m_file;
    QHash<QDate, QByteArray> m_days;
};

} // namespace simulator
