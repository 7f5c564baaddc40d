// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QDebug>
#include <QFile>
#include <QGuiApplication>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QQuickItem>
#include <QQuickView>
#include <QSerialPort>
#include <QThread>
#include <QTimer>

#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

using namespace std::chrono_literals;

namespace {

constexpr auto noticeTime = 300ms;

/** Writes a file as durably as the kiosk writes a record. */
void writeDurably(const QByteArray &folder, const QByteArray &name, const QByteArray &content)
{
    const QByteArray aside = folder + "/." + name;
    const int file = open(aside.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    const bool written = file >= 0
        && write(file, content.constData(), static_cast<size_t>(content.size())) == content.size()
        && fsync(file) == 0 && close(file) == 0
        && std::rename(aside.constData(), (folder + '/' + name).constData()) == 0;
    const int directory = open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (!written || fsync(directory) != 0)
        qFatal("The record can not be written.");
    close(directory);
}

/** Shows, writes and posts the cards from a reader with minimal code. */
class Echo : public QObject
{
public:
    Echo(QQuickItem *notice, const QStringList &arguments)
        : m_notice(notice)
        , m_portName(arguments.value(1))
        , m_folder(QFile::encodeName(arguments.value(2)))
        , m_url(arguments.value(3))
    {
    }

    void init()
    {
        m_manager = new QNetworkAccessManager(this);
        m_port = new QSerialPort(m_portName, this);
        connect(m_port, &QSerialPort::readyRead, this, &Echo::onReadyRead);
        if (!m_port->open(QIODevice::ReadOnly))
            qFatal("The port can not be opened.");
        qInfo("Serial port opened.");
    }

private:
    void onReadyRead()
    {
        m_line += m_port->readAll();
        if (!m_line.endsWith('\n'))
            return;
        showNotice(true);
        const QByteArray record
            = R"(<?xml version="1.0" encoding="UTF-8"?><attendance>)"
              "<clientTime>2026-11-23T10:00:00</clientTime><locationId>1</locationId>"
              "<transponderId>"
            + QByteArray::number(m_line.trimmed().toULongLong(nullptr, 16))
            + "</transponderId></attendance>";
        m_line.clear();
        writeDurably(m_folder, "record", record);
        QNetworkRequest request(m_url);
        request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/xml"));
        request.setRawHeader("X-Plenar-Token", QByteArray(76, 'x')); // the length of a signature
        QNetworkReply *reply = m_manager->post(request, record);
        connect(reply, &QNetworkReply::finished, this, [this, reply] {
            reply->deleteLater();
            unlink((m_folder + "/record").constData());
            QTimer::singleShot(noticeTime, this, [this] { showNotice(false); });
        });
    }

    void showNotice(bool visible)
    {
        QMetaObject::invokeMethod(
            m_notice, [notice = m_notice, visible] { notice->setVisible(visible); },
            Qt::QueuedConnection);
    }

    QQuickItem *m_notice;
    QString m_portName;
    QByteArray m_folder;
    QUrl m_url;
    QNetworkAccessManager *m_manager = nullptr;
    QSerialPort *m_port = nullptr;
    QByteArray m_line;
};

} // namespace

/** Arguments: serial port, folder, URL. */
int main(int argc, char *argv[])
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, true); // as the kiosk
    const QGuiApplication app(argc, argv);
    QQuickView view;
    view.setResizeMode(QQuickView::SizeRootObjectToView);
    view.setColor(QColor(0x30, 0x30, 0x30));
    view.setSource(QUrl(QStringLiteral("qrc:/echo.qml")));
    view.showFullScreen();

    QThread thread;
    auto *echo = new Echo(view.rootObject()->findChild<QQuickItem *>(QStringLiteral("notice")),
                          QGuiApplication::arguments());
    echo->moveToThread(&thread);
    QObject::connect(&thread, &QThread::started, echo, [echo] { echo->init(); });
    QObject::connect(&thread, &QThread::finished, echo, &QObject::deleteLater);
    thread.start();
    const int code = QGuiApplication::exec();
    thread.quit();
    thread.wait();
    return code;
}
