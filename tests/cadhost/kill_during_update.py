#!/usr/bin/python3
"""cadhost update killed with SIGKILL while it writes the drawing, twenty times
at random moments: each time the drawing is whole, either as it was or as
the update writes it, and nothing else is beside it, but for a kill that
falls between the new file's naming and its rename, which leaves the whole
new file under its hidden name; the next update takes that away, and such
kills must stay rare.

usage: kill_during_update.py CADHOST FIXTURE WORK [TRIES]

The drawing is the fixture with enough lines added that writing it takes a
while. The moment of the write is found by watching the process's open files:
the new file is open in the drawing's folder (unnamed, or under a hidden
name); the kill comes at a random moment between then and the time a whole
write takes.
"""
import os
import random
import re
import shutil
import signal
import subprocess
import sys
import time

LINES = 80000


def make_drawing(fixture, path):
    text = open(fixture, encoding="utf-8").read()
    next_handle = re.search(r"\$HANDSEED\n  5\n([0-9A-Fa-f]+)\n", text)
    first = int(next_handle.group(1), 16)
    lines = []
    for i in range(LINES):
        handle = "%X" % (first + i)
        lines.append("  0\nLINE\n  5\n%s\n330\n17\n100\nAcDbEntity\n  8\n0\n100\nAcDbLine\n"
                     " 10\n%d.0\n 20\n0.0\n 30\n0.0\n 11\n%d.0\n 21\n1.0\n 31\n0.0\n" % (handle, i, i))
    marker = "  2\nENTITIES\n"
    at = text.index(marker) + len(marker)
    text = text[:at] + "".join(lines) + text[at:]
    text = text.replace(next_handle.group(0), "$HANDSEED\n  5\n%X\n" % (first + LINES))
    with open(path, "w", encoding="utf-8") as out:
        out.write(text)


def writing(pid, folder, drawing):
    """Whether the process has a new file open in the folder."""
    try:
        for fd in os.listdir("/proc/%d/fd" % pid):
            try:
                target = os.readlink("/proc/%d/fd/%s" % (pid, fd))
            except OSError:
                continue
            if target.startswith(folder + "/") and target != drawing:
                return True
    except OSError:
        pass
    return False


def run(cadhost, drawing, settings, kill_after=None):
    """Runs the update; with kill_after, kills it that many seconds after it
    began writing. Answers (seconds spent writing, exit status)."""
    folder = os.path.realpath(os.path.dirname(drawing))
    drawing = os.path.realpath(drawing)
    process = subprocess.Popen([cadhost, "update", drawing, "--settings", settings],
                               stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
    began = None
    while process.poll() is None:
        if began is None and writing(process.pid, folder, drawing):
            began = time.monotonic()
        if began is not None and kill_after is not None and time.monotonic() - began >= kill_after:
            process.send_signal(signal.SIGKILL)
            break
        time.sleep(0.0005)
    process.wait()
    errors = process.stderr.read().decode()
    if began is None:
        sys.exit("the update was never seen writing (status %s): %s" % (process.returncode, errors))
    return time.monotonic() - began, process.returncode


def main():
    cadhost, fixture, work = sys.argv[1:4]
    tries = int(sys.argv[4]) if len(sys.argv) > 4 else 20
    shutil.rmtree(work, ignore_errors=True)
    folder = os.path.join(work, "drawings")
    os.makedirs(folder)
    settings = os.path.join(work, "settings")
    drawing = os.path.join(folder, "big.dxf")
    original = os.path.join(work, "original.dxf")
    make_drawing(fixture, original)
    shutil.copyfile(original, drawing)

    # A whole update, for the time a write takes and the file it writes.
    took, status = run(cadhost, drawing, settings)
    if status != 0:
        sys.exit("the update failed: status %d" % status)
    updated = open(drawing, "rb").read()
    whole = {open(original, "rb").read(), updated}
    print("a whole write takes %.2f s; %d bytes" % (took, len(updated)))

    named = 0
    killed = 0
    for attempt in range(tries):
        shutil.copyfile(original, drawing)
        moment = random.uniform(0, took * 0.9)
        _, status = run(cadhost, drawing, settings, kill_after=moment)
        killed += status == -signal.SIGKILL
        names = sorted(os.listdir(folder))
        extra = [name for name in names if name != "big.dxf"]
        intact = open(drawing, "rb").read() in whole
        print("try %2d: killed %.3f s into the write (status %d); beside the drawing: %s; drawing %s"
              % (attempt + 1, moment, status, extra or "nothing", "whole" if intact else "BROKEN"))
        if not intact:
            sys.exit("the drawing is not whole after a kill")
        # A kill between naming the new file and the rename leaves it, whole,
        # under its hidden name; the next update of the drawing takes it away.
        for name in extra:
            if open(os.path.join(folder, name), "rb").read() != updated:
                sys.exit("%s, left by the kill, is no whole new drawing" % name)
        named += bool(extra)
        _, status = run(cadhost, drawing, settings)
        left = [name for name in os.listdir(folder) if name != "big.dxf"]
        if status != 0 or left:
            sys.exit("the next update (status %d) left beside the drawing: %s" % (status, left or "nothing"))
    if named > tries // 4:
        sys.exit("%d of %d kills left the new file named beside the drawing" % (named, tries))
    # A test whose kills all came too late would prove nothing.
    if killed < tries // 4:
        sys.exit("only %d of %d kills came while the drawing was written" % (killed, tries))
    print("nothing was left behind in %d tries, %d of them killed while writing; %d left the whole new file"
          " named until the next update" % (tries, killed, named))


if __name__ == "__main__":
    main()
