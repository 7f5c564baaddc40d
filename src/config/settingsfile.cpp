// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/settingsfile.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>

#include <algorithm>

QString settingsFileName(QSettings::Scope scope, const QString &application)
{
    return QSettings(scope, QCoreApplication::organizationName(), application).fileName();
}

QStringList fallbackSettingsFiles()
{
    QStringList files { settingsFileName(QSettings::UserScope),
                        settingsFileName(QSettings::SystemScope,
                                         QCoreApplication::applicationName()),
                        settingsFileName(QSettings::SystemScope) };
    const auto isMissing = [](const QString &file) { return !QFile::exists(file); };
    files.erase(std::remove_if(files.begin(), files.end(), isMissing), files.end());
    return files;
}

void protectSettingsFile(const QString &path)
{
    constexpr QFile::Permissions ownerOnly
        = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;

    const QFileInfo file(path);
    const QString folder = file.absolutePath();
    if (!QFileInfo::exists(folder)) {
        if (!QDir().mkpath(folder)) {
            qCritical() << "Failed to create settings folder" << folder;
            return;
        }
        if (!QFile::setPermissions(folder, ownerOnly | QFile::ExeOwner | QFile::ExeUser))
            qWarning() << "Failed to restrict settings folder" << folder;
    }

    if (!file.isFile() || (file.permissions() & ~ownerOnly) == 0)
        return;
    if (QFile::setPermissions(path, ownerOnly))
        qInfo() << "Settings file was open to others, restricted to its owner:" << path;
    else
        qWarning() << "Settings file is open to others and can not be restricted:" << path;
}

namespace {

/** What the loader of settings makes of an escape; @p from stands after the backslash and moves on.
 */
QByteArray readEscape(const QByteArray &text, int &from)
{
    static const QByteArray letters("abfnrtv\"?'\\");
    static const QByteArray meanings("\a\b\f\n\r\t\v\"?'\\");

    const char first = from < text.size() ? text.at(from++) : '\0';
    if (const int letter = letters.indexOf(first); letter >= 0)
        return meanings.mid(letter, 1);
    const bool isHex = first == 'x';
    if (!isHex && (first < '0' || first > '7'))
        return {}; // among them the end of a line that goes on
    const QByteArray digits = isHex ? "0123456789abcdefABCDEF" : "01234567";
    const int start = isHex ? from : from - 1;
    while (from < text.size() && digits.contains(text.at(from)))
        ++from;
    // Only the last digits count, as for a 16-bit character; more than one byte is no type.
    bool ok = false;
    const uint value = text.mid(start, from - start).right(4).toUInt(&ok, isHex ? 16 : 8);
    return ok && value < 0x100 ? QByteArray(1, static_cast<char>(value))
                               : QByteArrayLiteral("\xff");
}

/** @p line as the loader sees its value: without quotes and escapes. */
QByteArray unescaped(const QByteArray &line)
{
    QByteArray text;
    for (int at = 0; at < line.size();) {
        const char c = line.at(at++);
        if (c == '\\')
            text += readEscape(line, at);
        else if (c != '"')
            text += c;
    }
    return text;
}

/** Takes the next line off @p file, with those that a backslash at its end adds. */
QByteArray readLogicalLine(QIODevice &file)
{
    QByteArray line;
    bool isEscaped = false;
    for (char c = 0; file.getChar(&c);) {
        line += c;
        if ((c == '\n' || c == '\r') && !isEscaped)
            break;
        isEscaped = c == '\\' && !isEscaped;
    }
    return line;
}

/**
 * True if the line has a serialised value other than a number, a date or a time. Only these have a
 * fixed size; the others hold lengths and types of their own, for which Qt reserves gigabytes or
 * calls loaders that trust them.
 */
bool isDamaged(const QByteArray &line)
{
    static const QRegularExpression damaged(
        QStringLiteral(R"((Variant|DateTime)\((?!\x00\x00\x00[\x00-\x06\x0e-\x10]))"));
    const QByteArray text = unescaped(line);
    // With the size: a text may hold NUL.
    return damaged.match(QLatin1String(text.constData(), text.size())).hasMatch();
}

} // namespace

bool removeDamagedValues(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    QByteArray kept;
    int removed = 0;
    while (!file.atEnd()) {
        const QByteArray line = readLogicalLine(file);
        if (isDamaged(line))
            ++removed;
        else
            kept += line;
    }
    if (removed == 0)
        return false;
    qCritical() << "Removing" << removed << "damaged lines from settings file" << path;
    QSaveFile repaired(path);
    if (repaired.open(QIODevice::WriteOnly) && repaired.write(kept) == kept.size()
        && repaired.commit())
        return true;
    qCritical() << "Failed to repair settings file" << path << repaired.errorString();
    return false;
}
