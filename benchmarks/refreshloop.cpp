// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "refreshloop.h"

#include "process.h"

#include <QCoreApplication>
#include <QDir>
#include <QQmlEngine>
#include <QQuickView>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <cstdio>

using namespace std::chrono_literals;

// Qt's table of hooks for tools; no public header declares it.
extern quintptr Q_CORE_EXPORT qtHookData[]; // NOLINT: Qt's name and type

namespace {

constexpr int addObjectHook = 3;
constexpr int removeObjectHook = 4;

std::atomic<int> s_objects { 0 }; // the hooks get no context

int entries(const char *folder)
{
    return QDir(QLatin1String(folder))
        .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
        .size();
}

} // namespace

void RefreshLoop::countObjects()
{
    qtHookData[addObjectHook] = reinterpret_cast<quintptr>(+[](QObject *) { ++s_objects; });
    qtHookData[removeObjectHook] = reinterpret_cast<quintptr>(+[](QObject *) { --s_objects; });
}

RefreshLoop::RefreshLoop(QQuickView *view, std::function<void()> refresh, int rounds)
    : m_view(view)
    , m_refresh(std::move(refresh))
    , m_rounds(rounds)
{
    // Emitted in the render thread.
    connect(view, &QQuickWindow::frameSwapped, this, &RefreshLoop::onFrameSwapped,
            Qt::QueuedConnection);
}

void RefreshLoop::start()
{
    constexpr auto pooledThreadLife = 30s; // Qt's default for an idle thread
    QTimer::singleShot(pooledThreadLife + 5s, this, [this] { m_refresh(); });
}

void RefreshLoop::refreshed()
{
    m_awaitedFrames = 2; // the first may still show the old data
    m_view->update();
}

void RefreshLoop::onFrameSwapped()
{
    if (m_awaitedFrames == 0)
        return;
    if (--m_awaitedFrames > 0)
        m_view->update();
    else
        QTimer::singleShot(0, this, &RefreshLoop::endRound); // after deferred deletions
}

void RefreshLoop::endRound()
{
    constexpr int roundsPerSample = 20;
    constexpr auto pause = 300ms;

    const auto next = [this] {
        if (m_round == m_rounds)
            QCoreApplication::quit();
        else
            m_refresh();
    };
    ++m_round;
    if (m_round % roundsPerSample != 0) {
        next();
        return;
    }
    QTimer::singleShot(pause, this, [this, next] {
        // Otherwise chance decides which unused QML objects still exist.
        m_view->engine()->collectGarbage();
        QTimer::singleShot(pause, this, [this, next] {
            printSample();
            next();
        });
    });
}

void RefreshLoop::printSample() const
{
    std::printf("%d %d %d %d %.3f\n", m_round, s_objects.load(), entries("/proc/self/fd"),
                entries("/proc/self/task"), dirtyMegabytes(QStringLiteral("self")));
    std::fflush(stdout);
}
