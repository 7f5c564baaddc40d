// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "notifications/notificationbutton.h"

#include <QDateTime>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QQmlListProperty>
#include <QTimer>

/**
 * A message to the person at the screen, with an optional countdown to a default action.
 *
 * Created in any thread and passed to NotificationBoard::addNotification(), which moves it to the
 * GUI thread and owns it from then on. set() and the setters that are slots may be called from any
 * thread: they post themselves to the owner thread. Everything else belongs to the owner thread.
 */
class Notification : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int type READ type WRITE setType NOTIFY typeChanged)
    Q_PROPERTY(QString title READ title WRITE setTitle NOTIFY titleChanged)
    Q_PROPERTY(QString message READ message WRITE setMessage NOTIFY messageChanged)
    Q_PROPERTY(QDateTime dateTime READ dateTime CONSTANT)
    Q_PROPERTY(uint timeout READ timeout WRITE setTimeout NOTIFY timeoutChanged)
    Q_PROPERTY(bool timeoutCancelable READ isTimeoutCancelable WRITE setTimeoutCancelable NOTIFY
                   timeoutCancelableChanged)
    Q_PROPERTY(bool closable READ isClosable WRITE setClosable NOTIFY closableChanged)
    Q_PROPERTY(bool confirmable READ isConfirmable WRITE setConfirmable NOTIFY confirmableChanged)
    Q_PROPERTY(bool cancelable READ isCancelable WRITE setCancelable NOTIFY cancelableChanged)
    Q_PROPERTY(
        Action defaultAction READ defaultAction WRITE setDefaultAction NOTIFY defaultActionChanged)
    Q_PROPERTY(
        QQmlListProperty<NotificationButton> buttons READ buttonsProperty NOTIFY buttonsChanged)

public:
    /** Kind of message; selects the icon. */
    enum Type { INFO = 0, CONFIRMATION = 1, WARNING = 2, ERR = 3, LOADING = 4, TYPE_COUNT = 5 };
    Q_ENUM(Type)

    /** What happens when the countdown ends. */
    enum Action { CONFIRM = 0, CANCEL = 1, CLOSE = 2, ACTION_COUNT = 3 };
    Q_ENUM(Action)

    /** As QML creates it: an empty message with a confirm control and no countdown. */
    explicit Notification(QObject *parent = nullptr);

    /** A message that can only be closed; starts the countdown of @p timeout ms. */
    Notification(int type, QString title, QString message, uint timeout, bool timeoutCancelable,
                 bool closable, QObject *parent = nullptr);

    /** Deletes the buttons that have no parent. */
    ~Notification() override;

    [[nodiscard]] int type() const { return m_type; }
    [[nodiscard]] QString title() const { return m_title; }
    [[nodiscard]] QString message() const { return m_message; }
    /** Local time of creation. */
    [[nodiscard]] QDateTime dateTime() const { return m_dateTime; }
    /** Length of the countdown in ms; 0 for none. */
    [[nodiscard]] uint timeout() const { return m_timeout; }
    /** True if a tap on the countdown may end it; the view handles the tap. */
    [[nodiscard]] bool isTimeoutCancelable() const { return m_timeoutCancelable; }
    [[nodiscard]] bool isClosable() const { return m_closable; }
    [[nodiscard]] bool isConfirmable() const { return m_confirmable; }
    [[nodiscard]] bool isCancelable() const { return m_cancelable; }
    [[nodiscard]] Action defaultAction() const { return m_defaultAction; }
    void setDefaultAction(Action action);
    [[nodiscard]] QQmlListProperty<NotificationButton> buttonsProperty();
    [[nodiscard]] const QList<NotificationButton *> &buttons() const { return m_buttons; }

    /** True if only a person closes it and nothing is in progress. */
    [[nodiscard]] bool awaitsClosing() const;
    /** The same, but for a permanent one. */
    [[nodiscard]] bool isLasting() const { return awaitsClosing() && !m_isPermanent; }
    /** Keeps it from being ended to make room. Call before it is shown. */
    void setPermanent() { m_isPermanent = true; }

    /** Appends @p button, which is deleted with this notification if it has no parent. */
    void addButton(NotificationButton *button);
    /** Removes all buttons and deletes those without a parent. */
    void clearButtons();

    /** Milliseconds to the end of the countdown; 0 if there is none. */
    Q_INVOKABLE int remainingTime() const;

    Q_INVOKABLE void set(int type, const QString &title, const QString &message, uint timeout,
                         bool timeoutCancelable, bool closable);
    /** The same, closable. */
    Q_INVOKABLE void set(int type, const QString &title, const QString &message, uint timeout,
                         bool timeoutCancelable);
    /** The same, closable and with a cancelable countdown. */
    Q_INVOKABLE void set(int type, const QString &title, const QString &message, uint timeout);

Q_SIGNALS:
    void typeChanged();
    void titleChanged();
    void messageChanged();
    void timeoutChanged();
    void timeoutCancelableChanged();
    void closableChanged();
    void confirmableChanged();
    void cancelableChanged();
    void defaultActionChanged();
    void buttonsChanged();
    void confirmed(Notification *notification);
    void canceled(Notification *notification);
    /** Asks the owner to remove the notification from the screen. */
    void removed(Notification *notification);
    void buttonClicked(int idx, Notification *notification);

public Q_SLOTS:
    void setType(int type);
    void setTitle(const QString &title);
    void setMessage(const QString &message);
    /** Restarts the countdown with @p msecs, even if the value is unchanged; 0 ends it. */
    void setTimeout(uint msecs);
    void setTimeoutCancelable(bool cancelable);
    void setClosable(bool closable);
    void setConfirmable(bool confirmable);
    void setCancelable(bool cancelable);
    /** Starts the countdown unless it is running or its length is 0. */
    void startTimer();
    void confirm();
    void cancel();
    void remove();
    void clickButton(int idx);

private Q_SLOTS:
    void onTimeout();

private:
    [[nodiscard]] bool isForeignThread() const;
    void stopTimer();

    int m_type = INFO;
    QString m_title;
    QString m_message;
    QDateTime m_dateTime = QDateTime::currentDateTime();
    uint m_timeout = 0;
    bool m_timeoutCancelable = false;
    bool m_closable = true;
    bool m_confirmable = true;
    bool m_cancelable = false;
    Action m_defaultAction = CLOSE;
    bool m_isPermanent = false;
    QList<NotificationButton *> m_buttons;
    QPointer<QTimer> m_timer;
};
