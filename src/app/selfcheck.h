// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "config/scratchsettings.h"
#include "net/requestlimits.h"
#include "net/xnetworkaccessmanager.h"

#include <QObject>
#include <QTextStream>

class EventData;
class QJsonDocument;
class QNetworkReply;
class QUrl;
class Spool;

/**
 * Looks at settings and services as the kiosk would and prints one line each, for an operator on a
 * terminal. Never makes a record: services that would are only connected to.
 */
class SelfCheck : public QObject
{
    Q_OBJECT

public:
    explicit SelfCheck(QObject *parent = nullptr);

    /** Begins; everything after the settings happens in the event loop. */
    void start();

Q_SIGNALS:
    /** 0: the screen would work; 1: something is in its way. */
    void finished(int status);

private:
    enum class Verdict { Good, Notice, Bad };

    void printSettings();
    void checkTls();
    void checkToken();
    void onToken(QNetworkReply *reply);
    void checkConfiguration(const QString &token);
    void onConfiguration(QNetworkReply *reply);
    void tryOut(const QJsonDocument &document);
    void checkServices();
    void checkSchedule();
    void onSchedule(EventData *data);
    void checkReader();
    void checkSpool(const QString &what, const Spool &spool);
    void checkRecordServices();
    void checkConnection(const QString &what, const QUrl &url);
    [[nodiscard]] static QString failureOf(const QNetworkReply &reply);
    void print(const QString &line);
    void report(Verdict verdict, const QString &what, const QString &result);
    void done();

    const ScratchSettings m_settings; ///< first of all: what is looked at stays as it is
    RequestLimits m_limits;
    XNetworkAccessManager m_manager;
    QTextStream m_out;
    int m_pending = 0; ///< checks under way
    bool m_failed = false;
};
