// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

/**
 * Linked into each executable of a build with sanitizers, which asks these functions at its start.
 * Options in the environment come on top.
 */

// NOLINTBEGIN(bugprone-reserved-identifier)

extern "C" const char *__asan_default_options()
{
    return
        // The testbed of the card reader and a test of ours preload libraries, which then come
        // before the sanitizer's.
        "verify_asan_link_order=0:"
        // A terminated thread leaves its frames without clearing the marks of their variables on
        // the stack. With this option the variables are not on the stack.
        "detect_stack_use_after_return=1";
}

/** What Qt and GLib never free. Stacks end at Qt's innermost frame: Qt has no frame pointers. */
extern "C" const char *__lsan_default_suppressions()
{
    return
        // The offscreen platform keeps its screen and the objects of it.
        "leak:libqoffscreen.so\n"
        "leak:QScreen::QScreen\n"
        "leak:handleScreenAdded\n"
        "leak:QObject::QObject\n"
        "leak:QObjectPrivate::addConnection\n"
        "leak:ExternalRefCountData\n"
        // The event source of a terminated thread.
        "leak:QEventDispatcherGlibPrivate::QEventDispatcherGlibPrivate\n";
}

// NOLINTEND(bugprone-reserved-identifier)
