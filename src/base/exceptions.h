// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

#include <exception>

/**
 * Base class of our exceptions, with a text for each of its readers: what() for the log, shown()
 * for the person at the screen. Throw by value, catch by reference.
 */
class Exception : public std::exception
{
public:
    /** @p message is in English, @p shown in the language of the interface. */
    explicit Exception(const QString &message, const QString &shown = {})
        : m_message(message.toUtf8())
        , m_shown(shown)
    {
    }

    /** The message as UTF-8, valid while this object exists. */
    [[nodiscard]] const char *what() const noexcept override { return m_message.constData(); }
    /** The reason in one sentence, see Reason; empty if no person is told of it. */
    [[nodiscard]] const QString &shown() const { return m_shown; }

private:
    QByteArray m_message;
    QString m_shown;
};

/** A failure of the token client. */
class KCException : public Exception
{
public:
    using Exception::Exception;
};

/** A failure to log attendance or presence, with the type of the notice that shows it. */
class AttendanceException : public Exception
{
public:
    /** @p type is a value of Notification::Type. */
    AttendanceException(int type, const QString &message, const QString &shown = {})
        : Exception(message, shown)
        , m_type(type)
    {
    }

    /** The Notification::Type that shows this failure. */
    [[nodiscard]] int type() const { return m_type; }

private:
    int m_type;
};

/** A permanent failure: the record cannot be logged, and the person must be told. */
class AttendanceErrorException : public AttendanceException
{
public:
    explicit AttendanceErrorException(const QString &message, const QString &shown = {})
        : AttendanceException(notificationType, message, shown)
    {
    }

    /** Notification::ERR, repeated because base includes no other folder. */
    static constexpr int notificationType = 3;
};

/** A temporary failure: the record stays queued and is sent later. */
class AttendanceWarningException : public AttendanceException
{
public:
    explicit AttendanceWarningException(const QString &message, const QString &shown = {})
        : AttendanceException(notificationType, message, shown)
    {
    }

    /** Notification::WARNING, repeated because base includes no other folder. */
    static constexpr int notificationType = 2;
};
