// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "notifications/notificationsmodel.h"

#include "notifications/noticelimits.h"
#include "notifications/notification.h"

#include <algorithm>

NotificationsModel::NotificationsModel(QObject *parent)
    : QAbstractListModel(parent)
{
}

int NotificationsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_notifications.size();
}

QVariant NotificationsModel::data(const QModelIndex &index, int role) const
{
    const bool isRow = index.row() >= 0 && index.row() < m_notifications.size();
    if (role != DataRole || index.parent().isValid() || !isRow)
        return {};
    return QVariant::fromValue(m_notifications.at(index.row()));
}

QHash<int, QByteArray> NotificationsModel::roleNames() const
{
    return { { DataRole, QByteArrayLiteral("data") } };
}

void NotificationsModel::prepend(Notification *notification)
{
    beginInsertRows({}, 0, 0);
    m_notifications.prepend(notification);
    endInsertRows();
    Q_EMIT lengthChanged();
}

bool NotificationsModel::removeFirst(Notification *notification)
{
    const int row = m_notifications.indexOf(notification);
    if (row < 0)
        return false;
    beginRemoveRows({}, row, row);
    m_notifications.removeAt(row);
    endRemoveRows();
    Q_EMIT lengthChanged();
    return true;
}

Notification *NotificationsModel::findError(const QString &title, const QString &message) const
{
    const auto found
        = std::find_if(m_notifications.cbegin(), m_notifications.cend(), [&](const auto *each) {
              return each->type() == Notification::ERR && each->title() == title
                  && each->message() == message;
          });
    return found == m_notifications.cend() ? nullptr : *found;
}

int NotificationsModel::awaitingCount() const
{
    return int(std::count_if(m_notifications.cbegin(), m_notifications.cend(),
                             [](const auto *each) { return each->awaitsClosing(); }));
}

void NotificationsModel::endOldest()
{
    int lasting = 0;
    const auto newestFirst = m_notifications; // the owner removes what closes
    for (Notification *notification : newestFirst) {
        if (notification->isLasting() && ++lasting > noticelimits::maxLasting)
            notification->remove();
    }
}
