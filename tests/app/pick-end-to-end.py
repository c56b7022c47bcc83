#!/usr/bin/python3
"""Picking end to end on an X screen of one known color, with real pointer
input: `tintwright --pick` alone (it prints, exits 0, records the pick, and
the clipboard keeps the text after it exited); cancelled with Escape (exit
1, nothing recorded) while a window launched meanwhile waits for the pick to
end; then through that window, whose history gains the pick; and the
window dragged by its background. Needs DISPLAY and a session bus without a
portal. Usage: pick-end-to-end.py <tintwright>
"""
import json
import os
import shutil
import subprocess
import sys
import tempfile
import time

failures = []


def check(condition, message):
    if not condition:
        failures.append(message)


def run(*args):
    return subprocess.run(list(args), capture_output=True, text=True)


def wait_for(predicate, timeout):
    deadline = time.time() + timeout
    while time.time() < deadline and not predicate():
        time.sleep(0.1)
    return predicate()


def clipboard():
    return run("xclip", "-o", "-selection", "clipboard").stdout


def windows():
    return run("xdotool", "search", "--onlyvisible", "--name", "^Tintwright$").stdout.split()


def read_history(path):
    try:
        return json.load(open(path))
    except (OSError, ValueError):
        return []


def click_far_from_window():
    time.sleep(1.5)  # the loupe comes up over the whole screen
    for x in ("700", "701"):
        run("xdotool", "mousemove", "--sync", x, "500")
        time.sleep(0.2)
    run("xdotool", "click", "1")


def command(app, env, *options, during=None):
    process = subprocess.Popen([app, "--pick", *options], env=env, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                               text=True)
    (during or click_far_from_window)()
    try:
        out, _ = process.communicate(timeout=10)
    except subprocess.TimeoutExpired:
        process.kill()
        out, _ = process.communicate()
        failures.append("the command did not end, or its output stayed open")
    return process.returncode, out


def drag_window():
    """A press on the Picker tab's margin, dragged: the window follows."""
    wid = windows()[0]

    def origin():
        out = run("xdotool", "getwindowgeometry", wid).stdout
        return tuple(int(v) for v in out.split("Position: ")[1].split()[0].split(","))
    x0, y0 = origin()
    run("xdotool", "mousemove", "--sync", str(x0 + 5), str(y0 + 300), "mousedown", "1")
    for step in range(1, 11):
        run("xdotool", "mousemove", "--sync", str(x0 + 5 + 8 * step), str(y0 + 300 + 5 * step))
        time.sleep(0.02)
    run("xdotool", "mouseup", "1")
    check(wait_for(lambda: origin() == (x0 + 80, y0 + 50), 3), "the drag moved the window to %r" % (origin(),))


def main():
    app = sys.argv[1]
    scratch = tempfile.mkdtemp(prefix="tintwright-pick-")
    history_path = os.path.join(scratch, "data", "Tintwright", "history.json")
    env = dict(os.environ, QT_QPA_PLATFORM="xcb", XDG_DATA_HOME=os.path.join(scratch, "data"), XDG_STATE_HOME=os.path.join(scratch, "state"),
               XDG_RUNTIME_DIR=os.path.join(scratch, "run"), LC_ALL="C.UTF-8")
    os.makedirs(env["XDG_RUNTIME_DIR"], mode=0o700)
    try:
        # Alone, the command picks itself, and the copy outlives it.
        run("xsetroot", "-solid", "#33cc66")
        code, out = command(app, env, "--format", "rgb")
        check((code, out) == (0, "rgb(51, 204, 102)\n"), "pick: exit %s, printed %r" % (code, out))
        check(clipboard() == "rgb(51, 204, 102)", "clipboard after the command exited: %r" % clipboard())
        check(len(read_history(history_path)) == 1, "the command's pick is not in the history")

        def launch_then_escape():
            time.sleep(1.5)
            launched = subprocess.run([app], env=env, capture_output=True, timeout=10)
            check(launched.returncode == 0 and not windows(), "a window opened during the command's pick")
            run("xdotool", "key", "Escape")
        code, out = command(app, env, "--no-copy", during=launch_then_escape)
        check((code, out) == (1, ""), "cancel: exit %s, printed %r" % (code, out))
        check(len(read_history(history_path)) == 1, "a cancelled command changed the history")
        check(wait_for(windows, 10), "the window launched during the pick never opened")
        check(clipboard() == "rgb(51, 204, 102)", "--no-copy changed the clipboard")

        # With the window running, the command picks through it.
        run("xsetroot", "-solid", "#cc3366")
        time.sleep(0.5)
        code, out = command(app, env)
        check((code, out) == (0, "#CC3366\n"), "pick through the window: exit %s, printed %r" % (code, out))
        history = wait_for(lambda: len(read_history(history_path)) == 2 and read_history(history_path), 5)
        check(history and round(history[0]["red"] * 255) == 0xCC, "the window's history: %r" % (history,))
        check(clipboard() == "#CC3366", "clipboard after a pick through the window: %r" % clipboard())
        drag_window()
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
