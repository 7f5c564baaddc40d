// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/serialbus.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <cerrno>
#include <dlfcn.h>
#include <mutex>
#include <sys/ioctl.h>
#include <umockdev.h>
#include <unistd.h>

namespace simulator {
namespace {

    constexpr auto preloadName = "libumockdev-preload.so.0";
    constexpr auto preloadVariable = "LD_PRELOAD";
    constexpr auto asanVariable = "ASAN_OPTIONS";
    constexpr auto messageBusVariable = "DBUS_SESSION_BUS_ADDRESS";
    constexpr auto folderVariable = "UMOCKDEV_DIR";
    constexpr auto usbPath = "/devices/pci0000:00/0000:00:14.0/usb1";

    struct Unreference
    {
        void operator()(gpointer object) const { g_object_unref(object); }
    };

    struct Free
    {
        void operator()(gpointer memory) const { g_free(memory); }
        void operator()(GError *error) const { g_error_free(error); }
    };

    QString textOf(gchar *owned)
    {
        const std::unique_ptr<gchar, Free> text(owned);
        return QFile::decodeName(text.get());
    }

    QString nodeOf(const QString &portName)
    {
        return QStringLiteral("/dev/") + portName;
    }

    QString interfacePath(int socket)
    {
        return QStringLiteral("%1/1-%2/1-%2:1.0").arg(QLatin1String(usbPath)).arg(socket);
    }

    QByteArray recordOf(const SerialBus::Device &device, int socket)
    {
        const auto hex = [](quint16 id) {
            return QString::number(id, 16).rightJustified(4, QLatin1Char('0'));
        };
        // The device database writes a blank as an underscore.
        const auto word
            = [](QString text) { return text.replace(QLatin1Char(' '), QLatin1Char('_')); };
        // Qt ignores a port without a parent device.
        QStringList lines {
            QStringLiteral("P: ") + interfacePath(socket),
            QStringLiteral("E: SUBSYSTEM=usb"),
            QStringLiteral("E: DEVTYPE=usb_interface"),
            QStringLiteral("E: DRIVER=cdc_acm"),
            {},
            QStringLiteral("P: %1/tty/%2").arg(interfacePath(socket), device.portName),
            QStringLiteral("E: DEVNAME=") + nodeOf(device.portName),
            QStringLiteral("E: SUBSYSTEM=tty"),
            QStringLiteral("E: ID_MODEL=") + word(device.description),
            QStringLiteral("E: ID_VENDOR=") + word(device.manufacturer)
        };
        if (device.vendorId != 0)
            lines += { QStringLiteral("E: ID_VENDOR_ID=") + hex(device.vendorId),
                       QStringLiteral("E: ID_MODEL_ID=") + hex(device.productId) };
        lines += QStringLiteral("A: dev=166:%1\\n").arg(socket);
        return lines.join(QLatin1Char('\n')).toUtf8() + "\n\n";
    }

} // namespace

struct SerialBus::Testbed
{
    std::unique_ptr<UMockdevTestbed, Unreference> object { umockdev_testbed_new() };
    std::unique_ptr<UMockdevIoctlBase, Unreference> ioctls { umockdev_ioctl_base_new() };
    QString root = textOf(umockdev_testbed_get_root_dir(object.get()));

    std::mutex mutex; ///< protects pulled
    QSet<QString> pulled; ///< nodes of unplugged ports

    [[nodiscard]] QString link(const QString &portName) const { return root + nodeOf(portName); }
    void setPulled(const QString &portName, bool isPulled)
    {
        const std::lock_guard lock(mutex);
        if (isPulled)
            pulled.insert(nodeOf(portName));
        else
            pulled.remove(nodeOf(portName));
    }

    // Both run in a thread of the testbed and return whether they have handled the call.
    static gboolean onIoctl(UMockdevIoctlBase *base, UMockdevIoctlClient *client, gpointer testbed);
    static gboolean onRead(UMockdevIoctlBase *base, UMockdevIoctlClient *client, gpointer testbed);
};

/// Grants exclusive use, as a real port does. The library would refuse it, and Qt could not open
/// the port.
gboolean SerialBus::Testbed::onIoctl(UMockdevIoctlBase * /*base*/, UMockdevIoctlClient *client,
                                     gpointer /*testbed*/)
{
    const gulong request = umockdev_ioctl_client_get_request(client);
    const bool isGranted = request == TIOCEXCL || request == TIOCNXCL;
    umockdev_ioctl_client_complete(client, isGranted ? 0 : -1, isGranted ? 0 : ENOTTY);
    return TRUE;
}

/// Reports an unplugged reader as an I/O error. Reading the hung-up terminal would return nothing
/// and no error, and Qt would read on endlessly.
gboolean SerialBus::Testbed::onRead(UMockdevIoctlBase * /*base*/, UMockdevIoctlClient *client,
                                    gpointer testbed)
{
    auto *const self = static_cast<Testbed *>(testbed);
    const std::lock_guard lock(self->mutex);
    if (!self->pulled.contains(QFile::decodeName(umockdev_ioctl_client_get_devnode(client))))
        return FALSE;
    umockdev_ioctl_client_complete(client, -1, EIO);
    return TRUE;
}

SerialBus::SerialBus()
    : m_testbed(std::make_unique<Testbed>())
{
    g_signal_connect(m_testbed->ioctls.get(), "handle-ioctl", G_CALLBACK(&Testbed::onIoctl),
                     m_testbed.get());
    g_signal_connect(m_testbed->ioctls.get(), "handle-read", G_CALLBACK(&Testbed::onRead),
                     m_testbed.get());
    // The testbed creates it with the first device, but the node must exist before its entry.
    QDir(m_testbed->root).mkdir(QStringLiteral("dev"));
}

SerialBus::~SerialBus()
{
    for (auto socket = m_sockets.keyBegin(); socket != m_sockets.keyEnd(); ++socket)
        umockdev_testbed_detach_ioctl(m_testbed->object.get(), qPrintable(nodeOf(*socket)),
                                      nullptr);
}

QString SerialBus::preloadLibrary()
{
    // It has its own package, but lies beside the library that we link.
    Dl_info library {};
    if (::dladdr(reinterpret_cast<void *>(&umockdev_testbed_new), &library) == 0)
        return {};
    const QFileInfo preload(QFileInfo(QFile::decodeName(library.dli_fname)).path()
                            + QLatin1Char('/') + QLatin1String(preloadName));
    return preload.exists() ? preload.absoluteFilePath() : QString();
}

QMap<QString, QString> SerialBus::environment() const
{
    const auto joined = [](const char *variable, char separator, const QString &text) {
        const QString other = QFile::decodeName(qgetenv(variable));
        return other.isEmpty() ? text : text + QLatin1Char(separator) + other;
    };
    // The preloaded library holds a lock while it resolves a path. Without an address Qt's D-Bus
    // thread forks to start a bus. A child that is forked while the lock is held waits forever, and
    // the program waits for the child.
    const QString givenBus = qEnvironmentVariable(messageBusVariable);
    const QString messageBus = givenBus.isEmpty() ? QStringLiteral("disabled:") : givenBus;
    // A program with AddressSanitizer refuses to start after a preloaded library.
    return { { QLatin1String(folderVariable), m_testbed->root },
             { QLatin1String(messageBusVariable), messageBus },
             { QLatin1String(preloadVariable), joined(preloadVariable, ' ', preloadLibrary()) },
             { QLatin1String(asanVariable),
               joined(asanVariable, ':', QStringLiteral("verify_asan_link_order=0")) } };
}

QString SerialBus::nextPortName()
{
    return QStringLiteral("ttyACM%1%2")
        .arg(::getpid())
        .arg(m_namedPorts++, 2, 10, QLatin1Char('0'));
}

bool SerialBus::add(const Device &device, const QString &terminal, QString *error)
{
    UMockdevTestbed *const testbed = m_testbed->object.get();
    GError *failure = nullptr;
    const auto check = [&](bool good) {
        const std::unique_ptr<GError, Free> owned(failure);
        if (!good)
            *error = QStringLiteral("No device %1: %2")
                         .arg(device.portName,
                              owned ? QString::fromUtf8(owned->message) : qt_error_string());
        return good;
    };
    // Never detached here: a program that closes an unplugged port would be aborted if nobody
    // handled its ioctls.
    if (!m_sockets.contains(device.portName)) {
        if (!check(umockdev_testbed_attach_ioctl(testbed, qPrintable(nodeOf(device.portName)),
                                                 m_testbed->ioctls.get(), &failure)))
            return false;
        m_sockets.insert(device.portName, m_sockets.size() + 1);
    }
    m_testbed->setPulled(device.portName, false);
    return check(QFile::link(terminal, m_testbed->link(device.portName)))
        && check(umockdev_testbed_add_from_string(
            testbed, recordOf(device, m_sockets.value(device.portName)).constData(), &failure));
}

void SerialBus::remove(const QString &portName)
{
    m_testbed->setPulled(portName, true);
    // Remove the entry before its parent, or it would stay in the list of ports.
    const QString parent = QStringLiteral("/sys") + interfacePath(m_sockets.value(portName));
    for (const QString &path : { parent + QStringLiteral("/tty/") + portName, parent })
        umockdev_testbed_remove_device(m_testbed->object.get(), qPrintable(path));
    QFile::remove(m_testbed->link(portName));
}

} // namespace simulator
