// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

#include <exception>

/**
 * Base of the failures that a component reports by throwing.
 *
 * The message is complete and ready to be shown or logged. Thrown by value, caught by reference.
 */
class Exception : public std::exception
{
public:
    explicit Exception(const QString &message)
        : m_message(message.toUtf8())
    {
    }

    /** The message as UTF-8, valid as long as this object lives. */
    [[nodiscard]] const char *what() const noexcept override { return m_message.constData(); }

private:
    QByteArray m_message;
};

/** A failure of the token client. */
class KCException : public Exception
{
public:
    using Exception::Exception;
};

/** A failure on the way of an attendance or presence record; it knows how it is shown. */
class AttendanceException : public Exception
{
public:
    /** @p type is a value of Notification::Type. */
    AttendanceException(int type, const QString &message)
        : Exception(message)
        , m_type(type)
    {
    }

    /** The Notification::Type that shows this failure. */
    [[nodiscard]] int type() const { return m_type; }

private:
    int m_type;
};

/** A permanent failure: the record can not be logged, and a person has to be told. */
class AttendanceErrorException : public AttendanceException
{
public:
    explicit AttendanceErrorException(const QString &message)
        : AttendanceException(notificationType, message)
    {
    }

    /** Notification::ERR; repeated here because this header is a leaf. */
    static constexpr int notificationType = 3;
};

/** A temporary failure: the record stays queued and is sent later. */
class AttendanceWarningException : public AttendanceException
{
public:
    explicit AttendanceWarningException(const QString &message)
        : AttendanceException(notificationType, message)
    {
    }

    /** Notification::WARNING; repeated here because this header is a leaf. */
    static constexpr int notificationType = 2;
};
