"""What is installed is complete and starts.

    install_test.py <the folder the program was built in>
"""

import os
import subprocess
import sys
import unittest

import desktop
from desktop import wait_for

BUILT = ""


class InstallTest(desktop.ProgramTest):
    def install(self):
        self.prefix = os.path.join(self.folder, "prefix")
        subprocess.run(["cmake", "--install", BUILT, "--prefix", self.prefix], check=True,
                       stdout=subprocess.DEVNULL)
        self.program = os.path.join(self.prefix, "bin/quillary")
        self.dist = os.path.join(self.desktop.env["XDG_DATA_HOME"], "quillary")

    def installed(self):
        return sorted(os.path.relpath(os.path.join(folder, name), self.prefix)
                      for folder, _, names in os.walk(self.prefix) for name in names)

    def test_the_program_keeps_its_data_in_the_users_folder(self):
        before = self.installed()
        process = self.first_start()
        self.add("Ann", "Lee")
        wait_for("the record", lambda: self.value("NoOfRecords") == "1")
        self.restart(process)
        self.assertEqual(self.value("NoOfRecords"), "1")
        self.assertEqual(self.installed(), before)

    def test_what_desktops_and_readers_use_is_valid(self):
        share = os.path.join(self.prefix, "share")
        for command in [
                ["desktop-file-validate", f"{share}/applications/quillary.desktop"],
                # The program has no domain of its own to be called by.
                ["appstreamcli", "validate", "--no-net",
                 "--override=cid-desktopapp-is-not-rdns=info",
                 f"{share}/metainfo/quillary.metainfo.xml"]]:
            result = subprocess.run(command, capture_output=True, text=True, check=False)
            self.assertEqual(result.returncode, 0, result.stdout + result.stderr)
        self.assertIn("quillary", subprocess.run(
            ["zcat", f"{share}/man/man1/quillary.1.gz"], capture_output=True, text=True,
            check=True).stdout)
        for side in [16, 256]:
            path = f"{share}/icons/hicolor/{side}x{side}/apps/quillary.png"
            with open(path, "rb") as file:
                size = file.read(24)[16:]  # width and height
            self.assertEqual(size, side.to_bytes(4, "big") * 2)


if __name__ == "__main__":
    BUILT = os.path.abspath(sys.argv.pop(1))
    unittest.main()
