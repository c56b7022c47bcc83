"""What the end-to-end test needs of AT-SPI: the program on the
accessibility bus, its buttons by accessible name, real pointer clicks."""
import os
import subprocess
import time

import pyatspi


def showing(acc):
    try:
        states = acc.getState()
        return states.contains(pyatspi.STATE_SHOWING) and states.contains(pyatspi.STATE_VISIBLE)
    except Exception:
        return False


def walk(acc):
    """Every showing node below acc."""
    for i in range(acc.childCount):
        child = acc.getChildAtIndex(i)
        if child is not None and showing(child):
            yield child
            yield from walk(child)


def extents(acc):
    e = acc.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
    return (e.x, e.y, e.width, e.height)


def click(box):
    """A real click in the middle of the box, then the pointer out of the way."""
    x, y, w, h = box
    subprocess.run(["xdotool", "mousemove", "--sync", str(x + w // 2), str(y + h // 2), "click", "1"], check=True)
    subprocess.run(["xdotool", "mousemove", "1000", "700"], check=True)
    time.sleep(0.5)


def wait_for(predicate, timeout):
    deadline = time.time() + timeout
    while time.time() < deadline:
        value = predicate()
        if value:
            return value
        time.sleep(0.1)
    return predicate()


def find_button(app, name, timeout=10):
    return wait_for(lambda: next((acc for acc in walk(app)
                                  if acc.name == name and acc.getRole() == pyatspi.ROLE_PUSH_BUTTON), None), timeout)


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
    desktop = pyatspi.Registry.getDesktop(0)
    process = subprocess.Popen([app_path], env=env)

    def registered():
        for i in range(desktop.childCount):
            app = desktop.getChildAtIndex(i)
            try:
                if app is not None and app.get_process_id() == process.pid and app.childCount > 0:
                    return app
            except Exception:
                pass
        return None
    return process, wait_for(registered, 45)
