# SPDX-FileCopyrightText: The Lumenboard developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Turns the tables of a Markdown page into lists of definitions: a terminal is too narrow for tables.
# The title gives way to the headings of the manual.
/^# Configuration|^\| ---/ { next }
/^\|/ {
    if (!in_table++) # the head of the table
        next
    cells = split(substr($0, 3, length($0) - 4), cell, / \| /)
    print cell[1]
    print cells == 4 ? ": " cell[2] " (default " cell[3] "): " cell[4] "\n" : ": " cell[2] "\n"
    next
}
{ in_table = 0; print }
