# SPDX-FileCopyrightText: The Lumenboard developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""A process under test: its input and its output."""

import contextlib
import os
import re
import signal
import subprocess
import threading
import time


def wait_until(is_reached, seconds=60):
    """Looks until the condition holds; false if it does not in time. A picture has no signal to wait for."""
    end = time.monotonic() + seconds
    while not is_reached():
        if time.monotonic() > end:
            return False
        time.sleep(0.1)
    return True


class Program:
    """Runs in its own process group. end() kills the group if the program does not end."""

    def __init__(self, add_cleanup, *command, **variables):
        self.lines = []
        self.changed = threading.Condition()
        self.process = subprocess.Popen(
            command, text=True, errors="replace", bufsize=1, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT, env={**os.environ, **variables}, start_new_session=True)
        self.listener = threading.Thread(target=self.listen)
        self.listener.start()
        add_cleanup(self.close)

    def listen(self):
        for line in self.process.stdout:
            with self.changed:
                self.lines.append(line)
                self.changed.notify_all()

    def said(self, text):
        """Number of lines with the text."""
        return len(self.find(re.escape(text)))

    def command(self, text):
        print(text, file=self.process.stdin, flush=True)

    def find(self, pattern, since=0):
        """Matches in the lines from number @since on."""
        return [match for line in self.lines[since:] if (match := re.search(pattern, line))]

    def wait_for(self, pattern, count=1, since=0, seconds=60):
        with self.changed:
            if not self.changed.wait_for(lambda: len(self.find(pattern, since)) >= count, seconds):
                raise AssertionError(f"waited in vain for {count} {pattern!r} in\n{self.output(since)}")
            return self.find(pattern, since)

    def output(self, since=0):
        return "".join(self.lines[since:])

    def wait(self, seconds=20):
        """The exit status, once all output has been read."""
        status = self.process.wait(timeout=seconds)
        self.listener.join()
        return status

    def end(self):
        """Asks the program to end and returns its status."""
        self.process.terminate()
        with contextlib.suppress(subprocess.TimeoutExpired):
            self.process.wait(timeout=3)
        self.close()
        return self.process.returncode

    def close(self):
        if self.process.stdout.closed:
            return
        with contextlib.suppress(ProcessLookupError):
            os.killpg(self.process.pid, signal.SIGKILL)  # its children as well
        self.wait()
        self.process.stdout.close()
        with contextlib.suppress(BrokenPipeError):
            self.process.stdin.close()
