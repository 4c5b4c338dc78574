"""A desktop of its own for every test of the whole program."""

import os
import re
import signal
import shutil
import subprocess
import tempfile
import time
import tty
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


MAIN = "Quillary, Version 2.0"

# Places in a window, as shares of its width and height.
FIRST_NAME = (0.15, 0.03)
COPY = (0.93, 0.04)
DELETE = (0.93, 0.22)
FIND = (0.15, 0.88)
FIRST_DELETED = (0.7, 0.065)


class Desktop:
    """An X server with a window manager."""

    def __init__(self, folder, screen="1024x768x24"):
        self.folder = folder
        read_end, write_end = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_end), "-screen", "0", screen],
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
        """Waits until the window stays active: the one behind it may be mapped after it."""
        def stays():
            for _ in range(3):
                if self.active() != title:
                    return False
                time.sleep(0.05)
            return True
        wait_for(f"the window {title!r}", stays)

    def key(self, *keys):
        self.run("xdotool", "key", "--delay", "30", *keys)

    def type(self, text):
        self.run("xdotool", "type", "--delay", "10", text)

    def click(self, x, y, button="1", times=1):
        """Clicks into the active window."""
        window = self.run("xdotool", "getactivewindow").strip()
        geometry = self.run("xdotool", "getwindowgeometry", "--shell", window)
        size = dict(line.split("=") for line in geometry.split())
        self.run("xdotool", "mousemove", "--window", window, str(int(int(size["WIDTH"]) * x)),
                 str(int(int(size["HEIGHT"]) * y)), "click", "--repeat", str(times),
                 "--delay", "50", button)

    def shift_click(self, x, y):
        self.run("xdotool", "keydown", "shift")
        self.click(x, y)
        self.run("xdotool", "keyup", "shift")

    def clipboard(self):
        return subprocess.run(["xclip", "-selection", "clipboard", "-o"], env=self.env,
                              capture_output=True, check=False, timeout=PATIENCE).stdout

    def close(self):
        for process in [self.manager, self.server]:
            process.kill()
            process.wait()


class Modem:
    """A modem on the other end of a pseudo terminal."""

    def __init__(self):
        self.line, port = os.openpty()
        self.port = os.ttyname(port)
        tty.setraw(port)
        os.close(port)
        os.set_blocking(self.line, False)
        self.heard = b""

    def hears(self, command):
        """Waits for the next command."""
        def listen():
            try:
                self.heard += os.read(self.line, 256)
            except OSError:  # nothing said, or the port is closed
                pass
            return b"\r" in self.heard
        wait_for(command, listen)
        heard, _, self.heard = self.heard.partition(b"\r")
        return heard == command

    def say(self, reply):
        os.write(self.line, reply)

    def close(self):
        os.close(self.line)


class ProgramTest(unittest.TestCase):
    """A machine of its own for every test, and what its user does again and again."""

    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix="quillary-test-")
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        self.desktop = Desktop(self.folder)
        self.addCleanup(self.desktop.close)
        self.install()

    def install(self):
        """Puts the program somewhere; `dist` is the folder in which it keeps its data there."""
        self.dist = os.path.join(self.folder, "dist")
        os.mkdir(self.dist)
        self.program = shutil.copy(PROGRAM, self.dist)

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
        self.desktop.wait_active(MAIN)
        return process

    def later_start(self):
        """The tip was closed with its box empty, so there is none."""
        process = self.start()
        self.desktop.wait_active(MAIN)
        wait_for("the counter", lambda: self.value("NoOfUses") == "1")
        return process

    def restart(self, process, **preferences):
        """With other preferences, where some are given."""
        process.send_signal(signal.SIGTERM)
        self.assertEqual(process.wait(PATIENCE), 0)
        self.assertEqual(self.value("NoOfUses"), "0")
        path = os.path.join(self.desktop.env["XDG_CONFIG_HOME"], "varek.ini")
        with open(path, encoding="utf-8", newline="") as file:
            lines = [line for line in file.read().split("\r\n")
                     if line.split("=")[0] not in preferences]
        at = lines.index("[QL32]") + 1
        lines[at:at] = [f"{key}={value}" for key, value in preferences.items()]
        with open(path, "w", encoding="utf-8", newline="") as file:
            file.write("\r\n".join(lines))
        return self.later_start()

    def add(self, *fields):
        """Types the fields from the first name on, and Enter."""
        self.desktop.key("alt+n")
        self.desktop.wait_active("New Name")
        for field in fields:
            self.desktop.key("Tab")
            if field:
                self.desktop.type(field)
        self.desktop.key("Return")
        self.desktop.wait_active(MAIN)

    def copied(self, *keys):
        self.desktop.key(*keys)
        time.sleep(0.3)
        return self.desktop.clipboard()

    def lists(self):
        """The record numbers in the order of the names, as the files chain them."""
        records = dict(re.findall(r"\[Record(\d+)\]\r\n((?:[^\[].*\r\n)*)",
                                  self.text("quill0.dat")))
        numbers = []
        number = self.value("NameFirstRecord")
        while number and len(numbers) <= len(records):
            numbers.append(number)
            number = re.search(r"^NextName=(.*)\r$", records[number], re.MULTILINE).group(1)
        return numbers
