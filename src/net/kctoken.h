// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>
#include <QObject>
#include <QString>

/** A token of the identity server. Owned by the token client, lives in its thread. */
class KCToken : public QObject
{
    Q_OBJECT

public:
    /** @p validity in seconds, counted from @p obtained. */
    KCToken(const QString &text, int validity, const QDateTime &obtained,
            QObject *parent = nullptr);

    [[nodiscard]] QString text() const { return m_text; }
    [[nodiscard]] bool isExpired(const QDateTime &now) const;

Q_SIGNALS:
    /** For listeners; the token client renews tokens with its own timer. */
    void aboutToExpire();

private:
    QString m_text;
    qint32 m_validity;
    QDateTime m_obtained;
};
