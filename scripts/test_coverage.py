#!/usr/bin/env python3
"""Which lines of src/ each test runs, which only it runs, and which tests the
suite could do without.

    python3 scripts/test_coverage.py BINARY... [--build-dir build-coverage] [--src src/batch]
    python3 scripts/test_coverage.py BINARY... --cover [--keep REGEX] [--mutants RESULTS.tsv]

Needs the --coverage build of scripts/coverage.sh. Runs every test of each
binary alone (GoogleTest's --gtest_filter, or the function name for the
desktop's QtTest binary), reads with gcov the lines of src/ it ran (those
under --src only, when given) and keeps them in
BUILD_DIR/test-coverage/<binary>.json; a later run reuses that file unless
--again is given.

Without --cover it prints one line per test: the lines it runs, the lines no
other test of the binaries given runs, and its name, fewest unique lines
first.

With --cover it chooses the tests to keep: first those whose name matches a
--keep pattern and, for each mutant a results file of scripts/mutants.py
says was killed, one of the tests that killed it (when none is kept yet);
then, greedily, the test that runs most lines not yet run, until every line
any test runs is run. It prints the other tests, per binary: every line they
run is run by a kept test, and no mutant they kill needs them.
"""

import argparse
import json
import os
import re
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import mutants

ROOT = Path(__file__).resolve().parent.parent


def is_qttest(binary):
    return binary.name == "ui_tests"


def tests_of(binary):
    if is_qttest(binary):
        listing = subprocess.run([str(binary), "-platform", "offscreen", "-functions"],
                                 capture_output=True, text=True, check=True).stdout
        return sorted({line.strip().rstrip("()") for line in listing.splitlines()
                       if line.strip().endswith("()")})
    listing = subprocess.run([str(binary), "--gtest_list_tests"], capture_output=True, text=True,
                             check=True).stdout
    names, suite = [], ""
    for line in listing.splitlines():
        if not line.strip():
            continue
        if not line.startswith(" "):
            suite = line.split()[0]
        else:
            names.append(suite + line.split()[0])
    return names


def source_tree(build):
    """The source tree the build was configured from."""
    for line in (build / "CMakeCache.txt").read_text(encoding="utf-8").splitlines():
        if line.startswith("CMAKE_HOME_DIRECTORY:INTERNAL="):
            return Path(line.split("=", 1)[1]).resolve()
    return ROOT


def lines_run(build, source, gcdas):
    """The "file:line" of src/ run since the counters were last cleared."""
    run = set()
    # One gcov per processor, each on its share of the counter files.
    shares = [gcdas[i::os.cpu_count() or 1] for i in range(os.cpu_count() or 1)]

    def gcov(share):
        return subprocess.run(["gcov", "--json-format", "--stdout"] + share, cwd=build,
                              capture_output=True, text=True).stdout

    with ThreadPoolExecutor() as pool:
        outputs = list(pool.map(gcov, [share for share in shares if share]))
    for out in outputs:
        for document in out.splitlines():
            if not document.startswith("{"):
                continue
            for entry in json.loads(document).get("files", []):
                name = entry["file"]
                path = (build / name).resolve() if not name.startswith("/") else Path(name)
                try:
                    relative = path.relative_to(source).as_posix()
                except ValueError:
                    continue
                if not relative.startswith("src/"):
                    continue
                run.update(f"{relative}:{line['line_number']}" for line in entry["lines"]
                           if line["count"] > 0)
    return run


def measure(build, binary, source):
    """{test: sorted lines} for every test of `binary`, each run alone."""
    per_test = {}
    names = tests_of(binary)
    for number, name in enumerate(names, 1):
        for gcda in build.rglob("*.gcda"):
            gcda.unlink()
        command = [str(binary), f"--gtest_filter={name}"]
        if is_qttest(binary):
            command = [str(binary), "-platform", "offscreen", name]
        subprocess.run(command, cwd=binary.parent, capture_output=True, timeout=600)
        gcdas = [str(p) for p in build.rglob("*.gcda")]
        per_test[name] = sorted(lines_run(build, source, gcdas))
        print(f"{binary.name} {number}/{len(names)} {name}: {len(per_test[name])} lines",
              file=sys.stderr)
    return per_test


def cover(per_test, keep_patterns, mutant_results):
    """The tests kept, and why each was."""
    kept = {}
    for test in per_test:
        if any(re.search(p, test) for p in keep_patterns):
            kept[test] = "kept by name"
    bare = {name.split(":", 1)[1]: name for name in per_test}
    for results in mutant_results:
        for mutant, fields in mutants.read_results(results).items():
            names = mutants.killers_of(fields)
            present = [bare[n] for n in names if n in bare]
            if present and not any(n in kept for n in present):
                kept[min(present, key=lambda n: len(per_test[n]))] = f"kills {mutant}"
    covered = set()
    for test in kept:
        covered.update(per_test[test])
    left = {t: set(lines) - covered for t, lines in per_test.items() if t not in kept}
    while True:
        best = max(left, key=lambda t: len(left[t]), default=None)
        if best is None or not left[best]:
            break
        kept[best] = f"runs {len(left[best])} lines no kept test runs"
        gained = left.pop(best)
        for t in left:
            left[t] -= gained
    return kept


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[1].strip(),
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("binaries", nargs="+",
                        help="test binaries, relative to the build folder or absolute")
    parser.add_argument("--build-dir", default="build-coverage")
    parser.add_argument("--src", default="src/", help="count only lines of files under this folder")
    parser.add_argument("--again", action="store_true", help="measure even if measured before")
    parser.add_argument("--cover", action="store_true",
                        help="print the tests a kept set covering every line does without")
    parser.add_argument("--keep", action="append", default=[],
                        help="with --cover: keep the tests whose binary:name matches this regex")
    parser.add_argument("--mutants", action="append", default=[],
                        help="with --cover: results of scripts/mutants.py whose killers to keep")
    args = parser.parse_args()
    build = (ROOT / args.build_dir).resolve()
    source = source_tree(build)
    out = build / "test-coverage"
    out.mkdir(exist_ok=True)

    per_test = {}
    for given in args.binaries:
        binary = Path(given) if Path(given).is_absolute() else build / given
        saved = out / f"{binary.name}.json"
        if saved.exists() and not args.again:
            measured = json.loads(saved.read_text(encoding="utf-8"))
        else:
            measured = measure(build, binary, source)
            saved.write_text(json.dumps(measured), encoding="utf-8")
        for name, lines in measured.items():
            per_test[f"{binary.name}:{name}"] = [l for l in lines if l.startswith(args.src)]

    if args.cover:
        kept = cover(per_test, args.keep, args.mutants)
        for test in sorted(per_test):
            if test not in kept:
                print(f"{len(per_test[test]):6}  {test}")
        print(f"{len(kept)} tests kept, {len(per_test) - len(kept)} not needed", file=sys.stderr)
        return 0

    runs = {}
    for lines in per_test.values():
        for line in lines:
            runs[line] = runs.get(line, 0) + 1
    rows = sorted((sum(1 for line in lines if runs[line] == 1), len(lines), name)
                  for name, lines in per_test.items())
    for unique, total, name in rows:
        print(f"{total:6} {unique:6}  {name}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
