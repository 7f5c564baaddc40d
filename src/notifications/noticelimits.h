// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QtGlobal>

/** What cards may ask of screen and services, whatever they are held up for. */
namespace noticelimits {

/** How long a notice stays, in ms, that something did not work for the time being. */
inline constexpr uint temporaryMs = 20 * 1000;
/** How long one stays that sends the person to the staff. */
inline constexpr uint staffMs = 60 * 1000;
/** Cards that are dealt with at a time; more come only from a reader gone mad. */
inline constexpr int mostCards = 50;

} // namespace noticelimits
