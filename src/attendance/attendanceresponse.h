// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>
#include <QObject>

class QXmlStreamReader;

/** What the attendance service answers to a record: what to show the person. */
class AttendanceResponse : public QObject
{
    Q_OBJECT

public:
    /** Reads the document @p body; throws AttendanceErrorException, with the reason in the log. */
    explicit AttendanceResponse(const QByteArray &body, QObject *parent = nullptr);

    /** Tells the log what was answered. */
    void log() const;

    /** The person's name; may be empty. */
    [[nodiscard]] QString name() const { return m_name; }
    /** A value of Notification::Type. */
    [[nodiscard]] int type() const { return m_type; }
    [[nodiscard]] QString title() const { return m_title; }
    [[nodiscard]] QString message() const { return m_message; }
    /** How long the message stays, in ms, as a notification can count it; 0 for no end. */
    [[nodiscard]] uint timeout() const;

private:
    void read(QXmlStreamReader &reader);
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
