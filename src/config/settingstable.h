// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QVariant>
#include <QVector>

#include <limits>
#include <optional>

/** One row of the table of settings: the only place for a default, a bound or a remote key. */
struct Setting
{
    enum class Type {
        Flag,
        Number, ///< clamped to its bounds
        Choice, ///< one of the numbers within the bounds, an enumeration of Config
        Text,
        TranslatedText, ///< its default is in the language of the interface
        Secret, ///< a text that is never shown
        Url,
        Path,
        Date, ///< its default is today
    };

    /** Place of the key in the document of the configuration service. */
    enum class Remote { No, TopLevel, Settings };

    QString key;
    Type type;
    Remote remote;
    QVariant fixedDefault; ///< use defaultValue(), which knows language and day
    int minimum = std::numeric_limits<int>::min();
    int maximum = std::numeric_limits<int>::max();
    int ifOutOfBounds = 0; ///< replaces a number out of bounds; choices only

    [[nodiscard]] QVariant defaultValue() const;
    /** True if a value that is no whole number gives the default. */
    [[nodiscard]] bool isNumber() const { return type == Type::Number || type == Type::Choice; }
};

/** All settings, in the order in which a document from the configuration service is applied. */
[[nodiscard]] const QVector<Setting> &settingsTable();

/** The row of @p key, one of the names in keys.h. Callable from any thread. */
[[nodiscard]] const Setting &settingOf(const QString &key);

/** A stored value as a number; nothing if it is not a whole number. */
[[nodiscard]] std::optional<qint64> wholeNumber(const QVariant &stored);
