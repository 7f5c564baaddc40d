// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QString>

/** An extra button of a notification. GUI thread only, from creation to deletion. */
class NotificationButton : public QObject
{
    Q_OBJECT
    /// URL of the image, such as "qrc:/fa/sign-in.svg"
    Q_PROPERTY(QString icon READ icon WRITE setIcon NOTIFY iconChanged)
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    Q_PROPERTY(bool highlighted READ isHighlighted WRITE setHighlighted NOTIFY highlightedChanged)
    Q_PROPERTY(bool flashing READ isFlashing WRITE setFlashing NOTIFY flashingChanged)
    Q_PROPERTY(bool enabled READ isEnabled WRITE setEnabled NOTIFY enabledChanged)

public:
    explicit NotificationButton(QObject *parent = nullptr);

    [[nodiscard]] QString icon() const { return m_icon; }
    void setIcon(const QString &icon);
    [[nodiscard]] QString text() const { return m_text; }
    void setText(const QString &text);
    [[nodiscard]] bool isHighlighted() const { return m_highlighted; }
    void setHighlighted(bool highlighted);
    [[nodiscard]] bool isFlashing() const { return m_flashing; }
    void setFlashing(bool flashing);
    [[nodiscard]] bool isEnabled() const { return m_enabled; }
    void setEnabled(bool enabled);

Q_SIGNALS:
    void iconChanged();
    void textChanged();
    void highlightedChanged();
    void flashingChanged();
    void enabledChanged();

private:
    QString m_icon;
    QString m_text;
    bool m_highlighted = false;
    bool m_flashing = false;
    bool m_enabled = true;
};
