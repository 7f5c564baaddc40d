// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/localchecks.h"

#include "app/checkreport.h"
#include "base/instancelock.h"
#include "config/config.h"
#include "config/effectivesettings.h"
#include "config/scratchsettings.h"
#include "config/secrets.h"
#include "config/services.h"
#include "reader/readerport.h"
#include "spool/spool.h"

#include <QFile>
#include <QFileInfo>
#include <QSslSocket>

#include <algorithm>

using Verdict = CheckReport::Verdict;

namespace {

QString describe(const QSerialPortInfo &port)
{
    return QStringLiteral("        port %1 \"%2\", vendor %3")
        .arg(port.portName(), port.description(), QString::number(port.vendorIdentifier(), 16));
}

bool isReaderNeeded()
{
    const auto all = services(*Config::instance());
    return std::any_of(all.begin(), all.end(), [](const Service &service) {
        return service.kind == Service::Kind::Records && service.isUsed;
    });
}

} // namespace

void localchecks::checkSettings(CheckReport &report, const ScratchSettings &settings)
{
    for (const EffectiveSetting &setting : effectiveSettings(*Config::instance())) {
        report.print(
            QStringLiteral("%1 = %2  [%3]").arg(setting.key, setting.shown, setting.origin));
        report.addProblem(setting);
    }
    const QStringList behind = settings.fallbackFiles();
    for (const QString &file : behind)
        report.print(QStringLiteral("        behind the user's file: ") + file);

    for (const QString &file : secrets::readableByAll(behind))
        report.add(Verdict::Notice, QStringLiteral("settings ") + file,
                   QStringLiteral("hold a secret that everybody can read"));

    const QString what = QStringLiteral("settings ") + settings.fileName();
    if (!settings.problem().isEmpty())
        report.add(Verdict::Bad, what, settings.problem());
    else if (QFile::exists(settings.fileName()))
        report.add(Verdict::Good, what, QStringLiteral("read"));
    else
        report.add(Verdict::Good, what, QStringLiteral("do not exist yet"));
}

void localchecks::checkTls(CheckReport &report)
{
    if (QSslSocket::supportsSsl())
        report.add(Verdict::Good, QStringLiteral("TLS"), QSslSocket::sslLibraryVersionString());
    else
        report.add(Verdict::Bad, QStringLiteral("TLS"), QStringLiteral("not available"));
}

void localchecks::checkInstance(CheckReport &report)
{
    const auto process = InstanceLock::holder();
    report.add(Verdict::Good, QStringLiteral("kiosk"),
               process
                   ? QStringLiteral("runs as process %1, a second one reads no cards").arg(*process)
                   : QStringLiteral("none runs"));
}

void localchecks::checkReader(CheckReport &report)
{
    QVector<PortTraits> ports;
    const auto available = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo &port : available) {
        ports.append(traitsOf(port));
        report.print(describe(port));
    }
    const QString chosen = chooseReaderPort(ports);
    if (!chosen.isEmpty())
        report.add(Verdict::Good, QStringLiteral("reader"), chosen);
    else
        report.add(isReaderNeeded() ? Verdict::Bad : Verdict::Notice, QStringLiteral("reader"),
                   QStringLiteral("none of %1 serial ports looks like one").arg(ports.size()));
}

void localchecks::checkSpool(CheckReport &report, const QString &name, const Spool &spool)
{
    const QString folder = spool.folder();
    const QString what = name + QLatin1String(" spool ") + folder;
    QFileInfo nearest(folder);
    while (!nearest.exists() && !nearest.isRoot())
        nearest.setFile(nearest.path());
    if (!nearest.isDir() || !nearest.isWritable())
        report.add(Verdict::Bad, what,
                   QStringLiteral("can not be written to (%1)").arg(nearest.filePath()));
    else if (!spool.canBeListed())
        report.add(Verdict::Bad, what, QStringLiteral("can not be listed"));
    else
        report.add(Verdict::Good, what, QStringLiteral("%1 files wait").arg(spool.count()));
}
