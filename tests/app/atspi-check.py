#!/usr/bin/python3
"""Walks Tintwright's accessibility tree through AT-SPI, tab by tab, empty
and with data: fails when an interactive control has no accessible name or
only a generic role, when Tab moves focus out of reading order, or when a
focused control looks no different (no visible focus). Needs DISPLAY and a
session bus. Usage: atspi-check.py <tintwright> [--dump FILE] [--known FILE]
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

R = pyatspi
# Roles a user operates; each needs a name a screen reader can speak (a
# list, table or tree may go without).
INTERACTIVE = {R.ROLE_PUSH_BUTTON, R.ROLE_TOGGLE_BUTTON, R.ROLE_CHECK_BOX, R.ROLE_RADIO_BUTTON, R.ROLE_COMBO_BOX,
               R.ROLE_TEXT, R.ROLE_ENTRY, R.ROLE_PASSWORD_TEXT, R.ROLE_SPIN_BUTTON, R.ROLE_SLIDER, R.ROLE_PAGE_TAB,
               R.ROLE_MENU_ITEM, R.ROLE_LINK, R.ROLE_LIST_ITEM}
CONTAINERS = {R.ROLE_LIST, R.ROLE_TABLE, R.ROLE_TREE, R.ROLE_TREE_TABLE}
# Roles that say nothing about what a focusable thing is.
GENERIC = {R.ROLE_UNKNOWN, R.ROLE_FILLER, R.ROLE_PANEL, R.ROLE_REDUNDANT_OBJECT, R.ROLE_CANVAS}
PRESSABLE = {R.ROLE_PUSH_BUTTON, R.ROLE_PAGE_TAB, R.ROLE_TOGGLE_BUTTON, R.ROLE_RADIO_BUTTON, R.ROLE_CHECK_BOX,
             R.ROLE_LIST_ITEM}


def describe(acc):
    return "%s %r" % (acc.getRoleName(), acc.name)


def windows(app):
    found = (app.getChildAtIndex(i) for i in range(app.childCount))
    return [w for w in found if w is not None and shown(w)]


def grab(width=[]):
    """The X root window as raw RGB, and its width."""
    if not width:
        width.append(int(subprocess.run(["xdpyinfo"], capture_output=True, text=True).stdout
                         .split("dimensions:")[1].split()[0].split("x")[0]))
    rgb = subprocess.run(["import", "-silent", "-window", "root", "-depth", "8", "rgb:-"], capture_output=True).stdout
    return rgb, width[0]


def region(shot, box, margin=3):
    data, width = shot
    x, y, w, h = box
    x0, x1 = max(0, x - margin), min(width, x + w + margin)
    return b"".join(data[(row * width + x0) * 3:(row * width + x1) * 3] for row in range(max(0, y - margin), y + h + margin))


def key(*keys):
    subprocess.run(["xdotool", "key", "--clearmodifiers", *keys], check=True)
    time.sleep(0.05)


def press(root, name):
    """Runs the press action of the first showing control called name."""
    for acc, _ in walk(root):
        if acc.name != name or acc.getRole() not in PRESSABLE:
            continue
        # A list item's own action (Qt's "Toggle") only selects it; a user
        # opens one with a click.
        if acc.getRole() == R.ROLE_LIST_ITEM and extents(acc):
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


def check_names(window, tab, problems, dump):
    dump.append("== %s" % tab)
    controls = 0
    for acc, depth in walk(window):
        role, name = acc.getRole(), (acc.name or "").strip()
        focusable = state(acc, R.STATE_FOCUSABLE)
        dump.append("%s%s%s %s" % ("  " * depth, describe(acc), " [focusable]" if focusable else "", extents(acc)))
        # No coordinates here: problem texts must stay stable for the known list.
        parent = acc.parent
        where = "%s tab: %s in %s %r" % (tab, acc.getRoleName(), parent.getRoleName() if parent else "nothing",
                                         (parent.name or "") if parent else "")
        if role in INTERACTIVE or role in CONTAINERS:
            controls += 1
            if not name and role not in CONTAINERS:
                problems.append("%s has no accessible name" % where)
        elif focusable and role in GENERIC:
            controls += 1
            problems.append("%s, named %r, takes focus but has no meaningful role" % (where, name))
    return controls


def check_focus(window, tab, problems, dump, limit=40):
    """Tabs through the view, each focus visible, in reading order."""
    chain, previous, previous_shot = [], None, grab()
    for _ in range(limit):
        key("Tab")
        # Until the focus is somewhere new (a busy machine is slow to deliver
        # the key), then the repaint.
        deadline = time.time() + 3
        while True:
            acc = next((a for a, _ in walk(window) if state(a, R.STATE_FOCUSED)), None)
            ident = (acc.getRoleName(), acc.name, extents(acc)) if acc is not None else None
            if (ident is not None and ident != previous) or time.time() > deadline:
                break
            time.sleep(0.1)
        if acc is None:
            problems.append("%s tab: Tab moved focus to nothing the tree shows" % tab)
            break
        time.sleep(0.1)
        if chain and ident == chain[0]:
            break
        shot, box = grab(), ident[2]
        if box and box[2] > 0 and box[3] > 0 and region(shot, box) == region(previous_shot, box):
            problems.append("%s tab: focus on %s is not visible (nothing changes on screen)" % (tab, describe(acc)))
        chain.append(ident)
        previous, previous_shot = ident, shot
    dump.append("-- focus chain, %s: %s" % (tab, " -> ".join("%s %r" % (r, n) for r, n, _ in chain)))
    # Top to bottom, then left to right within a row; one step back is the
    # wrap from the last control to the first.
    middle = [(y + h / 2.0, x + w / 2.0, h) for x, y, w, h in (b for _, _, b in chain if b)]
    backwards = []
    for i, a in enumerate(middle):
        b = middle[(i + 1) % len(middle)]
        same_row = abs(a[0] - b[0]) < min(a[2], b[2]) / 2.0 + 2
        if not (b[1] > a[1] if same_row else b[0] > a[0]):
            backwards.append("%s %r -> %s %r" % (chain[i][:2] + chain[(i + 1) % len(chain)][:2]))
    if len(middle) > 1 and len(backwards) > 1:
        problems.append("%s tab: focus order leaves reading order %d times: %s"
                        % (tab, len(backwards) - 1, "; ".join(backwards)))


def seed(folder):
    """A history of three picks and two palettes, one of them empty."""
    os.makedirs(folder, exist_ok=True)

    def item(n, name, r, g, b):
        return {"id": "6F1E0C4A-8B1D-4C55-9E39-0B7F0D3A100%d" % n, "name": name, "red": r, "green": g, "blue": b,
                "alpha": 1, "dateAdded": "2026-11-20T10:00:0%dZ" % n}
    palette = lambda n, name, colors: {"id": "0B5A9E2C-6D3F-4E21-A8C7-5F1B2D3C200%d" % n, "name": name,
                                       "colors": colors, "dateCreated": "2026-11-20T10:00:3%dZ" % n}
    data = {"history.json": [item(1, "Picked Color", 1, 0.5, 0), item(2, "Picked Color", 0.2, 0.4, 0.8),
                             item(3, "Picked Color", 0.18, 0.8, 0.44)],
            "palettes.json": [palette(1, "Brand", [item(4, "Orange", 1, 0.5, 0), item(5, "Sky", 0.2, 0.4, 0.8)]),
                              palette(2, "Spare", [])]}
    for name, content in data.items():
        with open(os.path.join(folder, name), "w") as f:
            json.dump(content, f)


def focus_x11(title):
    """No window manager under Xvfb: hand the keyboard to the window."""
    ids = window_ids(title)
    if ids:
        subprocess.run(["xdotool", "windowfocus", "--sync", ids[-1]], capture_output=True)
        time.sleep(0.3)


def run_pass(app_path, label, seeded, scratch, problems, dump):
    home = os.path.join(scratch, label)
    if seeded:
        seed(os.path.join(home, "data", "Tintwright"))
    process, app = launch(app_path, home)
    total = 0
    try:
        window = windows(app)[0] if app is not None and windows(app) else None
        if window is None:
            problems.append("%s: no window in the accessibility tree" % label)
            return 0
        if not window.name or window.getRole() not in (R.ROLE_FRAME, R.ROLE_WINDOW):
            problems.append("the window is %s, not a named frame" % describe(window))
        focus_x11("Tintwright")

        def view(title, root=window):
            nonlocal total
            title = "%s, %s" % (title, label)
            total += check_names(root, title, problems, dump)
            check_focus(root, title, problems, dump)

        def dialog_after(opener, title):
            opened = press(window, opener) and (time.sleep(0.5) or [w for w in windows(app) if w != window])
            if not opened or not opened[-1].name:
                problems.append("%s: %r opened no named dialog the tree shows" % (label, opener))
                return
            focus_x11(opened[-1].name)
            view(title, opened[-1])
            key("Escape")
            time.sleep(0.4)
            if len(windows(app)) > 1:
                problems.append("%s: Escape did not close the dialog opened by %r" % (label, opener))
            focus_x11("Tintwright")

        for index, tab in enumerate(["Picker", "History", "Palettes", "Convert", "Contrast"]):
            if not press(window, tab):
                problems.append("tab bar: no control named %r that can be pressed; used Ctrl+%d" % (tab, index + 1))
                key("ctrl+%d" % (index + 1))
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
    parser.add_argument("--dump", default=os.devnull, help="the tree and the focus chains go here")
    parser.add_argument("--known", help="known problems, one a line: reported, not failed")
    args = parser.parse_args()
    known = set()
    if args.known and os.path.exists(args.known):
        with open(args.known) as f:
            known = {l.strip() for l in f if l.strip() and not l.startswith("#")}
    problems, dump = [], []
    with tempfile.TemporaryDirectory(prefix="tintwright-atspi-") as scratch:
        total = sum(run_pass(args.app, label, label == "filled", scratch, problems, dump)
                    for label in ("empty", "filled"))
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
