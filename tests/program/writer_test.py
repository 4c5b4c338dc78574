"""Pasting into a real word processor.

    writer_test.py <the program> <the process through which it talks to Writer>

Needs LibreOffice Writer and its part for Python; without them there is nothing to test.
"""

import json
import os
import shutil
import signal
import subprocess
import sys
import time
import unittest

import desktop
from desktop import COPY, MAIN, PATIENCE, wait_for

BRIDGE = ""
PYTHON = "/usr/bin/python3"  # the one that the system's packages are for
CANNOT_PASTE = "Can't paste into WinWord"
PROBES = 10  # seconds from one to the next
SELECTED = "Ann Lee\r1 Oak Road\rTél\t555 1\r".encode()
ALL = SELECTED.replace(b"\r", b"\rAcme\r", 1)
PASTED = SELECTED.decode().split("\r")[:-1]
# Runs one statement with the document that the user was in last; prints its paragraphs.
OFFICE = """
import json, sys, uno
local = uno.getComponentContext()
resolver = local.ServiceManager.createInstance("com.sun.star.bridge.UnoUrlResolver")
office = resolver.resolve(f"uno:pipe,name={sys.argv[1]};urp;StarOffice.ComponentContext")
desktop = office.ServiceManager.createInstanceWithContext("com.sun.star.frame.Desktop", office)
document = desktop.getCurrentComponent()
exec(sys.argv[2])
paragraphs = document.getText().createEnumeration()
texts = []
while paragraphs.hasMoreElements():
    texts.append(paragraphs.nextElement().getString())
print(json.dumps(texts))
"""
PROTECT = """
section = document.createInstance("com.sun.star.text.TextSection")
cursor = document.getText().createTextCursor()
cursor.gotoEnd(True)
document.getText().insertTextContent(cursor, section, True)
section.IsProtected = True
"""


SELECT_ALL = "document.getCurrentController().select(document.getText())"
END = "document and document.setModified(False); desktop.terminate()"
OPEN_READ_ONLY = """
option = uno.createUnoStruct("com.sun.star.beans.PropertyValue")
option.Name, option.Value = "ReadOnly", True
document.storeToURL(f"file://{sys.argv[3]}/read-only.odt", ())
document = desktop.loadComponentFromURL(f"file://{sys.argv[3]}/read-only.odt", "_blank", 0, (option,))
"""


def is_installed():
    return shutil.which("soffice") is not None and subprocess.run(
        [PYTHON, "-c", "import uno"], check=False, stderr=subprocess.DEVNULL).returncode == 0


@unittest.skipUnless(is_installed(), "needs libreoffice-writer and python3-uno")
class WriterTest(desktop.ProgramTest):
    def start_writer(self):
        """As the user does, with the user profile in his home folder."""
        writer = subprocess.Popen(
            ["soffice", "--writer", "--nologo", "--nofirststartwizard", "--norestore"],
            env=self.desktop.env, start_new_session=True,
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(self.end_writer, writer)
        wait_for("Writer", lambda: self.desktop.run("xdotool", "search", "--name", "Writer"))
        self.pipe = f"test{os.path.basename(self.folder)}"
        subprocess.run(["soffice", f"--accept=pipe,name={self.pipe};urp"], env=self.desktop.env,
                       check=True, timeout=PATIENCE)
        wait_for("the document", lambda: self.office() == [""])
        return writer

    def end_writer(self, writer):
        """Politely if it can be, since it then takes its pipes with it."""
        self.send(writer, signal.SIGCONT)
        self.office(END)
        try:
            writer.wait(5)
        except subprocess.TimeoutExpired:
            self.send(writer, signal.SIGKILL)
            writer.wait()

    def send(self, writer, number):
        """To all that belongs to Writer."""
        try:
            os.killpg(writer.pid, number)
        except ProcessLookupError:
            pass

    def office(self, statement="pass"):
        answer = subprocess.run([PYTHON, "-c", OFFICE, self.pipe, statement, self.folder],
                                env=self.desktop.env, capture_output=True, check=False,
                                timeout=PATIENCE).stdout
        return json.loads(answer) if answer else None

    def paste(self):
        """Chooses the last item of the copy menu that is enabled."""
        self.desktop.click(*COPY, button="3")
        time.sleep(0.3)
        self.desktop.key("Up", "Return")
        time.sleep(0.3)

    def copy_all(self):
        self.desktop.shift_click(*COPY)
        time.sleep(0.3)
        self.assertEqual(self.desktop.clipboard(), ALL)

    def expect_failure(self, copied):
        """The user is told, and the clipboard has what was copied last."""
        self.desktop.wait_active(CANNOT_PASTE)
        self.assertEqual(self.desktop.clipboard(), copied)
        self.desktop.key("Return")
        self.desktop.wait_active(MAIN)

    def paste_in_time(self):
        """Where the last item is not enabled, the one before it copies all."""
        def is_enabled():
            self.paste()
            return self.desktop.clipboard() == SELECTED
        wait_for("the menu item", is_enabled)

    def test_the_details_are_pasted_where_the_cursor_is(self):
        process = self.first_start()
        self.add("Ann", "Lee", "", "Acme", "1 Oak Road", *[""] * 5, "555 1")
        self.restart(process, NameField="2", CopyName="1", CopyAddress="1", CopyPhone1="1",
                     UsePrefix="1", PrefixSprt="0", Phone1Prefix="Tél")
        self.paste()
        self.assertEqual(self.desktop.clipboard(), ALL)
        writer = self.start_writer()
        self.desktop.run("xdotool", "search", "--name", f"^{MAIN}$", "windowactivate", "--sync")
        self.desktop.wait_active(MAIN)
        self.paste_in_time()
        probed = time.monotonic()
        wait_for("the text", lambda: self.office() == PASTED + [""])

        self.send(writer, signal.SIGSTOP)
        self.paste()
        self.copy_all()
        self.expect_failure(ALL)
        time.sleep(max(0, probed + PROBES + 0.5 - time.monotonic()))
        self.paste()
        self.assertEqual(self.desktop.clipboard(), ALL)
        self.send(writer, signal.SIGCONT)
        self.assertEqual(self.office(), PASTED + [""])
        self.paste_in_time()
        wait_for("the text", lambda: self.office() == PASTED + PASTED + [""])

        self.copy_all()
        self.office(END)
        writer.wait(PATIENCE)
        self.paste()
        self.expect_failure(SELECTED)
        self.assertEqual(self.copied("alt+c"), SELECTED)

    def ask(self, **request):
        self.bridge.stdin.write(json.dumps(dict(request, id=1)).encode() + b"\n")
        self.bridge.stdin.flush()
        return json.loads(self.bridge.stdout.readline()).get("text")

    def test_the_process_that_talks_to_writer(self):
        self.pipe = ""
        writer = self.start_writer()
        number = self.desktop.run("pgrep", "-g", str(writer.pid), "soffice.bin").strip()
        self.bridge = subprocess.Popen(
            [PYTHON, BRIDGE, self.pipe + "2", number, "soffice"],
            env=self.desktop.env, stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.addCleanup(self.bridge.stdout.close)
        self.addCleanup(self.bridge.wait)
        self.addCleanup(self.bridge.kill)
        self.assertEqual(self.ask(do="open"), "")
        self.assertEqual(self.ask(do="request", item="Topics"), "System\tDefault\tUntitled 1")
        paste = {"do": "execute", "command": "[EditPaste]"}
        self.assertEqual(self.ask(**paste, clipboard="a\rb\n\r\nc"), "")
        self.office(SELECT_ALL)
        self.assertIsNone(self.ask(**paste, clipboard=""))
        self.desktop.key("ctrl+F3")
        self.desktop.wait_active("AutoText")
        self.assertIsNone(self.ask(**paste, clipboard="x"))
        self.desktop.key("Escape")
        wait_for("Writer", lambda: self.desktop.active().endswith("Writer"))
        self.assertEqual(self.ask(**paste, clipboard="a\rb\n\r\nc"), "")
        self.assertEqual(self.office(PROTECT), ["a", "b", "", "c"])
        self.assertIsNone(self.ask(**paste, clipboard="x"))
        self.assertEqual(self.office(), ["a", "b", "", "c"])
        self.assertEqual(self.office(OPEN_READ_ONLY), ["a", "b", "", "c"])
        self.assertEqual(self.ask(do="request", item="Topics"),
                         "System\tDefault\tread-only.odt (read-only)\tUntitled 1")
        self.assertIsNone(self.ask(**paste, clipboard="x"))
        self.assertEqual(self.office(), ["a", "b", "", "c"])
        for _ in range(2):
            self.office("document.close(True)")
        self.assertEqual(self.ask(do="request", item="Topics"), "System\tDefault")
        self.assertIsNone(self.ask(**paste, clipboard="x"))

        self.send(writer, signal.SIGSTOP)
        self.bridge.stdin.write(b'{"id": 1, "do": "open"}\n')
        self.bridge.stdin.close()
        self.assertEqual(self.bridge.wait(PATIENCE), 0)


if __name__ == "__main__":
    BRIDGE = os.path.abspath(sys.argv.pop(2))
    desktop.PROGRAM = os.path.abspath(sys.argv.pop(1))
    unittest.main()
