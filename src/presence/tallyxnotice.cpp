// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "presence/tallyxnotice.h"

#include "base/connections.h"
#include "notifications/notificationbutton.h"

#include <array>

namespace {

constexpr std::array buttonTypes { TallyxLogEntity::IN, TallyxLogEntity::OUT }; // by index

NotificationButton *makeButton(const QString &text, const QString &icon)
{
    auto *button = new NotificationButton; // no parent: deleted with the notification
    button->setText(text);
    button->setIcon(icon);
    return button;
}

/** Marks the button of @p type, if it has one. */
void mark(const Notification &notification, TallyxLogEntity::Type type, bool isOpen)
{
    int index = 0;
    for (const TallyxLogEntity::Type each : buttonTypes) {
        NotificationButton *button = notification.buttons().value(index++);
        if (!button)
            return;
        button->setHighlighted(each == type);
        button->setFlashing(isOpen && each == type);
        button->setEnabled(isOpen);
    }
}

/** From now on only the countdown or a tap on the cross removes the notification. */
void close(Notification &notification)
{
    notification.setConfirmable(false);
    notification.setDefaultAction(Notification::CLOSE);
}

} // namespace

TallyxNotice::TallyxNotice(const QObject *flow)
    : m_handle([flow] {
        auto *notification = new Notification(Notification::LOADING, tr("Presence"),
                                              tr("Querying status..."), 0, false, false);
        // Connect before it moves to the GUI thread: from then on this thread must not touch it.
        connectChecked(notification,
                       SIGNAL(buttonClicked(int,Notification*)), flow, SLOT(onButtonClicked(int)));
        connectChecked(notification, SIGNAL(confirmed(Notification*)), flow, SLOT(postLog()));
        connectChecked(notification,
                       SIGNAL(removed(Notification*)), flow, SLOT(onNotificationRemoved()));
        return notification;
    }())
{
}

void TallyxNotice::ask(TallyxLogEntity::Type proposal, const QString &title, const QString &message,
                       uint timeout) const
{
    m_handle.change([=](Notification &notification) {
        notification.setType(Notification::CONFIRMATION);
        notification.setConfirmable(true);
        notification.setDefaultAction(Notification::CONFIRM);
        if (!title.isNull())
            notification.setTitle(title);
        notification.setMessage(message.isNull() ? tr("Please select below.") : message);
        notification.addButton(makeButton(tr("Arrive"), QStringLiteral("qrc:/fa/sign-in.svg")));
        notification.addButton(makeButton(tr("Leave"), QStringLiteral("qrc:/fa/sign-out.svg")));
        mark(notification, proposal, true);
        QObject::connect(&notification, &Notification::buttonClicked, &notification,
                         [timeout](int idx, Notification *clicked) {
                             const bool isOpen = clicked->isConfirmable();
                             if (!isOpen || idx < 0 || idx >= static_cast<int>(buttonTypes.size()))
                                 return;
                             mark(*clicked, buttonTypes[static_cast<size_t>(idx)], true);
                             clicked->setTimeout(timeout);
                         });
        notification.setTimeout(timeout);
    });
}

void TallyxNotice::showSent(TallyxLogEntity::Type choice) const
{
    m_handle.change([=](Notification &notification) {
        mark(notification, choice, false);
        notification.setTimeout(0);
        close(notification);
    });
}

void TallyxNotice::acknowledge(const QString &message, uint timeout) const
{
    m_handle.change([=](Notification &notification) {
        notification.setType(Notification::INFO);
        notification.setMessage(message.isNull() ? tr("Your presence has been logged.") : message);
        notification.setTimeoutCancelable(true);
        notification.setClosable(true);
        notification.setTimeout(timeout);
    });
}

void TallyxNotice::fail(const QString &message, uint timeout) const
{
    const auto make = [] { return new Notification(Notification::ERR, {}, {}, 0, false, true); };
    m_handle.changeOrShow(make, [=](Notification &notification) {
        close(notification);
        notification.clearButtons();
        notification.set(Notification::ERR, tr("Error"), message, timeout);
    });
}

void TallyxNotice::withdraw() const
{
    m_handle.change([](Notification &notification) { notification.remove(); });
}
