"""The Debian package on a clean Debian, and what its coming and going do to a user's data.

    package_test.py <root of a Debian> <the package> <a newer one>

Needs root. scripts/check_package.sh runs it.
"""

import os
import shutil
import signal
import subprocess
import sys
import unittest

import desktop
from desktop import MAIN, PATIENCE, wait_for

ROOT = ""
PACKAGES = []
USER = "ann"


def in_root(*command):
    subprocess.run(["chroot", ROOT, *command], check=True,
                   env={"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "LC_ALL": "C.UTF-8",
                        "DEBIAN_FRONTEND": "noninteractive"})


def apt_install(package):
    name = os.path.basename(shutil.copy(package, os.path.join(ROOT, "tmp")))
    in_root("apt-get", "install", "-y", "--no-install-recommends", f"/tmp/{name}")


class PackageTest(desktop.ProgramTest):
    def install(self):
        in_root("useradd", "--create-home", "--shell", "/bin/sh", USER)
        self.home = os.path.join(ROOT, "home", USER)
        self.dist = os.path.join(self.home, ".local/share/quillary")

    def start(self):
        process = subprocess.Popen(
            ["chroot", f"--userspec={USER}", ROOT, "env", "-i", f"HOME=/home/{USER}",
             "PATH=/usr/bin:/bin", f"DISPLAY={self.desktop.env['DISPLAY']}", "quillary"])
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        return process

    def end(self, process):
        process.send_signal(signal.SIGTERM)
        self.assertEqual(process.wait(PATIENCE), 0)
        self.assertEqual(self.value("NoOfUses"), "0")

    def files(self):
        """Owner, permissions and bytes of every file of the user's."""
        found = {}
        for folder, _, names in os.walk(self.home):
            for name in names:
                path = os.path.join(folder, name)
                status = os.stat(path)
                with open(path, "rb") as file:
                    found[path] = (status.st_uid, status.st_mode, file.read())
        return found

    def test_the_data_outlive_the_package(self):
        in_root("apt-get", "update", "-q")
        apt_install(PACKAGES[0])
        process = self.first_start()
        self.add("Ann", "Lee")
        wait_for("the record", lambda: self.value("NoOfRecords") == "1")
        self.end(process)
        self.assertIn("LastName=Lee", self.text("quill0.dat"))
        files = self.files()
        self.assertIn(os.path.join(self.home, ".config/varek.ini"), files)

        apt_install(PACKAGES[1])
        self.assertEqual(self.files(), files)
        process = self.later_start()
        self.assertEqual(self.desktop.active(), MAIN)
        self.add("Bob", "May")
        wait_for("the record", lambda: self.value("NoOfRecords") == "2")
        self.end(process)
        files = self.files()
        self.assertIn("LastName=Lee", self.text("quill0.dat"))

        in_root("apt-get", "remove", "-y", "quillary")
        self.assertFalse(os.path.exists(os.path.join(ROOT, "usr/bin/quillary")))
        self.assertEqual(self.files(), files)
        apt_install(PACKAGES[1])
        in_root("apt-get", "purge", "-y", "quillary")
        self.assertEqual(self.files(), files)
        self.assertFalse(os.path.exists(os.path.join(ROOT, "usr/share/doc/quillary")))


if __name__ == "__main__":
    PACKAGES = [os.path.abspath(path) for path in sys.argv[2:]]
    ROOT = os.path.abspath(sys.argv[1])
    unittest.main(argv=sys.argv[:1])
