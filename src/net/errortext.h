// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QString>

class QNetworkReply;
struct RecordOutcome;
class QSslError;

/** @p text as one line without control characters, of at most @p maxLength characters. */
[[nodiscard]] QString printableLine(QString text, int maxLength);

/** @p text without what follows "Basic" or "Bearer": a server may echo the Authorization header. */
[[nodiscard]] QString withoutCredentials(QString text);

/** What is wrong with the certificate of a server, for a technician. */
[[nodiscard]] QString tlsErrorText(const QList<QSslError> &errors);

/** Keeps the errors for errorText(): Qt's own text only says that the handshake failed. */
void rememberTlsErrors(QNetworkReply &reply, const QList<QSslError> &errors);

/** The reply's error string for log and screen: one short line without credentials. */
[[nodiscard]] QString errorText(const QNetworkReply &reply);

/**
 * "Network error: …" if the request failed or its status is not 2xx; empty after a success. Qt
 * reports no error for a redirect.
 */
[[nodiscard]] QString networkError(const QNetworkReply &reply);

/**
 * Why the request failed, in a few words that hold nothing from outside: "HTTP 503", or Qt's name
 * of the error such as "host not found". Empty after a success.
 */
[[nodiscard]] QString briefError(const QNetworkReply &reply);

/** The outcome of the finished @p reply to a record, without a failure yet. */
[[nodiscard]] RecordOutcome outcomeOf(const QNetworkReply &reply);
