#!/usr/bin/python3
"""`tintwright --pick` end to end on an X screen of one known color: alone
it picks through its own loupe, prints, exits 0 and the clipboard keeps the
text after it exited; Escape exits 1, recording nothing; a window launched
meanwhile opens after the pick; with a window running, the command picks
through it and the window's history gains the pick. Needs DISPLAY and a
session bus without a portal. Usage: pick-command.py <tintwright> <tests/ui>
"""
import os
import runpy
import shutil
import subprocess
import sys
import tempfile
import time

e2e = runpy.run_path(os.path.join(sys.argv[2], "pick-end-to-end.py"))
run, wait_for, read_history = e2e["run"], e2e["wait_for"], e2e["read_history"]

failures = []


def check(condition, message):
    if not condition:
        failures.append(message)


def windows():
    return run("xdotool", "search", "--onlyvisible", "--name", "^Tintwright$").stdout.split()


def start_pick(app, env, *options):
    process = subprocess.Popen([app, "--pick", *options], env=env, stdout=subprocess.PIPE,
                               stderr=subprocess.PIPE, text=True)
    time.sleep(1.5)  # the loupe comes up over the whole screen
    return process


def click_far_from_window():
    for x in ("700", "701"):
        run("xdotool", "mousemove", "--sync", x, "500")
        time.sleep(0.2)
    run("xdotool", "click", "1")


def finish(process, what):
    try:
        out, err = process.communicate(timeout=10)
    except subprocess.TimeoutExpired:
        process.kill()
        out, err = process.communicate()
        failures.append("%s: the command did not end, or its output stayed open" % what)
    return process.returncode, out, err


def main():
    app = sys.argv[1]
    scratch = tempfile.mkdtemp(prefix="tintwright-pick-")
    data_home = os.path.join(scratch, "data")
    runtime = os.path.join(scratch, "run")
    os.makedirs(data_home)
    os.makedirs(runtime, mode=0o700)
    history_path = os.path.join(data_home, "Tintwright", "history.json")
    env = dict(os.environ, QT_QPA_PLATFORM="xcb", XDG_DATA_HOME=data_home, XDG_RUNTIME_DIR=runtime,
               LC_ALL="C.UTF-8")
    try:
        run("xsetroot", "-solid", "#3366cc")
        process = start_pick(app, env, "--format", "rgb")
        click_far_from_window()
        code, out, _ = finish(process, "pick")
        check((code, out) == (0, "rgb(51, 102, 204)\n"), "pick: exit %s, printed %r" % (code, out))
        clipboard = run("xclip", "-o", "-selection", "clipboard").stdout
        check(clipboard == "rgb(51, 102, 204)", "clipboard after the command exited: %r" % clipboard)
        check(len(read_history(history_path) or []) == 1, "the pick is not in the history")

        process = start_pick(app, env, "--no-copy")
        # A window launched meanwhile waits for the pick to end.
        launch = subprocess.run([app], env=env, capture_output=True, timeout=10)
        check(launch.returncode == 0, "a launch during the pick exited %s" % launch.returncode)
        check(not windows(), "a window appeared during the command's pick")
        run("xdotool", "key", "Escape")
        code, out, _ = finish(process, "cancel")
        check((code, out) == (1, ""), "cancel: exit %s, printed %r" % (code, out))
        check(len(read_history(history_path) or []) == 1, "a cancelled command changed the history")
        check(wait_for(windows, 10), "the window launched during the pick never opened")
        check(run("xclip", "-o", "-selection", "clipboard").stdout == "rgb(51, 102, 204)",
              "--no-copy changed the clipboard")

        # The window now runs: the command picks through it.
        run("xsetroot", "-solid", "#cc3366")
        process = start_pick(app, env)
        click_far_from_window()
        code, out, _ = finish(process, "pick through the window")
        check((code, out) == (0, "#CC3366\n"), "pick through the window: exit %s, printed %r" % (code, out))
        history = wait_for(lambda: len(read_history(history_path) or []) == 2 and read_history(history_path), 5)
        check(history and round(history[0]["red"] * 255) == 0xCC,
              "the window's history did not gain the pick: %r" % (history,))
        clipboard = run("xclip", "-o", "-selection", "clipboard").stdout
        check(clipboard == "#CC3366", "clipboard after a pick through the window: %r" % clipboard)
    finally:
        for wid in windows():
            pid = run("xdotool", "getwindowpid", wid).stdout.strip()
            if pid:
                run("kill", pid)
        shutil.rmtree(scratch, ignore_errors=True)

    for f in failures:
        print("FAIL:", f, flush=True)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
