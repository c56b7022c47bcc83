#!/usr/bin/python3
"""Walks Tintwright's accessibility tree through AT-SPI, tab by tab.

Fails when an interactive control has no accessible name or only a generic
role, when Tab moves focus out of reading order, or when focusing a control
changes nothing on screen (no visible focus). Needs DISPLAY (an X server)
and a session bus (DBUS_SESSION_BUS_ADDRESS); starts the program itself
with accessibility forced on and a fresh data folder.

Usage: atspi-check.py <tintwright> [--dump FILE] [--known FILE]
"""
import argparse
import json
import os
import subprocess
import sys
import tempfile
import time

import pyatspi

sys.dont_write_bytecode = True  # nothing written into the source tree
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support"))
from atspi_session import click, extents, launch, log, shown, state, walk, window_ids  # noqa: E402

TABS = ["Picker", "History", "Palettes", "Convert", "Contrast"]

# Roles a user operates; each needs a name a screen reader can speak.
INTERACTIVE = {
    pyatspi.ROLE_PUSH_BUTTON, pyatspi.ROLE_TOGGLE_BUTTON, pyatspi.ROLE_CHECK_BOX,
    pyatspi.ROLE_RADIO_BUTTON, pyatspi.ROLE_COMBO_BOX, pyatspi.ROLE_TEXT,
    pyatspi.ROLE_ENTRY, pyatspi.ROLE_PASSWORD_TEXT, pyatspi.ROLE_SPIN_BUTTON,
    pyatspi.ROLE_SLIDER, pyatspi.ROLE_PAGE_TAB, pyatspi.ROLE_MENU_ITEM,
    pyatspi.ROLE_LINK, pyatspi.ROLE_LIST_ITEM, pyatspi.ROLE_LIST,
    pyatspi.ROLE_TABLE, pyatspi.ROLE_TREE, pyatspi.ROLE_TREE_TABLE,
}
# Roles that say nothing about what a focusable thing is.
GENERIC = {pyatspi.ROLE_UNKNOWN, pyatspi.ROLE_FILLER, pyatspi.ROLE_PANEL,
           pyatspi.ROLE_REDUNDANT_OBJECT, pyatspi.ROLE_CANVAS}


def describe(acc):
    return "%s %r" % (acc.getRoleName(), acc.name)


def main_window(app):
    for i in range(app.childCount):
        w = app.getChildAtIndex(i)
        if w is not None and shown(w):
            return w
    return None


class Screen:
    """Grabs the X root window as raw RGB to compare regions."""

    def __init__(self, folder):
        self.folder = folder
        size = subprocess.run(["xdpyinfo"], capture_output=True, text=True).stdout
        dims = [l.split()[1] for l in size.splitlines() if "dimensions:" in l][0]
        self.width, self.height = map(int, dims.split("x"))
        self.count = 0

    def grab(self):
        self.count += 1
        path = os.path.join(self.folder, "grab%d.rgb" % self.count)
        subprocess.run(["import", "-silent", "-window", "root", "-depth", "8", "rgb:" + path], check=True)
        with open(path, "rb") as f:
            data = f.read()
        os.remove(path)
        return data

    def region(self, data, box, margin=3):
        x, y, w, h = box
        x0, y0 = max(0, x - margin), max(0, y - margin)
        x1, y1 = min(self.width, x + w + margin), min(self.height, y + h + margin)
        rows = []
        for row in range(y0, y1):
            start = (row * self.width + x0) * 3
            rows.append(data[start:start + (x1 - x0) * 3])
        return b"".join(rows)


def focused_in(window):
    for acc, _ in walk(window):
        if state(acc, pyatspi.STATE_FOCUSED):
            return acc
    return None


def key(*keys):
    subprocess.run(["xdotool", "key", "--clearmodifiers", *keys], check=True)
    time.sleep(0.05)


PRESSABLE = {pyatspi.ROLE_PUSH_BUTTON, pyatspi.ROLE_PAGE_TAB, pyatspi.ROLE_TOGGLE_BUTTON,
             pyatspi.ROLE_RADIO_BUTTON, pyatspi.ROLE_CHECK_BOX, pyatspi.ROLE_LIST_ITEM}


def press(root, name):
    """Runs the press action of the first showing control called name."""
    for acc, _ in walk(root):
        if acc.name != name or acc.getRole() not in PRESSABLE:
            continue
        # A list item's own action (Qt's "Toggle") selects it; a user opens
        # one with a click, or Return on the current item.
        if acc.getRole() == pyatspi.ROLE_LIST_ITEM and extents(acc):
            click(extents(acc))
            return True
        try:
            action = acc.queryAction()
        except NotImplementedError:
            continue
        names = [action.getName(i) for i in range(action.nActions)]
        for wanted in ("Press", "press", "click", "Toggle", "SetFocus"):
            if wanted in names:
                action.doAction(names.index(wanted))
                time.sleep(0.5)
                return True
    return False


def select_tab(window, title, index, problems):
    if not press(window, title):
        problems.append("tab bar: no control named %r that can be pressed; used Ctrl+%d" % (title, index + 1))
        key("ctrl+%d" % (index + 1))


def check_names(window, tab, problems, dump):
    dump.append("== %s" % tab)
    controls = 0
    for acc, depth in walk(window):
        role = acc.getRole()
        name = (acc.name or "").strip()
        focusable = state(acc, pyatspi.STATE_FOCUSABLE)
        dump.append("%s%s%s %s" % ("  " * depth, describe(acc), " [focusable]" if focusable else "", extents(acc)))
        # No coordinates here: problem texts must stay stable for the known list.
        parent = acc.parent
        where = "%s tab: %s in %s %r" % (tab, acc.getRoleName(), parent.getRoleName() if parent else "nothing",
                                         (parent.name or "") if parent else "")
        if role in INTERACTIVE:
            controls += 1
            if not name and role not in (pyatspi.ROLE_LIST, pyatspi.ROLE_TABLE,
                                         pyatspi.ROLE_TREE, pyatspi.ROLE_TREE_TABLE):
                problems.append("%s has no accessible name" % where)
        elif focusable and role in GENERIC:
            controls += 1
            problems.append("%s, named %r, takes focus but has no meaningful role" % (where, name))
    return controls


def reading_key(box):
    x, y, w, h = box
    return (y + h / 2.0, x + w / 2.0)


def check_focus(window, tab, screen, problems, dump, limit=40):
    """Tabs through the view; returns the focus chain."""
    chain = []
    previous_grab = screen.grab()
    previous = None
    for _ in range(limit):
        key("Tab")
        # Wait for the focus to arrive somewhere new (a busy machine is slow
        # to deliver the key), then for the repaint.
        deadline = time.time() + 3
        while True:
            acc = focused_in(window)
            ident = (acc.getRoleName(), acc.name, extents(acc)) if acc is not None else None
            if (ident is not None and ident != previous) or time.time() > deadline:
                break
            time.sleep(0.1)
        if acc is None:
            problems.append("%s tab: Tab moved focus to nothing the tree shows" % tab)
            break
        time.sleep(0.1)
        box = ident[2]
        if chain and ident == chain[0]:
            break
        grab = screen.grab()
        if box and box[2] > 0 and box[3] > 0 and screen.region(grab, box) == screen.region(previous_grab, box):
            problems.append("%s tab: focus on %s is not visible (nothing changes on screen)" % (tab, describe(acc)))
        chain.append(ident)
        previous, previous_grab = ident, grab
    dump.append("-- focus chain, %s: %s" % (tab, " -> ".join("%s %r" % (r, n) for r, n, _ in chain)))

    # Reading order: top to bottom, then left to right within a row. One
    # step back is the wrap from the last control to the first.
    boxes = [b for _, _, b in chain if b]
    backwards = []
    for i in range(len(boxes)):
        a, b = boxes[i], boxes[(i + 1) % len(boxes)]
        same_row = abs(reading_key(a)[0] - reading_key(b)[0]) < min(a[3], b[3]) / 2.0 + 2
        later = reading_key(b)[1] > reading_key(a)[1] if same_row else reading_key(b)[0] > reading_key(a)[0]
        if not later:
            backwards.append((chain[i], chain[(i + 1) % len(chain)]))
    if len(boxes) > 1 and len(backwards) > 1:
        steps = "; ".join("%s %r -> %s %r" % (a[0], a[1], b[0], b[1]) for a, b in backwards)
        problems.append("%s tab: focus order leaves reading order %d times: %s" % (tab, len(backwards) - 1, steps))
    return chain


def item(uid, name, r, g, b, date):
    return {"id": uid, "name": name, "red": r, "green": g, "blue": b, "alpha": 1, "dateAdded": date}


def seed(folder):
    """A history of three picks and two palettes, one of them empty."""
    os.makedirs(folder, exist_ok=True)
    base = "6F1E0C4A-8B1D-4C55-9E39-0B7F0D3A100"
    history = [item(base + "1", "Picked Color", 1, 0.5, 0, "2026-11-20T10:00:03Z"),
               item(base + "2", "Picked Color", 0.2, 0.4, 0.8, "2026-11-20T10:00:02Z"),
               item(base + "3", "Picked Color", 0.18, 0.8, 0.44, "2026-11-20T10:00:01Z")]
    palettes = [{"id": "0B5A9E2C-6D3F-4E21-A8C7-5F1B2D3C2001", "name": "Brand",
                 "colors": [item(base + "4", "Orange", 1, 0.5, 0, "2026-11-20T10:01:00Z"),
                            item(base + "5", "Sky", 0.2, 0.4, 0.8, "2026-11-20T10:01:01Z")],
                 "dateCreated": "2026-11-20T10:00:30Z"},
                {"id": "0B5A9E2C-6D3F-4E21-A8C7-5F1B2D3C2002", "name": "Spare", "colors": [],
                 "dateCreated": "2026-11-20T10:00:40Z"}]
    with open(os.path.join(folder, "history.json"), "w") as f:
        json.dump(history, f)
    with open(os.path.join(folder, "palettes.json"), "w") as f:
        json.dump(palettes, f)


def focus_x11(title):
    """No window manager under Xvfb: hand the keyboard to the window."""
    ids = window_ids(title)
    if ids:
        subprocess.run(["xdotool", "windowfocus", "--sync", ids[-1]], capture_output=True)
        time.sleep(0.3)
    return ids[-1] if ids else None


def dialogs(app, main):
    found = []
    for i in range(app.childCount):
        w = app.getChildAtIndex(i)
        if w is not None and shown(w) and w != main:
            found.append(w)
    return found


def run_pass(app_path, label, seeded, scratch, problems, dump):
    home = os.path.join(scratch, label)
    if seeded:
        seed(os.path.join(home, "data", "Tintwright"))
    process, app = launch(app_path, home)
    total = 0
    try:
        if app is None:
            problems.append("%s: the program never appeared on the accessibility bus" % label)
            return 0
        window = main_window(app)
        if window is None:
            problems.append("%s: no window in the accessibility tree" % label)
            return 0
        if not window.name:
            problems.append("the window has no accessible name")
        if window.getRole() not in (pyatspi.ROLE_FRAME, pyatspi.ROLE_WINDOW):
            problems.append("the window is exposed as a %s, not a frame" % window.getRoleName())
        focus_x11("Tintwright")
        time.sleep(0.3)
        screen = Screen(scratch)

        def view(title, root=None):
            nonlocal total
            root = root or window
            title = "%s, %s" % (title, label)
            total += check_names(root, title, problems, dump)
            check_focus(root, title, screen, problems, dump)

        def dialog_after(opener, title):
            if not press(window, opener):
                problems.append("%s: no %r to press" % (label, opener))
                return
            time.sleep(0.5)
            opened = dialogs(app, window)
            if not opened:
                problems.append("%s: pressing %r opened no dialog the tree shows" % (label, opener))
                return
            dlg = opened[-1]
            if not dlg.name:
                problems.append("%s: the dialog opened by %r has no accessible name" % (label, opener))
            focus_x11(dlg.name) if dlg.name else None
            view(title, dlg)
            key("Escape")
            time.sleep(0.4)
            if dialogs(app, window):
                problems.append("%s: Escape did not close the dialog opened by %r" % (label, opener))
            focus_x11("Tintwright")

        for index, tab in enumerate(TABS):
            select_tab(window, tab, index, problems)
            view(tab)
            if seeded and tab == "Picker":
                dialog_after("Add to Palette", "Add-color sheet")
            if seeded and tab == "Palettes":
                dialog_after("New Palette", "New Palette prompt")
                if press(window, "Brand"):
                    view("Palette detail")
                else:
                    problems.append("%s: the palette 'Brand' cannot be opened through its accessible action" % label)
        return total
    finally:
        process.kill()
        process.wait()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("app")
    parser.add_argument("--dump", help="write the tree and the focus chains here")
    parser.add_argument("--known", help="file of known problems, one a line: reported, not failed")
    args = parser.parse_args()
    known = set()
    if args.known and os.path.exists(args.known):
        with open(args.known) as f:
            known = {l.strip() for l in f if l.strip() and not l.startswith("#")}

    scratch = tempfile.mkdtemp(prefix="tintwright-atspi-")
    problems, dump = [], []
    try:
        total = run_pass(args.app, "empty", False, scratch, problems, dump)
        total += run_pass(args.app, "filled", True, scratch, problems, dump)
    finally:
        subprocess.run(["rm", "-rf", scratch])
    if args.dump:
        with open(args.dump, "w") as f:
            f.write("\n".join(dump) + "\n")
    unique = list(dict.fromkeys(problems))
    new = [p for p in unique if p not in known]
    for p in unique:
        log("KNOWN GAP:" if p in known else "PROBLEM:", p)
    for p in sorted(known - set(unique)):
        log("FIXED (remove it from the known list):", p)
    log("%d interactive controls checked, %d problems, %d of them known" % (total, len(unique), len(unique) - len(new)))
    return 1 if new else 0


if __name__ == "__main__":
    sys.exit(main())
