// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>
#include <QObject>

class QXmlStreamReader;

/** The response of the attendance service to a record: what to show the person. */
class AttendanceResponse : public QObject
{
    Q_OBJECT

public:
    /** Reads the document @p body. Throws AttendanceErrorException after logging the reason. */
    explicit AttendanceResponse(const QByteArray &body, QObject *parent = nullptr);

    /** Writes the response to the log. */
    void log() const;

    /** The person's name; may be empty. */
    [[nodiscard]] QString name() const { return m_name; }
    /** A value of Notification::Type. */
    [[nodiscard]] int type() const { return m_type; }
    [[nodiscard]] QString title() const { return m_title; }
    [[nodiscard]] QString message() const { return m_message; }
    /** Time-out of the notice in ms, within the range of a QTimer; 0 for none. */
    [[nodiscard]] uint timeout() const;

private:
    [[noreturn]] static void refuse(const char *source);
    void read(const QByteArray &body);
    void readElement(QXmlStreamReader &reader);
    void check() const;

    QDateTime m_serverTime;
    QDateTime m_clientTime;
    QString m_name;
    int m_type = -1;
    bool m_hasType = false;
    QString m_title;
    QString m_message;
    qint64 m_timeout = 0;
    bool m_hasTimeout = false;
};
