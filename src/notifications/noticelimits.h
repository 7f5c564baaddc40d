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
/** Maximum number of cards in progress; only a defective reader sends more. */
inline constexpr int maxCards = 50;

/** Maximum number of notices that last until somebody closes them. */
inline constexpr int maxLasting = 5;

} // namespace noticelimits
