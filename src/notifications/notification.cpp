// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "notifications/notification.h"

#include <QDebug>
#include <QThread>

#include <algorithm>
#include <limits>
#include <utility>

Notification::Notification(QObject *parent)
    : QObject(parent)
{
    startTimer();
}

Notification::Notification(int type, QString title, QString message, uint timeout,
                           bool timeoutCancelable, bool closable, QObject *parent)
    : QObject(parent)
    , m_type(type)
    , m_title(std::move(title))
    , m_message(std::move(message))
    , m_timeout(timeout)
    , m_timeoutCancelable(timeoutCancelable)
    , m_closable(closable)
    , m_confirmable(false)
{
    startTimer();
}

Notification::~Notification()
{
    const auto buttons = std::exchange(m_buttons, {});
    for (NotificationButton *button : buttons) {
        if (!button->parent())
            delete button;
    }
}

void Notification::setDefaultAction(Action action)
{
    if (m_defaultAction == action)
        return;
    m_defaultAction = action;
    Q_EMIT defaultActionChanged();
}

bool Notification::awaitsClosing() const
{
    const bool isInProgress = m_type == LOADING || !m_closable;
    return m_timeout == 0 && !isInProgress;
}

/** Read-only for QML: C++ adds buttons and announces them. */
QQmlListProperty<NotificationButton> Notification::buttonsProperty()
{
    using List = QQmlListProperty<NotificationButton>;
    static const auto buttonsOf
        = [](List *list) { return static_cast<Notification *>(list->object)->m_buttons; };
    return List(
        this, nullptr, [](List *list) { return buttonsOf(list).size(); },
        [](List *list, int i) { return buttonsOf(list).at(i); });
}

void Notification::addButton(NotificationButton *button)
{
    m_buttons.append(button);
    connect(button, &QObject::destroyed, this,
            [this, button] { // by then only a QObject, so only compare the pointer
                if (m_buttons.removeAll(button) > 0)
                    Q_EMIT buttonsChanged();
            });
    Q_EMIT buttonsChanged();
}

void Notification::clearButtons()
{
    const auto buttons = std::exchange(m_buttons, {});
    if (buttons.isEmpty())
        return;
    Q_EMIT buttonsChanged();
    for (NotificationButton *button : buttons) {
        if (!button->parent())
            button->deleteLater(); // the view may still use it
    }
}

int Notification::remainingTime() const
{
    return m_timer ? m_timer->remainingTime() : 0;
}

void Notification::set(int type, const QString &title, const QString &message, uint timeout,
                       bool timeoutCancelable, bool closable)
{
    if (isForeignThread()) {
        QMetaObject::invokeMethod(
            this, [=] { set(type, title, message, timeout, timeoutCancelable, closable); },
            Qt::QueuedConnection);
        return;
    }
    setType(type);
    setTitle(title);
    setMessage(message);
    setTimeout(timeout);
    setTimeoutCancelable(timeoutCancelable);
    setClosable(closable);
}

void Notification::set(int type, const QString &title, const QString &message, uint timeout,
                       bool timeoutCancelable)
{
    set(type, title, message, timeout, timeoutCancelable, true);
}

void Notification::set(int type, const QString &title, const QString &message, uint timeout)
{
    set(type, title, message, timeout, true, true);
}

void Notification::setType(int type)
{
    if (isForeignThread()) {
        QMetaObject::invokeMethod(this, "setType", Qt::QueuedConnection, Q_ARG(int, type));
        return;
    }
    if (m_type == type)
        return;
    m_type = type;
    Q_EMIT typeChanged();
}

void Notification::setTitle(const QString &title)
{
    if (isForeignThread()) {
        QMetaObject::invokeMethod(this, "setTitle", Qt::QueuedConnection, Q_ARG(QString, title));
        return;
    }
    if (m_title == title)
        return;
    m_title = title;
    Q_EMIT titleChanged();
}

void Notification::setMessage(const QString &message)
{
    if (isForeignThread()) {
        QMetaObject::invokeMethod(this, "setMessage", Qt::QueuedConnection,
                                  Q_ARG(QString, message));
        return;
    }
    if (m_message == message)
        return;
    m_message = message;
    Q_EMIT messageChanged();
}

void Notification::setTimeoutCancelable(bool cancelable)
{
    if (isForeignThread()) {
        QMetaObject::invokeMethod(this, "setTimeoutCancelable", Qt::QueuedConnection,
                                  Q_ARG(bool, cancelable));
        return;
    }
    if (m_timeoutCancelable == cancelable)
        return;
    m_timeoutCancelable = cancelable;
    Q_EMIT timeoutCancelableChanged();
}

void Notification::setClosable(bool closable)
{
    if (isForeignThread()) {
        QMetaObject::invokeMethod(this, "setClosable", Qt::QueuedConnection, Q_ARG(bool, closable));
        return;
    }
    if (m_closable == closable)
        return;
    m_closable = closable;
    Q_EMIT closableChanged();
}

void Notification::setConfirmable(bool confirmable)
{
    if (isForeignThread()) {
        QMetaObject::invokeMethod(this, "setConfirmable", Qt::QueuedConnection,
                                  Q_ARG(bool, confirmable));
        return;
    }
    if (m_confirmable == confirmable)
        return;
    m_confirmable = confirmable;
    Q_EMIT confirmableChanged();
}

void Notification::setCancelable(bool cancelable)
{
    if (isForeignThread()) {
        QMetaObject::invokeMethod(this, "setCancelable", Qt::QueuedConnection,
                                  Q_ARG(bool, cancelable));
        return;
    }
    if (m_cancelable == cancelable)
        return;
    m_cancelable = cancelable;
    Q_EMIT cancelableChanged();
}

void Notification::setTimeout(uint msecs)
{
    if (isForeignThread()) {
        QMetaObject::invokeMethod(this, "setTimeout", Qt::QueuedConnection, Q_ARG(uint, msecs));
        return;
    }
    stopTimer();
    if (msecs == 0 && m_timeout == 0)
        return;
    m_timeout = msecs;
    startTimer();
    Q_EMIT timeoutChanged();
}

void Notification::startTimer()
{
    if (m_timer || m_timeout == 0)
        return;
    m_timer = new QTimer(this);
    m_timer->setSingleShot(true);
    // Coarse timers round long time-outs to seconds; their remaining time then overflows.
    m_timer->setTimerType(Qt::PreciseTimer);
    connect(m_timer, &QTimer::timeout, this, &Notification::onTimeout);
    // QTimer takes an int; a larger value would wrap and never fire.
    constexpr uint maxMs = std::numeric_limits<int>::max();
    m_timer->start(static_cast<int>(std::min(m_timeout, maxMs)));
}

void Notification::confirm()
{
    if (m_defaultAction == CONFIRM)
        stopTimer();
    Q_EMIT confirmed(this);
}

void Notification::cancel()
{
    if (m_defaultAction == CANCEL)
        stopTimer();
    Q_EMIT canceled(this);
}

void Notification::remove()
{
    if (m_defaultAction == CLOSE)
        stopTimer();
    Q_EMIT removed(this);
}

void Notification::clickButton(int idx)
{
    Q_EMIT buttonClicked(idx, this);
}

void Notification::onTimeout()
{
    stopTimer();
    switch (m_defaultAction) {
    case CONFIRM:
        Q_EMIT confirmed(this);
        return;
    case CANCEL:
        Q_EMIT canceled(this);
        return;
    case CLOSE:
        Q_EMIT removed(this);
        return;
    case ACTION_COUNT:
        break;
    }
    qCritical() << "Unhandled default action.";
}

bool Notification::isForeignThread() const
{
    return QThread::currentThread() != thread();
}

void Notification::stopTimer()
{
    if (!m_timer)
        return;
    m_timer->stop();
    m_timer->deleteLater();
    m_timer.clear();
}
