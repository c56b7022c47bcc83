#!/usr/bin/python3
"""End to end: a pick through the loupe, a copy, the clipboard and history.json.

Starts the program with a fresh data folder on a screen of one known color,
presses "Pick Color" and "Copy HEX" (found through AT-SPI) with real pointer
input, picks a pixel in the loupe, reads the X clipboard and history.json,
then drags the window by its background. Needs an X server and a session bus
of its own, without a desktop portal. Usage: pick-end-to-end.py <tintwright>
"""
import json
import os
import shutil
import subprocess
import sys
import tempfile
import time

sys.dont_write_bytecode = True  # nothing written into the source tree
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support"))
from atspi_session import click, extents, find_button, launch, log, wait_for, window_ids  # noqa: E402

ROOT_COLOR = "#3366CC"


def run(*args):
    return subprocess.run(list(args), capture_output=True, text=True)


def read_history(path):
    try:
        with open(path) as f:
            return json.load(f)
    except (OSError, ValueError):
        return None


def main():
    app_path = sys.argv[1]
    scratch = tempfile.mkdtemp(prefix="tintwright-e2e-")
    history_path = os.path.join(scratch, "data", "Tintwright", "history.json")

    run("xsetroot", "-solid", ROOT_COLOR.lower())
    # Something to copy over, so a clipboard that was never written shows.
    subprocess.run(["xclip", "-selection", "clipboard"], input="before", text=True)
    process, app = launch(app_path, scratch)
    failures = []
    try:
        if app is None:
            log("FAIL: the program never appeared on the accessibility bus")
            return 1

        pick = find_button(app, "Pick Color")
        if pick is None:
            log("FAIL: no \"Pick Color\" button")
            return 1
        if os.path.exists(history_path):
            failures.append("history.json exists before any pick")
        click(extents(pick))

        # The loupe covers the screen; pick a pixel far from the window.
        time.sleep(1.5)
        run("xdotool", "mousemove", "--sync", "700", "500")
        time.sleep(0.3)
        run("xdotool", "mousemove", "--sync", "701", "501")
        time.sleep(0.3)
        run("xdotool", "click", "1")

        history = wait_for(lambda: read_history(history_path), 10)
        if not history:
            failures.append("no history.json after the pick")
        else:
            first = history[0]
            if len(history) != 1:
                failures.append("history holds %d entries, expected 1" % len(history))
            rgb = tuple(round(first[k] * 255) for k in ("red", "green", "blue"))
            if rgb != (0x33, 0x66, 0xCC):
                failures.append("picked %r, expected (51, 102, 204)" % (rgb,))
            if first.get("name") != "Picked Color":
                failures.append("history entry named %r" % first.get("name"))

        copy = find_button(app, "Copy HEX")
        if copy is None:
            failures.append("no \"Copy HEX\" button")
        else:
            click(extents(copy))
            clipboard = wait_for(lambda: run("xclip", "-o", "-selection", "clipboard").stdout == ROOT_COLOR, 5)
            if not clipboard:
                failures.append("clipboard holds %r, expected %r"
                                % (run("xclip", "-o", "-selection", "clipboard").stdout, ROOT_COLOR))

        # Dragged by its background: a press on the Picker tab's margin.
        wid = window_ids()
        if not wid:
            failures.append("no window named Tintwright")
        else:
            def origin():
                out = run("xdotool", "getwindowgeometry", wid[0]).stdout
                pos = [l for l in out.splitlines() if "Position:" in l][0].split()[1]
                return tuple(int(v) for v in pos.split(","))
            x0, y0 = origin()
            start = (x0 + 5, y0 + 300)
            run("xdotool", "mousemove", "--sync", str(start[0]), str(start[1]))
            run("xdotool", "mousedown", "1")
            for step in range(1, 11):
                run("xdotool", "mousemove", "--sync", str(start[0] + 8 * step), str(start[1] + 5 * step))
                time.sleep(0.02)
            run("xdotool", "mouseup", "1")
            moved = wait_for(lambda: origin() == (x0 + 80, y0 + 50), 3)
            if not moved:
                failures.append("dragging the background moved the window from %r to %r, expected %r"
                                % ((x0, y0), origin(), (x0 + 80, y0 + 50)))

        if process.poll() is not None:
            failures.append("the program exited (status %s)" % process.returncode)
    finally:
        process.kill()
        process.wait()
        shutil.rmtree(scratch, ignore_errors=True)

    for f in failures:
        log("FAIL:", f)
    if not failures:
        log("PASS: picked %s through the loupe, copied it, history.json written, window dragged" % ROOT_COLOR)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
