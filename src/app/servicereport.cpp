// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/servicereport.h"

#include "api/lbapi.h"
#include "app/attendancethread.h"
#include "app/quickwindow.h"
#include "config/config.h"
#include "status/kioskstatus.h"
#include "supervision/heartbeat.h"
#include "supervision/servicemanager.h"

#include <QPointer>
#include <QRunnable>

#include <utility>

namespace {

bool s_isReady = false;

/** Answers when the render thread runs it, or drops it since there is nothing to render. */
class RenderAnswer : public QRunnable
{
public:
    explicit RenderAnswer(Heartbeat::Answer answer)
        : m_answer(std::move(answer))
    {
    }
    Q_DISABLE_COPY_MOVE(RenderAnswer)
    ~RenderAnswer() override { m_answer(); }

    void run() override { }

private:
    Heartbeat::Answer m_answer;
};

void watchWindow(Heartbeat &heartbeat, QuickWindow &window)
{
    heartbeat.watch(QStringLiteral("render thread"),
                    [window = QPointer<QuickWindow>(&window)](const Heartbeat::Answer &answer) {
                        auto *job = new RenderAnswer(answer);
                        if (window)
                            window->scheduleRenderJob(job, QQuickWindow::NoStage);
                        else
                            delete job; // the next window is not there yet
                    });
}

/** Also runs without a service manager: "--status" tells a kiosk that hangs by it. */
Heartbeat *makeHeartbeat()
{
    using namespace std::chrono_literals;
    const auto limit = servicemanager::lifeSignLimit();
    const auto interval = limit ? *limit / 3 : std::chrono::milliseconds(20s);
    KioskStatus *status = KioskStatus::instance();
    status->setLifeSigns(interval, limit.has_value());
    auto *heartbeat = new Heartbeat(interval, [status, hasWatchdog = limit.has_value()] {
        if (hasWatchdog)
            servicemanager::alive();
        status->onSignOfLife();
    });
    heartbeat->watch(QStringLiteral("attendance worker"), &askAttendanceThread);
    QObject::connect(heartbeat, &Heartbeat::missed, status, &KioskStatus::onSilence);
    return heartbeat;
}

/** Never destroyed, since a worker that was left behind may still answer. */
Heartbeat &heartbeat()
{
    static auto *heartbeat = makeHeartbeat();
    return *heartbeat;
}

QString cardStatus(CardReadiness::Fault fault)
{
    switch (fault) {
    case CardReadiness::Waiting:
        return QStringLiteral("another kiosk runs");
    case CardReadiness::Stopped:
        return QStringLiteral("logging has stopped");
    case CardReadiness::NotKept:
        return QStringLiteral("records cannot be kept");
    default:
        return QStringLiteral("cards are not read");
    }
}

QString statusText()
{
    LBAPI *api = LBAPI::instance();
    QStringList parts {
        QStringLiteral("Screen of \"%1\"").arg(Config::instance()->locationName())
    };
    if (api->eventData()->error())
        parts << QStringLiteral("the schedule failed");
    else if (!api->scheduleAsOf().isEmpty())
        parts << QStringLiteral("the schedule is out of date");
    if (!api->roomWarning().isEmpty())
        parts << QStringLiteral("no room is set");
    if (!api->cardWarning().isEmpty())
        parts << cardStatus(api->cardReadiness()->fault());
    if (parts.size() == 1)
        parts << QStringLiteral("all well");
    return parts.join(QStringLiteral(", ")) + QLatin1Char('.');
}

void updateStatus()
{
    static QString last;
    const QString text = statusText();
    if (std::exchange(last, text) != text)
        servicemanager::status(text);
}

/** The first schedule is shown while it loads, and may fail then. */
void followSchedule(const EventData *schedule)
{
    QObject::connect(schedule, &EventData::errorChanged, LBAPI::instance(), &updateStatus);
    updateStatus();
}

/** Tells the service manager in words what the screen shows, from now on. */
void reportStatus()
{
    LBAPI *api = LBAPI::instance();
    for (const auto signal :
         { &LBAPI::scheduleAsOfChanged, &LBAPI::roomWarningChanged, &LBAPI::cardWarningChanged })
        QObject::connect(api, signal, api, &updateStatus);
    QObject::connect(api, &LBAPI::eventDataChanged, api, &followSchedule);
    QObject::connect(Config::instance(), &Config::locationNameChanged, api, &updateStatus);
    followSchedule(api->eventData());
}

void onFirstFrame()
{
    servicemanager::ready();
    KioskStatus::instance()->onFirstFrame();
    heartbeat().start();
    if (qEnvironmentVariableIsSet("NOTIFY_SOCKET"))
        reportStatus();
}

} // namespace

void reportToServiceManager(QuickWindow &window)
{
    watchWindow(heartbeat(), window);
    KioskStatus::instance()->watchFrames(&window);
    if (s_isReady)
        return;
    // The signal comes from the render thread. A view that failed to load shows nothing.
    QObject::connect(&window, &QQuickWindow::frameSwapped, &window, [&window] {
        if (s_isReady || window.status() != QQuickView::Ready)
            return;
        s_isReady = true;
        QObject::disconnect(&window, &QQuickWindow::frameSwapped, &window, nullptr);
        onFirstFrame();
    });
}
