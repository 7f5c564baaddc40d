// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/panelcheck.h"

#include "app/checkreport.h"

#include <QDir>
#include <QFile>

namespace {

QString contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString();
}

/** The folders of the devices with these names in a class of devices. */
QStringList devices(const QString &folder, const QString &names)
{
    QStringList paths;
    const auto found = QDir(folder).entryList({ names }, QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &name : found)
        paths.append(folder + QLatin1Char('/') + name);
    return paths;
}

QStringList connectedDisplays()
{
    QStringList found;
    const auto connectors = devices(QStringLiteral("/sys/class/drm"), QStringLiteral("card*-*"));
    for (const QString &path : connectors) {
        if (contentOf(path + QLatin1String("/status")) == QLatin1String("connected"))
            found.append(path.section(QLatin1Char('/'), -1).section(QLatin1Char('-'), 1));
    }
    return found;
}

/** What udev has marked as one; the window systems go by the same mark. */
QStringList touchPanels()
{
    QStringList found;
    const auto inputs = devices(QStringLiteral("/sys/class/input"), QStringLiteral("event*"));
    for (const QString &path : inputs) {
        const QString number = contentOf(path + QLatin1String("/dev"));
        if (contentOf(QLatin1String("/run/udev/data/c") + number)
                .contains(QLatin1String("ID_INPUT_TOUCHSCREEN=1")))
            found.append(contentOf(path + QLatin1String("/device/name")));
    }
    return found;
}

void add(CheckReport &report, const QString &what, const QStringList &found)
{
    using Verdict = CheckReport::Verdict;
    // No failure: the kiosk may be tried from afar, or with a mouse.
    report.add(found.isEmpty() ? Verdict::Notice : Verdict::Good, what,
               found.isEmpty() ? QStringLiteral("none found") : found.join(QLatin1String(", ")));
}

} // namespace

void localchecks::checkPanel(CheckReport &report)
{
    add(report, QStringLiteral("display"), connectedDisplays());
    add(report, QStringLiteral("touch panel"), touchPanels());
}
