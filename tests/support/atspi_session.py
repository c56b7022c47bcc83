"""What the AT-SPI tests share: finding the program on the accessibility bus,
its controls by accessible name, and real pointer clicks through xdotool."""
import os
import subprocess
import time

import pyatspi


def log(*args):
    print(*args, flush=True)


def state(acc, s):
    try:
        return acc.getState().contains(s)
    except Exception:
        return False


def shown(acc):
    return state(acc, pyatspi.STATE_SHOWING) and state(acc, pyatspi.STATE_VISIBLE)


def walk(acc, depth=0):
    """Yields (accessible, depth) for every showing node below acc."""
    try:
        count = acc.childCount
    except Exception:
        return
    for i in range(count):
        try:
            child = acc.getChildAtIndex(i)
        except Exception:
            continue
        if child is None or not shown(child):
            continue
        yield child, depth
        yield from walk(child, depth + 1)


def extents(acc):
    try:
        e = acc.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        return (e.x, e.y, e.width, e.height)
    except Exception:
        return None


def find_app(pid, timeout=45):
    desktop = pyatspi.Registry.getDesktop(0)
    deadline = time.time() + timeout
    while time.time() < deadline:
        for i in range(desktop.childCount):
            app = desktop.getChildAtIndex(i)
            try:
                if app is not None and app.get_process_id() == pid and app.childCount > 0:
                    return app
            except Exception:
                pass
        time.sleep(0.2)
    return None


def click(box):
    """A real click in the middle of the box, then the pointer out of the way."""
    x, y, w, h = box
    subprocess.run(["xdotool", "mousemove", "--sync", str(x + w // 2), str(y + h // 2), "click", "1"], check=True)
    subprocess.run(["xdotool", "mousemove", "1000", "700"], check=True)
    time.sleep(0.5)


def find_button(app, name, timeout=10):
    def found():
        return next((acc for acc, _ in walk(app)
                     if acc.name == name and acc.getRole() == pyatspi.ROLE_PUSH_BUTTON), None)
    return wait_for(found, timeout)


def wait_for(predicate, timeout):
    deadline = time.time() + timeout
    while time.time() < deadline:
        value = predicate()
        if value:
            return value
        time.sleep(0.1)
    return predicate()


def launch(app_path, home):
    """Starts the program with accessibility on, its data in home/data;
    returns the process and its application on the bus (None if it never
    shows up there)."""
    runtime = os.path.join(home, "run")
    os.makedirs(os.path.join(home, "data"), exist_ok=True)
    os.makedirs(runtime, mode=0o700, exist_ok=True)
    env = dict(os.environ, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", QT_ACCESSIBILITY="1", QT_QPA_PLATFORM="xcb",
               XDG_DATA_HOME=os.path.join(home, "data"), XDG_RUNTIME_DIR=runtime, LC_ALL="C.UTF-8")
    # The accessibility bus and registry come up first: a program that finds
    # no registry registers late or not at all.
    pyatspi.Registry.getDesktop(0)
    process = subprocess.Popen([app_path], env=env)
    return process, find_app(process.pid)


def window_ids(title="Tintwright"):
    return subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "^%s$" % title],
                          capture_output=True, text=True).stdout.split()
