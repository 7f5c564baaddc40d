// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QTranslator>

/**
 * The steps before the first window, in the order of main(). Tests and benchmarks call the steps
 * that they need.
 */

/** Sets environment, umask, style and attributes. Call before creating the application object. */
void prepareEnvironment();

/** Names the application. Call before the first access to the settings. */
void nameApplication();

/** Makes the interface German, whatever the system's locale is. */
void setGermanLocale();

/** Qt's own translations but for its errors: these reach only the log, which is English. */
class InterfaceTranslator : public QTranslator
{
    Q_OBJECT

public:
    using QTranslator::QTranslator;
    [[nodiscard]] QString translate(const char *context, const char *source, const char *comment,
                                    int n) const override;
};

/** The translations of Qt and of the program. They apply while this object exists. */
class Translations
{
public:
    /** Loads them for the default locale. Without them the program runs in English. */
    void install();

private:
    InterfaceTranslator m_qt;
    QTranslator m_program;
};

/** Loads the fonts of the asset tree. Skips faces that this build does not contain. */
void loadFonts();

/** Registers every type that travels between threads or through properties. */
void registerMetaTypes();

/** Registers the module "Lumenboard" 1.0. Call before creating the first QML engine. */
void registerQmlTypes();
