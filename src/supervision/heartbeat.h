// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QStringList>
#include <QTimer>

#include <chrono>
#include <functional>
#include <vector>

/**
 * Gives signs of life, but only while every watched part of the program answers.
 *
 * With each sign it asks all parts anew; the next sign waits until all have answered. The thread
 * of this object answers by asking. Must outlive every thread that can still answer.
 */
class Heartbeat : public QObject
{
    Q_OBJECT

public:
    /** To be called once, in any thread. */
    using Answer = std::function<void()>;
    /** Has the part call the answer as soon as it can. */
    using Question = std::function<void(Answer)>;

    /** Calls @p beat at most once per @p interval. */
    Heartbeat(std::chrono::milliseconds interval, std::function<void()> beat);

    /** Watches the part @p name from the next sign on; a new question replaces the former one. */
    void watch(const QString &name, Question question);
    /** Gives the first sign. */
    void start();

Q_SIGNALS:
    /** A sign is due, but a part has not answered. */
    void missed();

private:
    struct Part
    {
        QString name;
        Question question;
    };

    void tick();
    void ask(const Part &part);

    std::function<void()> m_beat;
    QTimer m_timer;
    std::vector<Part> m_parts;
    QStringList m_unanswered;
    bool m_isSilenceLogged = false;
};
