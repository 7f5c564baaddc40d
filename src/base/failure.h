// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <cxxabi.h>
#include <optional>

/** What went wrong with a card or its record, as a value. */
struct Failure
{
    QString text; ///< ready to be shown; empty if nothing is known
    int type; ///< the Notification::Type that shows it

    /** A failure after which the record stays queued. */
    [[nodiscard]] static Failure temporary(const QString &text);
    /** True if the record stays queued and is sent later. */
    [[nodiscard]] bool isTemporary() const;
    /** The text, or what stands in the log for a failure without one. */
    [[nodiscard]] QString logText() const;
};

/** How the sending of a record has ended. */
struct RecordOutcome
{
    std::optional<Failure> failure; ///< none if the service has taken the record
    bool hasResponse = false; ///< also true for a refusal
};

/** Describes the exception that is being handled. Call it in a catch block only. */
[[nodiscard]] Failure currentFailure();

/**
 * Calls @p body and returns what it throws as a value.
 *
 * QThread::terminate() unwinds the stack with an exception of its own. A handler that swallows it
 * aborts the process, so this is the only place that catches everything.
 */
template <typename Body> [[nodiscard]] std::optional<Failure> catchFailure(Body &&body)
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
