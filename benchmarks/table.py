#!/usr/bin/env python3
"""Measures everything and prints a table: each figure beside the limit measured in the same run.

    benchmarks/table.py <build directory>

Needs a release build and Xvfb. Data go to TMPDIR, which should be on a real disk; the machine should
have nothing else to do.
"""

import json
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

STARTS = 9
FULL = 32767
CHANGES = ["InsertRecord", "DeleteRecord", "RestoreRecord", "ChangeNotes", "ChangeName"]


def medians(build, program):
    """Medians in milliseconds, by the benchmark's name without its settings."""
    # The programs before deleted many files, which may slow down those who come soon.
    time.sleep(6)
    in_turns = "true" if program == "backup_benchmark" else "false"
    out = subprocess.run(
        [os.path.join(build, "benchmarks", program), "--benchmark_format=json",
         "--benchmark_repetitions=5", "--benchmark_report_aggregates_only=true",
         f"--benchmark_enable_random_interleaving={in_turns}"],
        check=True, capture_output=True).stdout
    to_ms = {"ns": 1e-6, "us": 1e-3, "ms": 1, "s": 1e3}
    times = {}
    for row in json.loads(out)["benchmarks"]:
        if row["aggregate_name"] == "median":
            name = row["run_name"].split("/iterations")[0].replace("/real_time", "")
            times[name] = row["real_time"] * to_ms[row["time_unit"]]
    return times


def change_figures(build):
    """Medians in milliseconds of the changes of a record, by what and among how many: in a row, and
    at the pace of a user."""
    time.sleep(6)
    out = subprocess.run(
        [os.path.join(build, "benchmarks/change_benchmark"), "--benchmark_format=json"],
        check=True, capture_output=True).stdout
    return json.loads(out)["benchmarks"]


def start_figures(build, count):
    """Medians of the milliseconds to the painted list and of the megabytes used by then."""
    folder = tempfile.mkdtemp(prefix="quillary-start-")
    try:
        data = os.path.join(folder, "data")
        os.mkdir(data)
        subprocess.run([os.path.join(build, "benchmarks/generate_data"), data, str(count)],
                       check=True)
        with open(os.path.join(folder, "varek.ini"), "w", encoding="utf-8") as file:
            file.write(f"[QL32]\nVersion=2.0\nTips=0\n[Data Files]\nQuillDataPath={data}/\n")
        figures = []
        for _ in range(STARTS):
            out = subprocess.run(
                ["xvfb-run", "-a", os.path.join(build, "benchmarks/start_benchmark"), folder],
                check=True, capture_output=True, text=True).stdout.split()
            figures.append((float(out[0]), float(out[1]) / 1024))
        return [statistics.median(column) for column in zip(*figures)]
    finally:
        shutil.rmtree(folder)


def print_keepers(times):
    """The profile layer beside what else keeps such files."""
    print()
    print("| one key of a file of 100 records | read it | load the file and read it"
          " | change and save it, ms | synced |")
    print("|---|---|---|---|---|")
    keepers = [("Quillary", "synced"), ("SimpleIni", "no"), ("GKeyFile", "synced"),
               ("QSettings", "synced")]
    for name, synced in keepers:
        read = times.get("Read" + name)
        always = f"{read * 1000:.3g} us" if read is not None else "must load"
        print(f"| {name} | {always} | {times['LoadAndRead' + name] * 1000:.3g} us |"
              f" {times['ChangeAndSave' + name]:.3g} | {synced} |")


def print_changes(changes, at_pace):
    """What becomes of them with some seconds in between, and in as many files."""
    print()
    print("| a change of a record, ms | among 100 | among 100 in as many files"
          f" | among {FULL} | its files after it | at the pace of a user: among 100 | among {FULL} |")
    print("|---|---|---|---|---|---|---|")
    for name in CHANGES:
        figures = [changes[name + " few"], changes[name + " few in many files"],
                   changes[name + " many"], changes[f"finish {name} many"], at_pace[name + " few"],
                   at_pace[name + " many"]]
        print(f"| {name} | " + " | ".join(f"{figure:.2f}" for figure in figures) + " |")


def main():
    build = sys.argv[1]
    times = {}
    for part in ["store", "record", "import", "backup", "profile"]:
        times.update(medians(build, part + "_benchmark"))
    empty_ms, empty_mb = start_figures(build, 0)
    full_ms, full_mb = start_figures(build, FULL)

    rows = [("read an entry of an unchanged file", times["ReadEntry"] * 1000, "us", "2 us",
             times["ReadEntry"] * 1000, 2)]
    peers = [
            ("write an entry durably", "WriteEntry", "WriteSyncRename",
             "write, sync, rename the same bytes", 1.5),
            (f"GetNamesList, {FULL} records", "GetNamesList", "ReadAllFiles",
             "read all the files once", 4),
            (f"SortNamesList, {FULL} scrambled", "SortNamesList", "WriteAllFilesDurably",
             "write all the files durably", 2),
            ("import 8000 lines", "Import/8000", "WriteImportedFilesDurably/8000",
             "write the files durably", 3),
            ("back up", "BackUpFiles", "CopyAndSync", "cp and sync", 2),
            ("restore from backup", "RestoreFiles", "CopyAndSync", "cp and sync", 2)]
    for what, name, peer_name, peer_what, limit in peers:
        rows.append((what, times[name], "ms", f"{limit} x {peer_what}",
                     times[name] / times[peer_name], limit))
    changes, at_pace = change_figures(build)
    for name in CHANGES:
        rows.append((f"{name} among {FULL}", changes[name + " many"], "ms", "1.2 x among 100",
                     changes[name + " many"] / changes[name + " few"], 1.2))
    rows.append(("import 500 lines", times["Import/500"], "ms", "1/8 of importing 8000",
                 times["Import/500"] / times["Import/8000"] * 8, 1))
    for name in [key for key in times if "grep " + key in times]:
        rows.append((f"{name}, {FULL} records", times[name], "ms", "3 x grep -ciF for it",
                     times[name] / times["grep " + name], 3))
    rows.append(("ReadDeletedNamesList, 8000 records", times["ReadDeletedNamesList"], "ms", "300 ms",
                 times["ReadDeletedNamesList"], 300))
    rows.append((f"start to painted list, {FULL} records", full_ms, "ms",
                 "150 ms more than with none", full_ms - empty_ms, 150))
    rows.append(("memory by then", full_mb, "MB", "60 MB more than with none",
                 full_mb - empty_mb, 60))

    print("| what | measured | limit | against the limit | |")
    print("|---|---|---|---|---|")
    for what, value, unit, limit_text, against, limit in rows:
        print(f"| {what} | {value:.3g} {unit} | {limit_text} | {against:.3g} of {limit} |"
              f" {'kept' if against <= limit else 'MISSED'} |")
    print_changes(changes, at_pace)
    print_keepers(times)


if __name__ == "__main__":
    main()
