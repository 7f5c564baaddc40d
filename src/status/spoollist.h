// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>
#include <QHash>
#include <QJsonObject>
#include <QString>
#include <QVector>

/** A file that waits in one of the two spools. */
struct WaitingRecord
{
    QString queue; ///< "attendance" or "presence"
    QString name;
    QString path;
    QDateTime made; ///< by the name, or by the file's time if the name is foreign
    int tries = 0; ///< in this run of the kiosk
    QDateTime lastTry;
    QString answer; ///< to the last try
};

/** The records of both spools as they are now, the oldest first. Changes nothing. */
class SpoolList
{
public:
    /**
     * Looks where the kiosk with this runtime folder says that its spools are, else where the
     * settings of the calling user say. Throws Exception if something cannot be read.
     */
    [[nodiscard]] static SpoolList read(const QString &runtimeFolder);

    [[nodiscard]] const QVector<WaitingRecord> &records() const { return m_records; }

private:
    void add(const QString &queue, const QString &folder, const QJsonObject &known);

    QVector<WaitingRecord> m_records;
};
