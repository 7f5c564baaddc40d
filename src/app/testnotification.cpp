// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/testnotification.h"

#include "notifications/notification.h"

#include <QRandomGenerator64>
#include <QStringList>

namespace {

/** A number from @p min to @p max, both included. */
int randomNumber(int min, int max)
{
    return QRandomGenerator64::global()->bounded(min, max + 1);
}

QString randomLetters(int min, int max)
{
    // With umlauts, which German screens must show.
    static const QString alphabet
        = QStringLiteral("abcdefghijklmnopqrstuvwxyzäöüßABCDEFGHIJKLMNOPQRSTUVWXYZÄÖÜ");
    QString letters;
    for (int n = randomNumber(min, max); n > 0; --n)
        letters.append(alphabet.at(randomNumber(0, alphabet.size() - 1)));
    return letters;
}

} // namespace

Notification *makeTestNotification()
{
    constexpr int maxWords = 12;

    QStringList words;
    for (int n = randomNumber(1, maxWords); n > 0; --n)
        words.append(randomLetters(5, 15));
    const bool hasTimeout = randomNumber(0, 1) == 1;
    const uint timeout = hasTimeout ? static_cast<uint>(randomNumber(5000, 9999)) : 0;
    const bool timeoutCancelable = hasTimeout && randomNumber(0, 1) == 1;

    auto *notification
        = new Notification(randomNumber(0, Notification::TYPE_COUNT - 1), randomLetters(1, 10),
                           words.join(QLatin1Char('\n')), timeout, timeoutCancelable, true);
    for (int n = randomNumber(0, 3); n > 0; --n) {
        auto *button = new NotificationButton; // no parent: deleted with the notification
        button->setIcon(QStringLiteral("qrc:/fa/sign-in.svg"));
        button->setText(randomLetters(3, 10));
        notification->addButton(button);
    }
    return notification;
}
