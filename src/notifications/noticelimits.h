// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QtGlobal>

/** Limits for notices; those about cards hold for attendance and presence. */
namespace noticelimits {

/** Time-out in ms of a notice about a temporary failure. */
inline constexpr uint temporaryMs = 20 * 1000;
/** Time-out in ms of a notice that sends the person to the staff. */
inline constexpr uint staffMs = 60 * 1000;
/** Time-out in ms of a notice about a record that waits on disk, or about one that is lost. */
constexpr uint afterFailureMs(bool isQueued)
{
    return isQueued ? temporaryMs : staffMs;
}
/** Maximum length of a text from a service: more does not fit and would block the screen. */
inline constexpr int maxTextLength = 2000;
/** Maximum number of cards in progress; only a defective reader sends more. */
inline constexpr int maxCards = 50;

/** Maximum number of notices that last until somebody closes them. */
inline constexpr int maxLasting = 5;

} // namespace noticelimits
