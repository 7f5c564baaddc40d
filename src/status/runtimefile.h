// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QJsonObject>
#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>

/**
 * A small JSON file in the runtime folder that other programs read. Written as a whole, at most
 * once in 10 s, and only when its content has changed. GUI thread.
 */
class RuntimeFile : public QObject
{
    Q_OBJECT

public:
    enum class Readers { Owner, Everybody };

    /** @p content gives what the file shall hold; it is asked when the file is due. */
    RuntimeFile(const QString &name, Readers readers, std::function<QJsonObject()> content,
                QObject *parent = nullptr);

    /** Removes the file of the run before. */
    void remove();
    /** The content may have changed: asks for it soon. */
    void update();
    /** Sets the file's time: its content is still true. */
    void touch();

private:
    void write();
    [[nodiscard]] bool save(const QByteArray &bytes);

    QString m_path;
    Readers m_readers;
    std::function<QJsonObject()> m_content;
    QTimer m_timer;
    QElapsedTimer m_sinceWrite; ///< not started before the first one
    QByteArray m_written;
    bool m_hasFailed = false;
};
