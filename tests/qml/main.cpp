// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "api/lbapi.h"
#include "app/startup.h"
#include "config/config.h"
#include "net/kcclientcredentials.h"
#include "net/restrictednetworkaccessmanager.h"
#include "simulator/simulator.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QSettings>
#include <QSignalSpy>
#include <QtQuickTest>

using simulator::Route;
using simulator::Simulator;

/**
 * Gives the QML tests the services, the settings and the engine's warnings, as "bench". Each test
 * file starts with new singletons.
 */
class Bench : public QObject
{
    Q_OBJECT

public:
    Bench() { prepareEnvironment(); }

    /** Serves @p xml from now on, fetches it, and returns when it is shown. */
    Q_INVOKABLE bool show(const QString &xml)
    {
        m_simulator->setSchedule(xml.toUtf8());
        QSignalSpy shown(Config::instance(), &Config::locationChanged);
        LBAPI::instance()->refreshEventData();
        return shown.wait();
    }

    Q_INVOKABLE void set(const QString &key, const QVariant &value)
    {
        QSettings().setValue(key, value);
    }

    /** Gives the views the address of the registration service and a valid token. */
    Q_INVOKABLE void logIn()
    {
        const auto addresses = m_simulator->kioskSettings();
        for (auto each = addresses.begin(); each != addresses.end(); ++each)
            set(each.key(), each.value());
        XNetworkAccessManager manager;
        KCClientCredentials credentials(&manager);
        QSignalSpy changed(&credentials, &KCClientCredentials::accessTokenChanged);
        credentials.grant();
        if (changed.wait())
            LBAPI::instance()->setAccessToken(changed.constFirst().constFirst().toString());
        m_simulator->clearFaults();
    }

    Q_INVOKABLE void spoil(const QString &route, const QString &fault)
    {
        m_simulator->setFault(*simulator::fromName<Route>(route),
                              *simulator::fromName<simulator::Fault>(fault));
    }

    Q_INVOKABLE [[nodiscard]] int requests(const QString &route) const
    {
        return m_simulator->requestCount(*simulator::fromName<Route>(route));
    }

    Q_INVOKABLE [[nodiscard]] int strayRequests() const
    {
        return m_simulator->strayRequests().size();
    }

    /** QML cannot append to the list. */
    Q_INVOKABLE void addButton(Notification *notification, NotificationButton *button)
    {
        notification->addButton(button);
    }

    /** The engine's warnings since the last call. */
    Q_INVOKABLE QStringList takeWarnings() { return std::exchange(m_warnings, {}); }

public Q_SLOTS:
    void applicationAvailable()
    {
        nameApplication();
        setGermanLocale();
        m_translations.install();
        loadFonts();
        registerMetaTypes();
        registerQmlTypes();
        m_simulator = std::make_unique<Simulator>();
        if (!m_simulator->start())
            qFatal("%s", qPrintable(m_simulator->errorString()));
    }

    void qmlEngineAvailable(QQmlEngine *engine)
    {
        delete LBAPI::instance();
        delete Config::instance();
        QSettings().clear();
        set(QStringLiteral("eventDataUrlTemplate"), m_simulator->scheduleUrlTemplate());
        set(QStringLiteral("plenarLocationId"), 1);
        m_simulator->setSchedule("<schedule/>");
        engine->rootContext()->setContextProperty(QStringLiteral("bench"), this);
        engine->rootContext()->setContextProperty(QStringLiteral("cardReadiness"),
                                                  LBAPI::instance()->cardReadiness());
        engine->setNetworkAccessManagerFactory(&m_network);
        connect(engine, &QQmlEngine::warnings, this, [this](const QList<QQmlError> &warnings) {
            for (const QQmlError &warning : warnings)
                m_warnings.append(warning.toString());
        });
    }

    void cleanupTestCase() { m_simulator.reset(); }

private:
    std::unique_ptr<Simulator> m_simulator;
    Translations m_translations;
    RestrictedNetworkAccessManagerFactory m_network { RequestLimits { std::chrono::seconds(1),
                                                                      std::chrono::seconds(2) } };
    QStringList m_warnings;
};

QUICK_TEST_MAIN_WITH_SETUP(qml, Bench)

#include "main.moc"
