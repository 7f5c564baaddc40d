// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QSerialPortInfo>
#include <QString>
#include <QVector>

/** The properties of a serial port by which a reader is recognised. */
struct PortTraits
{
    QString name;
    QString description;
    quint16 vendorId = 0; ///< of the USB device; 0 if there is none
};

[[nodiscard]] PortTraits traitsOf(const QSerialPortInfo &port);

/**
 * Name of the port with the reader: by the maker's vendor id, else by the port's name, else by its
 * description; the first among equals. Empty if no port looks like a reader.
 */
[[nodiscard]] QString chooseReaderPort(const QVector<PortTraits> &ports);
