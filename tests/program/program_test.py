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
from desktop import COPY, DELETE, FIND, FIRST_DELETED, MAIN, PATIENCE, wait_for


class WholeProgramTest(desktop.ProgramTest):
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

        before = self.text("quill0.dat")
        self.restart(process)
        self.assertEqual(self.text("quill0.dat"), before)

    def test_a_record_is_changed_deleted_and_restored(self):
        self.first_start()
        for first, last in [("Ann", "Aster"), ("Bob", "Bell"), ("Cid", "Cole")]:
            self.add(first, last)
        self.select_first()
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
        self.assertEqual(self.value("DelNoOfRecords"), "2")

        # Cole stands above Zuse.
        self.open_restore()
        self.desktop.click(*FIRST_DELETED, times=2)
        self.desktop.wait_active(MAIN)
        wait_for("the record", lambda: self.lists() == ["1", "2"])
        self.assertEqual(self.value("DelNoOfRecords"), "1")

    def test_details_are_found_and_copied(self):
        process = self.first_start()
        self.add("Ann", "Lee", "", "Acme", "1 Oak Road", *[""] * 5, "555 1", "", "555 3")
        self.add("Bob", "Lee")
        self.add("Cid", "Varek")
        process = self.restart(process, NameField="2", CopyName="1", CopyAddress="1",
                               CopyPhone1="1", CopyFax="1", UsePrefix="1", PrefixSprt="3",
                               Phone1Prefix="Tel", FaxPrefix="Fax")
        self.assertEqual(self.copied("alt+c"),
                         b"Ann Lee\r1 Oak Road\rTel: 555 1\rFax: 555 3\r")
        self.desktop.click(*COPY, button="3")
        self.desktop.key("Down", "Down", "Return")
        wait_for("all details", lambda: self.desktop.clipboard() ==
                 b"Ann Lee\rAcme\r1 Oak Road\rTel: 555 1\rFax: 555 3\r")

        self.desktop.click(*FIND)
        self.desktop.type("LEE")
        for found in [b"Bob Lee\r", b"Ann Lee\r1 Oak Road\rTel: 555 1\rFax: 555 3\r",
                      b"Bob Lee\r"]:
            self.desktop.key("Return")
            wait_for(found, lambda: self.copied("alt+c") == found)
        self.desktop.key("ctrl+a")
        self.desktop.type("Bob")
        self.desktop.key("Return")
        self.desktop.wait_active("Can't find text")
        self.desktop.key("Return")
        self.desktop.wait_active(MAIN)
        self.assertEqual(self.copied("alt+c"), b"Bob Lee\r")

        self.restart(process, UsePrefix="0")
        self.assertEqual(self.copied("alt+c"), b"Ann Lee\r1 Oak Road\r555 1\r555 3\r")

    def test_a_number_is_dialled(self):
        process = self.first_start()
        self.add("Ann", "Lee", *[""] * 8, "555 1")
        modem = desktop.Modem()
        self.addCleanup(modem.close)
        with open(os.path.join(self.desktop.env["XDG_CONFIG_HOME"], "varek.ini"), "a",
                  encoding="utf-8") as file:
            file.write(f"[Ports]\r\nCOM2={modem.port}\r\n")
        process = self.restart(process, CommPort="2", DialSystem="DP")
        self.select_first()
        self.desktop.key("Tab", "Down", "space")  # the first number of her details
        self.desktop.wait_active("Dial a Number")
        self.assertTrue(modem.hears(b"ATDP555 1"))
        modem.say(b"\r\nBusy\r\n")
        self.desktop.wait_active("BUSY")
        self.desktop.key("Return")
        self.assertTrue(modem.hears(b"ATH"))
        self.desktop.wait_active("Dial a Number")
        self.desktop.key("ctrl+a")
        self.desktop.type("555 2")
        self.desktop.key("Return")
        self.assertTrue(modem.hears(b"ATDP555 2"))

        process.send_signal(signal.SIGTERM)
        self.assertEqual(process.wait(PATIENCE), 0)
        self.assertTrue(modem.hears(b"ATH"))
        self.assertEqual(self.value("NoOfUses"), "0")

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
