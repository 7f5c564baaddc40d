// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "app/checkreport.h"
#include "config/scratchsettings.h"
#include "config/services.h"
#include "net/requestlimits.h"
#include "net/xnetworkaccessmanager.h"

#include <QObject>

class EventData;
class QJsonDocument;
class QNetworkReply;

/**
 * Checks settings, machine and services as the kiosk would use them, and prints a report. Makes no
 * record: it only connects to the services that accept records.
 */
class SelfCheck : public QObject
{
    Q_OBJECT

public:
    explicit SelfCheck(QObject *parent = nullptr);

    /** Checks settings and TLS at once, everything else in the event loop. */
    void start();

Q_SIGNALS:
    /** @p status is the exit status: 1 if something would keep the screen from working, else 0. */
    void finished(int status);

private:
    using Verdict = CheckReport::Verdict;

    void checkToken();
    void onToken(QNetworkReply *reply);
    void continueWithoutToken(const QString &what, const QString &problem);
    void checkConfiguration(const QString &token);
    void onConfiguration(QNetworkReply *reply);
    void applyToCopy(const QJsonDocument &document);
    void checkOtherServices();
    void checkSchedule();
    void onSchedule(EventData *data);
    void checkConnections(Service::Kind kind);
    void checkConnection(const Service &service);
    void done();

    const ScratchSettings m_settings; ///< first, so that the screen's own files stay unchanged
    RequestLimits m_limits;
    XNetworkAccessManager m_manager;
    CheckReport m_report;
    int m_pending = 0; ///< checks that have not ended
};
