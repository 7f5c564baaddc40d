// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCoreApplication>
#include <QString>

#include <cxxabi.h>
#include <optional>

/** A failure to log a card, as a value. */
struct Failure
{
    Q_DECLARE_TR_FUNCTIONS(Failure)

public:
    QString text; ///< for the log; empty if the reason is unknown
    QString shown; ///< the reason for the person, see Reason; empty if unknown
    int type; ///< the Notification::Type that shows it

    /** A failure after which the record stays queued. */
    [[nodiscard]] static Failure temporary(const QString &text, const QString &shown);
    /** True if the record stays queued and is sent later. */
    [[nodiscard]] bool isTemporary() const;
    /** The text for the log; never empty. */
    [[nodiscard]] QString logText() const;
    /** The message for the person: @p advice, and the reason below it. */
    [[nodiscard]] QString below(const QString &advice) const;
};

/** The result of sending a record. */
struct RecordOutcome
{
    std::optional<Failure> failure; ///< none if the service has accepted the record
    bool hasResponse = false; ///< also true for a refusal
    int status = 0; ///< of HTTP; 0 without a response
    QString networkReason {}; ///< short, see briefError(); empty unless the request failed

    /** True if the service answered that it does not want this record; it may be out of order. */
    [[nodiscard]] bool isRefusal() const;
    /** Why it failed, for the status: in a few words without anything that came from outside. */
    [[nodiscard]] QString shortReason() const;
};

/** Describes the current exception. Call it only in a catch block. */
[[nodiscard]] Failure currentFailure();

/**
 * Calls @p body and returns its exception as a value; nothing if it throws none.
 *
 * QThread::terminate() unwinds the stack with an exception of its own. A handler that swallows it
 * aborts the process, so no other handler of ours swallows everything. It carries no object, so its
 * handler binds a null reference.
 */
template <typename Body>
[[nodiscard]] __attribute__((no_sanitize("null", "alignment"))) std::optional<Failure>
catchFailure(Body &&body)
{
    try {
        body();
        return {};
    } catch (abi::__forced_unwind &) {
        throw;
    } catch (...) {
        return currentFailure();
    }
}
