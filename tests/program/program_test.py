"""The whole program in a real window: what a user does, seen in the files and on the clipboard.

    program_test.py <the program>

Brings its own X server and window manager; everything it writes goes to a temporary folder.
"""

import os
import signal
import subprocess
import sys
import time
import unittest

import desktop
from desktop import DELETE, FIND, FIRST_DELETED, FIRST_NAME, MAIN, PATIENCE, wait_for


class WholeProgramTest(desktop.ProgramTest):
    def test_records_are_changed_deleted_restored_found_and_copied(self):
        process = self.first_start()
        self.add("Ann", "Aster", "", "Acme", "1 Oak Road", *[""] * 5, "555 1", "", "555 3")
        self.add("Bob", "Bell")
        self.add("Cid", "Cole")
        self.desktop.click(*FIRST_NAME)
        self.desktop.key("alt+e")
        self.desktop.wait_active("Edit Name")
        self.desktop.key("Tab", "Tab")
        self.desktop.type("Zuse")
        self.desktop.key("Return")
        self.desktop.wait_active(MAIN)
        wait_for("the new name", lambda: "ShowName=Zuse, Ann\r" in self.text("quill0.dat"))
        self.assertEqual(self.lists(), ["1", "2", "0"])

        # The changed record is still the selected one: it is what is deleted.
        self.desktop.key("alt+d")
        self.desktop.wait_active("Delete Name")
        self.desktop.key("Return")
        self.desktop.wait_active(MAIN)
        wait_for("the deletion", lambda: self.lists() == ["1", "2"])
        self.desktop.shift_click(*DELETE)
        wait_for("the deletion", lambda: self.lists() == ["1"])
        # By the menu of the names list; Cole stands above Zuse.
        for _ in range(2):
            self.desktop.click(*FIRST_NAME)
            self.desktop.key("Menu", *["Up"] * 4, "Right", "Up", "Return")
            self.desktop.wait_active("Restore Deleted Record")
            self.desktop.click(*FIRST_DELETED, times=2)
            self.desktop.wait_active(MAIN)
        wait_for("the records", lambda: self.lists() == ["1", "2", "0"])

        before = self.text("quill0.dat")
        self.restart(process, NameField="2", CopyName="1", CopyAddress="1", CopyPhone1="1",
                     CopyFax="1", UsePrefix="1", PrefixSprt="3", Phone1Prefix="Tel",
                     FaxPrefix="Fax")
        self.assertEqual(self.text("quill0.dat"), before)
        self.desktop.click(*FIND)
        for text, found in [("O", b"Cid Cole\r"), ("", b"Bob Bell\r"),
                            ("ZU", b"Ann Zuse\r1 Oak Road\rTel: 555 1\rFax: 555 3\r")]:
            if text:
                self.desktop.key("ctrl+a")
                self.desktop.type(text)
            self.desktop.key("Return")
            wait_for(found, lambda: self.copied("alt+c") == found)
        self.desktop.key("Return")
        self.desktop.wait_active("Can't find text")
        self.desktop.key("Return")
        self.desktop.wait_active(MAIN)

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
        self.desktop.wait_active(MAIN)
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
        wait_for("the icon", lambda: self.desktop.active() != MAIN)
        path = os.path.join(self.dist, "quilldat", "quill.dat")
        before = os.stat(path)
        second = self.start()
        self.assertEqual(second.wait(PATIENCE), 0)
        self.desktop.wait_active(MAIN)
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
        self.desktop.wait_active(MAIN)
        wait_for("the counter", lambda: self.value("NoOfUses") == "1")
        self.add("Ann", "Lee")
        wait_for("the record", lambda: self.value("NoOfRecords") == "1")


if __name__ == "__main__":
    desktop.PROGRAM = os.path.abspath(sys.argv.pop(1))
    unittest.main()
