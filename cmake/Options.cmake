# SPDX-FileCopyrightText: The Lumenboard developers
# SPDX-License-Identifier: GPL-3.0-or-later

# Language level, warnings and definitions of all our targets.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release)
endif()

find_program(LUMENBOARD_CCACHE ccache)
if(LUMENBOARD_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${LUMENBOARD_CCACHE}")
endif()

add_library(lumenboard_options INTERFACE)
target_compile_options(lumenboard_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
    "-fmacro-prefix-map=${CMAKE_SOURCE_DIR}/=") # no path of the build machine in the program
target_compile_definitions(lumenboard_options INTERFACE
    QT_MESSAGELOGCONTEXT # the log is limited per place in the code, in release builds as well
    QT_NO_KEYWORDS
    QT_NO_FOREACH
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_URL_CAST_FROM_STRING
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_DISABLE_DEPRECATED_BEFORE=0x050F00)

set(LUMENBOARD_SANITIZE "" CACHE STRING "Sanitizers, as given to -fsanitize")
if(LUMENBOARD_SANITIZE)
    add_compile_options(-fsanitize=${LUMENBOARD_SANITIZE} -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${LUMENBOARD_SANITIZE})
    target_sources(lumenboard_options INTERFACE "${CMAKE_SOURCE_DIR}/tests/sanitizers/defaults.cpp")
endif()
