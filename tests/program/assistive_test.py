"""The whole program as a screen reader has it: by the accessibility bus.

    assistive_test.py <the program>

For the Python that the system's packages belong to: pyatspi is one of them. Brings its own X
server, window manager and buses; everything it writes goes to a temporary folder.
"""

import os
import subprocess
import sys
import unittest

import desktop
from desktop import MAIN, PATIENCE, wait_for

# What only arranges others needs no name.
NAMELESS = {"panel", "filler", "scroll bar"}


def inside(thing):
    """The things in it that are to be seen, and itself."""
    import pyatspi

    if not thing.getState().contains(pyatspi.STATE_SHOWING):
        return
    yield thing
    for child in thing:
        if child is not None:
            yield from inside(child)


class Ear:
    """Hears what the program tells of itself."""

    def __init__(self):
        import pyatspi
        from gi.repository import GLib

        self.pyatspi = pyatspi
        self.context = GLib.MainContext.default()
        self.heard = []  # names of what got the focus, came up or changed
        pyatspi.Registry.registerEventListener(
            self.hear, "object:state-changed:focused", "object:state-changed:showing",
            "object:property-change:accessible-name",
            "object:property-change:accessible-description")

    def hear(self, event):
        try:
            if "state-changed" in event.type and not event.detail1:
                return
            about = event.source.description if "description" in event.type else event.source.name
            self.heard.append(about)
        except Exception:  # it is gone already
            pass

    def listen(self):
        while self.context.pending():
            self.context.iteration(False)

    def wait(self, what, condition):
        """Gives what the condition gives. What changes while it looks is no fault."""
        def try_it():
            self.listen()
            try:
                return condition()
            except Exception:
                return None
        return wait_for(what, try_it)

    def window(self, title):
        """The active window, which must have that title."""
        def find():
            for application in self.pyatspi.Registry.getDesktop(0):
                for window in application:
                    if (window.name == title and
                            window.getState().contains(self.pyatspi.STATE_ACTIVE)):
                        return window
            return None
        return self.wait(f"the window {title!r}", find)


class AssistiveTest(desktop.ProgramTest):
    def setUp(self):
        super().setUp()
        env = self.desktop.env
        env["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
        bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--print-address"],
                               env=env, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                               text=True)
        self.addCleanup(self.end_bus, bus)
        env["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()
        os.environ.update(env)  # of this process, which is the screen reader
        self.ear = Ear()

    def end_bus(self, bus):
        """What the bus has started ends with it."""
        bus.terminate()
        bus.wait()
        bus.stdout.close()
        wait_for("the end of the bus", lambda: not self.left_over())

    def left_over(self):
        mine = {os.getpid(), self.desktop.server.pid, self.desktop.manager.pid}
        found = []
        for pid in filter(str.isdigit, os.listdir("/proc")):
            try:
                with open(f"/proc/{pid}/environ", "rb") as file:
                    if int(pid) not in mine and self.folder.encode() in file.read():
                        found.append(pid)
            except OSError:  # ended, or another user's
                pass
        return found

    def control(self, window, role, name):
        """The one that begins with that name."""
        return self.ear.wait(f"{role} {name!r}", lambda: next(
            each for each in inside(window)
            if each.getRoleName() == role and each.name.startswith(name)))

    def press(self, window, name):
        self.act(self.control(window, "push button", name), "Press")

    def act(self, control, name):
        action = control.queryAction()
        action.doAction([action.getName(i) for i in range(action.nActions)].index(name))

    def fill(self, window, **texts):
        for name, text in texts.items():
            box = self.control(window, "text", name.replace("_", " "))
            box.queryEditableText().setTextContents(text)

    def read(self, window, role):
        return [each.name for each in inside(window) if each.getRoleName() == role]

    def shows(self, window, role, *names):
        for name in names:
            self.ear.wait(f"{role} {name!r} in {window.name!r}",
                          lambda: name in self.read(window, role))

    def hears(self, name):
        def find():
            if name not in self.ear.heard:
                return False
            del self.ear.heard[:self.ear.heard.index(name) + 1]
            return True
        self.ear.wait(f"being told {name!r}, not {self.ear.heard}", find)

    def is_told(self, title):
        """The active window has a role and a name for everything."""
        window = self.ear.window(title)
        for each in inside(window):
            role = each.getRoleName()
            what = f"{role} {each.name!r} in {title!r}"
            self.assertNotIn(role, ["unknown", "invalid"], what)
            self.assertTrue(each.name or role in NAMELESS, what)
            # Only the window itself is one.
            self.assertTrue(each == window or role not in ["frame", "dialog"], what)
        return window

    def add_person(self, main, **texts):
        self.press(main, "New")
        dialog = self.is_told("New Name")
        self.fill(dialog, **texts)
        self.press(dialog, "OK")
        self.ear.window(MAIN)

    def test_a_person_is_added_found_deleted_and_restored(self):
        process = self.start()
        self.press(self.is_told("Missing data file"), "Yes")
        tip = self.is_told("Tip of The Day")
        self.press(tip, "Next Tip")
        texts = self.read(tip, "label")
        self.hears(texts[-1])
        self.press(tip, "Close")
        main = self.is_told(MAIN)
        self.add_person(main, First_name="Ann", Last_name="Lee", Company="Acme", Phone_1="555 1")
        self.add_person(main, First_name="Bob", Last_name="Bell", Company="Brown")
        self.shows(main, "label", "Position:  1/ 2", "Name: Mr. Bell", "Company: Brown")
        self.is_told(MAIN)

        self.fill(main, Text_to_find="lee")
        self.act(self.control(main, "text", "Text to find"), "SetFocus")
        self.desktop.key("Return")
        self.hears("Lee, Ann. Name: Mr. Lee")
        self.shows(main, "label", "Position:  2/ 2", "Company: Acme", "Phone 1: 555 1")
        self.ear.window(MAIN)
        self.desktop.key("Return")
        self.press(self.is_told("Can't find text"), "OK")
        self.ear.window(MAIN)

        # The list and the details by the keyboard.
        self.desktop.key("Tab", "Tab", "Tab")
        self.hears("Lee, Ann")
        self.desktop.key("Up")
        self.hears("Bell, Bob")
        self.desktop.key("Down")
        self.hears("Lee, Ann")
        self.desktop.key("Tab")
        self.hears("Name: Mr. Lee")
        self.desktop.key("Down")
        self.hears("Company: Acme")

        self.press(main, "Delete")
        dialog = self.is_told("Delete Name")
        self.shows(dialog, "label", "Name: Ann Lee", "Company: Acme")
        self.press(dialog, "Yes")
        self.ear.window(MAIN)
        self.shows(main, "label", "Position:  1/ 1", "Name: Mr. Bell")
        self.assertEqual(self.read(main, "list item"), ["Bell, Bob"])

        self.press(main, "Exchange")
        self.hears("Exchange")
        for item in ["Reports", "Import", "Back Up", "Restore Deleted Record"]:
            self.desktop.key("Down")
            self.hears(item)
        self.desktop.key("Return")
        dialog = self.is_told("Restore Deleted Record")
        self.shows(dialog, "list item", "Lee, Ann")
        self.shows(dialog, "label", "Name: Mr. Lee", "Phone 1: 555 1")
        self.press(dialog, "Restore")
        self.ear.window(MAIN)
        self.shows(main, "label", "Position:  2/ 2", "Name: Mr. Lee", "Company: Acme",
                   "Phone 1: 555 1")

        self.press(main, "Filter")
        dialog = self.is_told("Quillary Filter")
        self.fill(dialog, Last_name="Bell")
        self.press(dialog, "OK")
        self.ear.window(MAIN)
        self.hears("Filter: Filter - ON")
        self.shows(main, "label", "Position:  1/ 1", "Name: Mr. Bell")

        self.press(main, "Setup")
        self.press(self.is_told("Quillary Setup"), "Cancel")
        self.press(self.ear.window(MAIN), "Exit")
        self.assertEqual(process.wait(PATIENCE), 0)
        self.assertEqual(self.value("NoOfUses"), "0")


if __name__ == "__main__":
    desktop.PROGRAM = os.path.abspath(sys.argv.pop(1))
    unittest.main()
