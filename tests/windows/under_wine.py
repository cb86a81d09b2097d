"""Runs a Windows program under Wine as the tests run a native one.

Usage: under_wine.py PREFIX PROGRAM ARGUMENT...

Absolute paths among the arguments are given their drive. What comes through pipes is as it were from a native program:
line breaks, paths without a drive, no messages of Wine itself. A signal that asks for the end is passed on as Ctrl-C,
which is what Windows has, and the end of this process is that of the program. The user's settings, a key of the
registry, come from the folder that the environment names for them, and go there.
"""

import ctypes
import os
import re
import signal
import stat
import subprocess
import sys
import threading
import time

WINE = "/usr/lib/wine/wine64"
ABSOLUTE = re.compile(r"^([-/][A-Za-z]+:)?(/[^/:].*)$", re.DOTALL)
# The lower byte of the code with which the system ends a program.
ENDED_BY_CTRL_C = 0x3A
OF_WINE = re.compile(rb"^(wine(64|server64)?: |[0-9a-f]{4}:(err|fixme|warn):)")


def with_drive(argument):
    """Paths only: a switch may begin with a slash too, but nothing lies where it would lead."""
    match = ABSOLUTE.match(argument)
    if match and "/" in match[2][1:] and os.path.isdir("/" + match[2].split("/")[1]):
        return (match[1] or "") + "Z:" + match[2]
    return argument


def is_pipe(handle):
    try:
        return stat.S_ISFIFO(os.fstat(handle).st_mode)
    except OSError:
        return False


def copy(source, target):
    for line in source:
        if not OF_WINE.match(line):
            os.set_blocking(target, True)
            os.write(target, line.replace(b"\r\n", b"\n").replace(b"Z:/", b"/"))


def die_with_parent():
    ctypes.CDLL(None).prctl(1, signal.SIGKILL)


def registry(*words):
    return subprocess.run([WINE, "reg", *words], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode


class Settings:
    KEY = r"HKCU\Software\Tarnhill Systems\Velmora 6\Console"

    def __init__(self):
        folder = os.environ.get("XDG_CONFIG_HOME")
        self.path = os.path.join(folder, "velmora", "preferences.xml") if folder else None

    def load(self):
        if self.path:
            registry("delete", self.KEY, "/f")
            if os.path.exists(self.path):
                registry("import", "Z:" + self.path)

    def store(self):
        if self.path and registry("query", self.KEY) == 0:
            try:
                os.makedirs(os.path.dirname(self.path), exist_ok=True)
            except OSError:
                return
            registry("export", self.KEY, "Z:" + self.path, "/y")


def main():
    os.environ.update(WINEPREFIX=sys.argv[1], WINEDEBUG="-all", LC_ALL="C.UTF-8",
                      WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d;winedbg.exe=d")
    settings = Settings()
    settings.load()
    streams = [subprocess.PIPE if is_pipe(handle) else None for handle in (1, 2)]
    program = subprocess.Popen([WINE, sys.argv[2], *map(with_drive, sys.argv[3:])], stdout=streams[0],
                               stderr=streams[1], preexec_fn=die_with_parent)
    ended_by = []

    def end(number, _):
        ended_by.append(number)
        program.send_signal(signal.SIGINT)

    for number in (signal.SIGHUP, signal.SIGINT, signal.SIGTERM):
        signal.signal(number, end)
    copies = [threading.Thread(target=copy, args=(source or (), target))
              for source, target in ((program.stdout, 1), (program.stderr, 2))]
    for each in copies:
        each.start()
    code = program.wait()
    for each in copies:
        each.join()
    settings.store()
    if ended_by:
        # Wine's server closes what the program had open, and removes what is to go then, a moment later.
        time.sleep(0.1)
    if ended_by and code == ENDED_BY_CTRL_C:
        code = -ended_by[0]
    if code < 0:
        signal.signal(-code, signal.SIG_DFL)
        os.kill(os.getpid(), -code)
    sys.exit(code)


main()
