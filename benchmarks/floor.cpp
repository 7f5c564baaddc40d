// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "refreshloop.h"

#include <QGuiApplication>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QQuickItem>
#include <QQuickStyle>
#include <QQuickView>
#include <QXmlStreamReader>

namespace {

QStringList titles(QIODevice *document)
{
    QStringList found;
    QXmlStreamReader reader(document);
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement
            && reader.name() == QLatin1String("title"))
            found.append(reader.readElementText());
    }
    return found;
}

/** Fetches the document with a new manager and rebuilds the view. */
void refresh(QObject *page, const QUrl &url, RefreshLoop *loop)
{
    auto *manager = new QNetworkAccessManager;
    QObject::connect(manager, &QNetworkAccessManager::finished, page, [=](QNetworkReply *reply) {
        QMetaObject::invokeMethod(page, "refresh", Q_ARG(QVariant, titles(reply)));
        manager->deleteLater();
        loop->refreshed();
    });
    manager->get(QNetworkRequest(url));
}

} // namespace

/**
 * Shows the bare page. "--clock" shows the time, "--pulse" a pulsing rectangle, "--refresh URL
 * ROUNDS" refreshes.
 */
int main(int argc, char *argv[])
{
    RefreshLoop::countObjects();
    qputenv("QT_IM_MODULE", "qtvirtualkeyboard");
    qputenv("QT_VIRTUALKEYBOARD_DESKTOP_DISABLE", "1");
    QQuickStyle::setStyle(QStringLiteral("Material"));
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, true);
    const QGuiApplication app(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();

    QQuickView view;
    view.setResizeMode(QQuickView::SizeRootObjectToView);
    view.setInitialProperties(
        { { QStringLiteral("showsClock"), arguments.contains(QStringLiteral("--clock")) },
          { QStringLiteral("pulses"), arguments.contains(QStringLiteral("--pulse")) } });
    view.setSource(QUrl(QStringLiteral("qrc:/floor.qml")));
    view.showFullScreen();

    RefreshLoop loop(
        &view, [&] { refresh(view.rootObject(), QUrl(arguments.value(2)), &loop); },
        arguments.value(3).toInt());
    if (arguments.value(1) == QLatin1String("--refresh"))
        loop.start();
    return QGuiApplication::exec();
}
