"""The whole program in a real window: what a user does, seen in the files and on the clipboard.

    program_test.py <the program>

Brings its own X server and window manager; everything it writes goes to a temporary folder.
"""

import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

PROGRAM = ""
PATIENCE = 20  # seconds until something that should happen counts as not happening


def wait_for(what, condition):
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        result = condition()
        if result:
            return result
        time.sleep(0.05)
    raise AssertionError(f"waited in vain for {what}")


class Desktop:
    """An X server with a window manager."""

    def __init__(self, folder):
        self.folder = folder
        read_end, write_end = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_end), "-screen", "0", "1024x768x24"],
            pass_fds=[write_end], stderr=subprocess.DEVNULL)
        os.close(write_end)
        with os.fdopen(read_end) as pipe:
            number = pipe.readline().strip()
        self.env = dict(os.environ, DISPLAY=f":{number}", HOME=folder, LC_ALL="C.UTF-8",
                        QT_QPA_PLATFORM="xcb")
        for name in ["XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"]:
            self.env[name] = os.path.join(folder, name.lower())
            os.makedirs(self.env[name], mode=0o700, exist_ok=True)
        self.manager = subprocess.Popen(["openbox"], env=self.env, stderr=subprocess.DEVNULL)
        wait_for("the window manager", lambda: "0x" in self.run(
            "xprop", "-root", "_NET_SUPPORTING_WM_CHECK"))

    def run(self, *command):
        return subprocess.run(command, env=self.env, capture_output=True, text=True,
                              check=False, timeout=PATIENCE).stdout

    def active(self):
        return self.run("xdotool", "getactivewindow", "getwindowname").strip()

    def wait_active(self, title):
        wait_for(f"the window {title!r}", lambda: self.active() == title)

    def key(self, *keys):
        self.run("xdotool", "key", "--delay", "30", *keys)

    def type(self, text):
        self.run("xdotool", "type", "--delay", "10", text)

    def clipboard(self):
        return subprocess.run(["xclip", "-selection", "clipboard", "-o"], env=self.env,
                              capture_output=True, check=False, timeout=PATIENCE).stdout

    def close(self):
        for process in [self.manager, self.server]:
            process.kill()
            process.wait()


class ProgramTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix="quillary-test-")
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        self.dist = os.path.join(self.folder, "dist")
        os.mkdir(self.dist)
        self.program = shutil.copy(PROGRAM, self.dist)
        self.desktop = Desktop(self.folder)
        self.addCleanup(self.desktop.close)

    def start(self):
        process = subprocess.Popen([self.program], env=self.desktop.env)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        return process

    def text(self, name="quill.dat"):
        try:
            with open(os.path.join(self.dist, "quilldat", name), encoding="utf-8",
                      newline="") as file:
                return file.read()
        except FileNotFoundError:
            return ""

    def value(self, key, name="quill.dat"):
        found = re.search(rf"^{key}=(.*)\r$", self.text(name), re.MULTILINE)
        return found.group(1) if found else None

    def first_start(self):
        """From a clean machine to the empty main window."""
        process = self.start()
        self.desktop.wait_active("Missing data file")
        self.desktop.key("Return")
        self.desktop.wait_active("Tip of The Day")
        self.desktop.key("Return")
        self.desktop.wait_active("Quillary, Version 2.0")
        return process

    def later_start(self):
        """The tip was closed with its box empty, so there is none."""
        process = self.start()
        self.desktop.wait_active("Quillary, Version 2.0")
        wait_for("the counter", lambda: self.value("NoOfUses") == "1")
        return process

    def add(self, *fields):
        """Types the fields from the first name on, and Enter."""
        self.desktop.key("alt+n")
        self.desktop.wait_active("New Name")
        for field in fields:
            self.desktop.key("Tab")
            if field:
                self.desktop.type(field)
        self.desktop.key("Return")
        self.desktop.wait_active("Quillary, Version 2.0")

    def test_a_person_is_added_and_there_at_the_next_start(self):
        process = self.first_start()
        self.add("Ann", "Lee", "", "Acme", "1 Oak Road", "", "", "Springfield", "12345")
        wait_for("the record", lambda: self.value("ShowName", "quill0.dat") == "Lee, Ann")
        self.assertEqual(self.value("ShowCompany", "quill0.dat"), "( Acme )")
        self.assertEqual(self.value("Address6", "quill0.dat"), "")
        self.assertEqual(self.value("NoOfRecords"), "1")

        # The third line of details down, in the middle panel, is the company: a click copies it.
        geometry = self.desktop.run("xdotool", "getactivewindow", "getwindowgeometry", "--shell")
        size = dict(line.split("=") for line in geometry.split())
        x = int(size["X"]) + int(size["WIDTH"]) * 45 // 100
        copied = b""
        for y in range(int(size["Y"]) + 15, int(size["Y"]) + int(size["HEIGHT"]) // 2, 9):
            self.desktop.run("xdotool", "mousemove", str(x), str(y), "click", "3")
            copied = self.desktop.clipboard()
            if b"Oak" in copied:
                break
        self.assertEqual(copied, b"1 Oak Road\r\r\rSpringfield, 12345\r")

        process.send_signal(signal.SIGTERM)
        self.assertEqual(process.wait(PATIENCE), 0)
        self.assertEqual(self.value("NoOfUses"), "0")
        before = self.text("quill0.dat")
        self.later_start()
        self.assertEqual(self.text("quill0.dat"), before)

    def test_every_polite_end_takes_it_off_the_counter_once(self):
        process = self.first_start()
        ends = [lambda process, number=number: process.send_signal(number)
                for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP)]
        ends.append(lambda process: self.desktop.key("alt+F4"))
        for end in ends:
            end(process)
            self.assertEqual(process.wait(PATIENCE), 0)
            self.assertEqual(self.value("NoOfUses"), "0")
            process = self.later_start()
        # As nohup does.
        process.send_signal(signal.SIGTERM)
        process.wait(PATIENCE)
        process = subprocess.Popen(
            [self.program], env=self.desktop.env,
            preexec_fn=lambda: signal.signal(signal.SIGHUP, signal.SIG_IGN))
        self.addCleanup(process.kill)
        self.desktop.wait_active("Quillary, Version 2.0")
        wait_for("the counter", lambda: self.value("NoOfUses") == "1")
        process.send_signal(signal.SIGHUP)
        time.sleep(1)
        self.assertIsNone(process.poll())

        self.desktop.server.terminate()
        process.wait(PATIENCE)
        self.assertEqual(self.value("NoOfUses"), "0")

    def test_a_second_start_raises_the_first_and_touches_nothing(self):
        self.first_start()
        wait_for("the counter", lambda: self.value("NoOfUses") == "1")
        window = self.desktop.run("xdotool", "getactivewindow").strip()
        self.desktop.run("xdotool", "windowminimize", window)
        wait_for("the icon", lambda: self.desktop.active() != "Quillary, Version 2.0")
        path = os.path.join(self.dist, "quilldat", "quill.dat")
        before = os.stat(path)
        second = self.start()
        self.assertEqual(second.wait(PATIENCE), 0)
        self.desktop.wait_active("Quillary, Version 2.0")
        self.assertEqual(os.stat(path), before)

    def test_after_a_crash_the_user_can_take_the_data_back(self):
        process = self.first_start()
        wait_for("the counter", lambda: self.value("NoOfUses") == "1")
        process.kill()
        process.wait()
        process = self.start()
        self.desktop.wait_active("Data File In Use")
        self.assertEqual(self.value("NoOfUses"), "2")
        self.desktop.key("Tab", "space")
        self.desktop.wait_active("Are you sure ?")
        self.desktop.key("Tab", "Return")
        self.desktop.wait_active("Data File In Use")
        self.desktop.key("Return")
        self.desktop.wait_active("Quillary, Version 2.0")
        wait_for("the counter", lambda: self.value("NoOfUses") == "1")
        self.add("Ann", "Lee")
        wait_for("the record", lambda: self.value("NoOfRecords") == "1")


if __name__ == "__main__":
    PROGRAM = os.path.abspath(sys.argv.pop(1))
    unittest.main()
