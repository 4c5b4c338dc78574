#!/usr/bin/env python3
"""What a user does with the largest data set, 32767 live and 32767 deleted records: prints the time
and the peak memory of each step, every one in a process of its own.

    benchmarks/scale.py <build directory>

Needs a release build and Xvfb. Data go to TMPDIR, which should be on a real disk.
"""

import os
import subprocess
import sys
import tempfile

MOST = 32767
STEPS = [("find what is nowhere, in all fields", "find"), ("filter by last name", "filter"),
         ("edit in place", "edit"), ("edit that moves", "edit-moves"),
         ("open the deleted list (8000 of it)", "read-deleted"), ("back up", "back-up"),
         ("restore from backup", "restore-backup"), ("import 8000, replacing all", "import")]


def main():
    programs = os.path.join(sys.argv[1], "benchmarks")

    def run(*command):
        return subprocess.run(command, check=True, capture_output=True, text=True).stdout.split()

    rows = []
    with tempfile.TemporaryDirectory(prefix="quillary-scale-") as folder:
        data, fewer, scrambled, medium = [os.path.join(folder, name)
                                          for name in ["data", "fewer", "scrambled", "medium"]]
        for path in [data, fewer, scrambled, medium]:
            os.mkdir(path)
        generate = os.path.join(programs, "generate_data")
        run(generate, data, str(MOST), "--deleted", str(MOST))
        # Where a list is full, nothing can be deleted or restored.
        run(generate, fewer, str(MOST - 1), "--deleted", str(MOST - 1))
        run(generate, scrambled, str(MOST), "--deleted", str(MOST), "--scrambled")
        with open(os.path.join(folder, "varek.ini"), "w", encoding="utf-8") as file:
            file.write(f"[QL32]\nVersion=2.0\nTips=0\n[Data Files]\nQuillDataPath={data}/\n")
        milliseconds, kilobytes = run(
            "xvfb-run", "-a", os.path.join(programs, "start_benchmark"), folder)
        rows.append(("start to the painted list", float(milliseconds), float(kilobytes) / 1024))

        def step(what, name, path):
            figures = run(os.path.join(programs, "scale_step"), name, path, medium)
            rows.append((what, *map(float, figures)))

        step("sort scrambled lists and link them anew", "sort", scrambled)
        step("delete", "delete", fewer)
        step("restore", "restore", fewer)
        for what, name in STEPS:
            step(what, name, data)

    print(f"| {MOST} live and {MOST} deleted records | ms | peak MB |")
    print("|---|---|---|")
    for what, milliseconds, megabytes in rows:
        print(f"| {what} | {milliseconds:.1f} | {megabytes:.0f} |")


if __name__ == "__main__":
    main()
