#!/usr/bin/python3
"""`tintwright --pick` on Wayland, answered by the fake portal's PickColor:
the time from the printed color to the process's exit, once per run, in
milliseconds. Runs inside a Wayland session (weston-run.sh) with its own bus.
Usage: pick_exit.py <tintwright> <fake portal> [runs]"""
import os
import subprocess
import sys
import tempfile
import time

tintwright, portal_program = sys.argv[1], sys.argv[2]
runs = int(sys.argv[3]) if len(sys.argv) > 3 else 7
portal = subprocess.Popen([portal_program], stdout=subprocess.PIPE, text=True,
                          env={k: v for k, v in os.environ.items() if k != "FAKE_SCREENSHOT"})
assert portal.stdout.readline().startswith("ready")
with tempfile.TemporaryDirectory() as data:
    env = dict(os.environ, XDG_DATA_HOME=data, QT_QPA_PLATFORM="wayland")
    for _ in range(runs):
        command = subprocess.Popen([tintwright, "--pick"], stdout=subprocess.PIPE, env=env)
        line = command.stdout.readline()
        printed = time.monotonic()
        command.wait()
        gone = time.monotonic()
        print("pick-exit %.2f %s" % ((gone - printed) * 1000, line.decode().strip()))
portal.terminate()
