// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QAbstractListModel>
#include <QList>

class Notification;

/** The notifications on the screen, newest first. Owns none of them. GUI thread. */
class NotificationsModel : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(int length READ length NOTIFY lengthChanged)

public:
    enum Role { DataRole = Qt::UserRole };

    explicit NotificationsModel(QObject *parent = nullptr);

    [[nodiscard]] int length() const { return m_notifications.size(); }

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    /** The newest notification; null if there is none. */
    [[nodiscard]] Notification *newest() const { return m_notifications.value(0); }

    /** The newest error with these texts; null if there is none. */
    [[nodiscard]] Notification *findError(const QString &title, const QString &message) const;

    /** True if a row holds @p notification; a removed one still exists for a moment. */
    [[nodiscard]] bool contains(Notification *notification) const
    {
        return m_notifications.contains(notification);
    }

    /** Number of notifications that stay until a person closes them. */
    [[nodiscard]] int awaitingCount() const;

    /** Inserts @p notification at row 0. */
    void prepend(Notification *notification);

    /** Removes the first row that holds @p notification; false if there is none. */
    bool removeFirst(Notification *notification);

    /** Closes the oldest of the notifications that last, beyond noticelimits::maxLasting. */
    void endOldest();

Q_SIGNALS:
    void lengthChanged();

private:
    QList<Notification *> m_notifications;
};
