// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "simulator/routehandler.h"

#include <QDate>
#include <QHash>

#include <mutex>

namespace simulator {

/**
 * The events service: one schedule per day, by GET under pathPrefix followed by the ISO date.
 * Serves a generated day unless it was given a document or a file.
 */
class ScheduleRoute : public RouteHandler
{
public:
    static constexpr auto pathPrefix = "/rs/lumenboard/schedule/";

    /// Serves the document on every date; empty goes back to the generated day, made anew.
    void setDocument(const QByteArray &xml);
    /// Serves the file on every date, read at each request.
    void setFile(const QString &path);

    [[nodiscard]] bool owns(const QByteArray &method, const QString &path) const override;
    [[nodiscard]] Answer answer(const QString &path, const RecordedRequest &request) override;
    [[nodiscard]] Answer spoil(Answer good, Fault fault, const RecordedRequest &request) override;

private:
    /// A day is generated once, around the time of its first request, and then stands: a schedule
    /// that moved along with the clock would never let an event end.
    [[nodiscard]] QByteArray generatedDay(const QDate &date);

    std::mutex m_mutex; ///< guards everything below
    QByteArray m_document;
    QString m_file;
    QHash<QDate, QByteArray> m_days;
};

} // namespace simulator
