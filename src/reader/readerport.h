// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QSerialPortInfo>
#include <QString>
#include <QVector>

/** What a serial port says of itself, as far as it tells a reader. */
struct PortTraits
{
    QString name;
    QString description;
    quint16 vendorId = 0; ///< of USB; 0 for none
};

[[nodiscard]] PortTraits traitsOf(const QSerialPortInfo &port);

/**
 * Name of the port that has the reader: by the maker's vendor id, else by the port's name, else by
 * its description, and among equals the first; empty when none looks like one.
 */
[[nodiscard]] QString chooseReaderPort(const QVector<PortTraits> &ports);
