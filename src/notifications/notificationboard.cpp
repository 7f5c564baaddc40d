// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "notifications/notificationboard.h"

#include <QtGlobal>

namespace {

NotificationBoard *s_board = nullptr;

} // namespace

NotificationBoard::NotificationBoard()
{
    s_board = this;
}

NotificationBoard::~NotificationBoard()
{
    if (s_board == this)
        s_board = nullptr;
}

NotificationBoard &NotificationBoard::instance()
{
    if (!s_board)
        qFatal("No notification board is installed");
    return *s_board;
}
