#!/usr/bin/env python3
"""For how long the program takes no events while a user works with 8000 live and 8000 deleted
records: prints the longest such time of every operation, and how much of it was computing.

    benchmarks/freezes.py <build directory>

Drives the real windows on an X server of its own. Needs a release build, Xvfb, openbox and xdotool.
Data go to TMPDIR, which should be on a real disk.
"""

import os
import subprocess
import sys
import tempfile
import time

ROOT = os.path.dirname(os.path.dirname(os.path.realpath(__file__)))
sys.path.insert(0, os.path.join(ROOT, "tests", "program"))
from desktop import FIND, FIRST_DELETED, MAIN, Desktop, wait_for  # noqa: E402

RECORDS = "8000"
IMPORTED = 7999  # with one more the program would ask whether these are enough
THIRD_NAME = (0.15, 0.11)
EXCHANGE = (0.93, 0.388)
IMPORT_OK = (0.59, 0.936)  # in the second step of the import
PAUSE = 0.5  # seconds for what comes after the last window


class Session:
    """One run of the program. Each step is told with the longest time without events."""

    def __init__(self, programs, data, folder, rows):
        self.folder = folder
        self.rows = rows
        self.medium = os.path.join(folder, "medium")
        os.makedirs(self.medium, exist_ok=True)
        self.desktop = Desktop(folder)
        with open(os.path.join(folder, "varek.ini"), "w", encoding="utf-8") as file:
            file.write(f"[QL32]\nVersion=2.0\nTips=0\n[Data Files]\nQuillDataPath={data}/\n")
        self.process = subprocess.Popen(
            [os.path.join(programs, "watched_program"), folder], env=self.desktop.env, text=True,
            bufsize=1, stdin=subprocess.PIPE, stdout=subprocess.PIPE)

    def close(self):
        self.process.stdin.close()
        self.process.wait()
        self.desktop.close()

    def longest(self):
        self.process.stdin.write("\n")
        return [int(number) for number in self.process.stdout.readline().split()]

    def is_waiting(self):
        """Whether the splash, please-wait or progress window is to be seen."""
        return self.desktop.run("xdotool", "search", "--onlyvisible", "--name", "^Quillary$")

    def until(self, title):
        """Waits for the window, and until nothing is being done any more."""
        time.sleep(PAUSE)
        wait_for(title, lambda: self.desktop.active() == title and not self.is_waiting())
        time.sleep(PAUSE)

    def tell(self, what, title=MAIN):
        self.until(title)
        self.rows.append((what, *self.longest()))

    def keys(self, *keys):
        self.desktop.key(*keys)

    def pick(self, *keys):
        """An item of the menu of the list."""
        self.desktop.click(*THIRD_NAME)
        self.keys("Menu", *keys)

    def exchange(self, *keys):
        self.desktop.click(*EXCHANGE)
        time.sleep(PAUSE)
        self.keys(*keys)

    def look_around(self):
        self.pick(*["Up"] * 3, "Right", "Down", "Return")
        self.tell("switch to companies")
        self.pick(*["Up"] * 3, "Right", "Return")
        self.tell("switch to names")
        self.desktop.click(*FIND)
        self.desktop.type("nowhere to be found")
        self.keys("Tab", "Tab", "Down", "Down", "Down", "shift+Tab")
        self.until(MAIN)
        self.longest()
        self.keys("space")
        self.tell("find what is nowhere, in all fields", "Can't find text")
        self.keys("Return")
        self.until(MAIN)
        self.keys("alt+f")
        self.until("Quillary Filter")
        self.desktop.type("e")
        self.keys("Return")
        self.tell("filter on")
        self.pick("Down", "Down", "Right", "Down", "Return")
        self.tell("filter off")
        self.desktop.click(*THIRD_NAME)
        self.keys("alt+c")
        self.tell("copy the ticked details")

    def change(self):
        self.keys("alt+n")
        self.tell("open the dialog for a new name", "New Name")
        self.desktop.type("Ms.")
        self.keys("Tab")
        self.desktop.type("Ann")
        self.keys("Tab")
        self.desktop.type("Lee")
        self.keys("Return")
        self.tell("new")
        for what, tabs, text in [("edit in place", 3, "Clerk"), ("edit that moves", 2, "Zuse")]:
            self.keys("alt+e")
            self.until("Edit Name")
            self.keys(*["Tab"] * tabs)
            self.desktop.type(text)
            self.until("Edit Name")
            self.longest()
            self.keys("Return")
            self.tell(what)
        self.keys("alt+d")
        self.until("Delete Name")
        self.longest()
        self.keys("Return")
        self.tell("delete")
        self.pick(*["Up"] * 4, "Right", "Up", "Return")
        self.tell("open the list of deleted names", "Restore Deleted Record")
        self.desktop.click(*FIRST_DELETED, times=2)
        self.tell("restore")
        self.keys("alt+s")
        self.tell("open Setup", "Quillary Setup")
        self.keys("Return")
        self.tell("Setup, OK")

    def back_up(self, what, *keys):
        self.exchange(*["Down"] * 3, "Right", *keys, "Return")
        title = "Restore data from Back Up" if keys else "Back Up"
        self.until(title)
        if keys:
            self.keys("Tab", "Return")
            self.until(title)
        self.keys("Return")
        self.until(title)
        self.keys("ctrl+a")
        self.desktop.type(self.medium)
        self.until(title)
        self.longest()
        self.keys("Return")
        self.tell(what)
        if not os.path.exists(os.path.join(self.medium, "QUILL.OLD")):
            raise AssertionError("no backup")

    def take_in(self, what, *keys):
        file = os.path.join(self.folder, "people.txt")
        with open(file, "w", encoding="utf-8") as lines:
            for number in range(IMPORTED):
                lines.write(f"Person{number * 7919 % 7993},Crowd{number},Town {number}\n")
        self.exchange("Down", "Down", "Right", *keys, "Return")
        self.until("File to Import")
        self.desktop.type("people.txt")
        self.until("File to Import")
        self.longest()
        self.keys("Return")
        self.tell(what + ", the file", "Records to Import")
        for meaning in [1, 2, 6]:
            self.keys(*["Down"] * (meaning + 1), "Tab")
        self.desktop.click(*IMPORT_OK)
        self.until("Import notice")
        self.longest()
        self.keys("Return")
        self.tell(what + ", the records")


def main():
    programs = os.path.join(sys.argv[1], "benchmarks")
    rows = []
    with tempfile.TemporaryDirectory(prefix="quillary-freezes-") as folder:
        for name, shape in [("scrambled", ["--scrambled"]), ("sorted", [])]:
            data = os.path.join(folder, name)
            subprocess.run([os.path.join(programs, "generate_data"), data, RECORDS, "--deleted",
                            RECORDS, *shape], check=True)
            time.sleep(2.1)  # until the files count as unchanged
            session = Session(programs, data, folder, rows)
            try:
                session.tell(f"start, the data {name}")
                if name == "sorted":
                    session.look_around()
                    session.change()
                    session.back_up("back up")
                    session.back_up("restore the backup", "Down")
                    session.take_in("import 7999 more")
                    session.take_in("import 7999, replacing all", "Down")
            finally:
                session.close()

    print("| longest time without events | ms | computing |")
    print("|---|---|---|")
    for what, longest, computing in rows:
        print(f"| {what} | {longest} | {computing} |")


if __name__ == "__main__":
    main()
