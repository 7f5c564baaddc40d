// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>

class EventAudience;

/** The link of one event to one audience group. Owned by its event; GUI thread. */
class EventEAudience : public QObject
{
    Q_OBJECT

public:
    explicit EventEAudience(QObject *parent = nullptr);
    EventEAudience(qint64 audienceId, bool mandatory, QObject *parent = nullptr);

    [[nodiscard]] qint64 audienceId() const { return m_audienceId; }
    [[nodiscard]] bool isMandatory() const { return m_mandatory; }

    /** The group; null until it is linked, or if the id is not in the schedule. */
    [[nodiscard]] EventAudience *audience() const { return m_audience; }
    void setAudience(EventAudience *audience) { m_audience = audience; }

private:
    qint64 m_audienceId = 0;
    EventAudience *m_audience = nullptr;
    bool m_mandatory = false;
};
