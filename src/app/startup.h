// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QTranslator>

/**
 * The steps of the start before the first window, in the order in which main() takes them. Tests
 * and benchmarks take those that they need.
 */

/** Environment, umask, style and attributes; before the application object is made. */
void prepareEnvironment();

/** Names the application; before the first access to the settings. */
void nameApplication();

/** The interface is German, whatever the system's locale. */
void setGermanLocale();

/** Translations of Qt and of the program, in force as long as this object lives. */
class Translations
{
public:
    /** Loads and installs for the default locale; without them the program runs in English. */
    void install();

private:
    QTranslator m_qt;
    QTranslator m_program;
};

/** Loads the fonts of the asset tree; faces that this build does not carry are passed over. */
void loadFonts();

/** Registers every type that travels between threads or through properties. */
void registerMetaTypes();

/** Registers the module "Lumenboard" 1.0; before the first QML engine is made. */
void registerQmlTypes();
