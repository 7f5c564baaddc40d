// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <chrono>

/** @p time for a person, in two units at most: "40 s", "3 min", "2 h 5 min", "4 d 3 h". */
[[nodiscard]] QString duration(std::chrono::seconds time);

/** @p number with @p noun, which gets an "s" unless the number is 1. */
[[nodiscard]] QString count(int number, const char *noun);
