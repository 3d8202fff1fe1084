#!/usr/bin/env python3
"""Which lines of src/ each test of one test binary runs, and which only it runs.

    python3 scripts/test_coverage.py BINARY [--build-dir build-coverage] [--src src/batch]

Needs the --coverage build of scripts/coverage.sh. Runs every test of the
binary alone (--gtest_filter), reads with gcov the lines of src/ it ran
(those under --src only, when given), then prints one line per test: the
lines it runs, the lines no other test of the binary runs, and its name,
fewest unique lines first. A test that runs no line of its own is a
candidate for deletion when it also kills no mutant that another test does
not (scripts/mutants.py); one with lines of its own is not, unless another
binary runs them. The counts per test also go to
BUILD_DIR/test-coverage/<binary>.json.
"""

import argparse
import json
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent


def tests_of(binary):
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


def lines_run(build, source, only):
    """The (file, line) of src/ run since the counters were last cleared."""
    gcdas = [str(p) for p in build.rglob("*.gcda")]
    run = set()
    for start in range(0, len(gcdas), 200):
        out = subprocess.run(["gcov", "--json-format", "--stdout"] + gcdas[start:start + 200],
                             cwd=build, capture_output=True, text=True).stdout
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
                if not relative.startswith(only):
                    continue
                run.update((relative, line["line_number"]) for line in entry["lines"]
                           if line["count"] > 0)
    return run


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[1].strip(),
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("binary", help="test binary, relative to the build folder or absolute")
    parser.add_argument("--build-dir", default="build-coverage")
    parser.add_argument("--src", default="src/", help="count only lines of files under this folder")
    args = parser.parse_args()
    build = (ROOT / args.build_dir).resolve()
    binary = Path(args.binary) if Path(args.binary).is_absolute() else build / args.binary

    source = source_tree(build)
    per_test = {}
    names = tests_of(binary)
    for number, name in enumerate(names, 1):
        for gcda in build.rglob("*.gcda"):
            gcda.unlink()
        subprocess.run([str(binary), f"--gtest_filter={name}"], cwd=binary.parent,
                       capture_output=True)
        per_test[name] = lines_run(build, source, args.src)
        print(f"{number}/{len(names)} {name}: {len(per_test[name])} lines", file=sys.stderr)

    runs = {}
    for lines in per_test.values():
        for line in lines:
            runs[line] = runs.get(line, 0) + 1
    rows = []
    for name, lines in per_test.items():
        unique = sum(1 for line in lines if runs[line] == 1)
        rows.append((unique, len(lines), name))
    rows.sort()
    for unique, total, name in rows:
        print(f"{total:6} {unique:6}  {name}")
    out = build / "test-coverage"
    out.mkdir(exist_ok=True)
    (out / f"{binary.name}.json").write_text(json.dumps(
        {name: {"lines": total, "unique": unique} for unique, total, name in rows}, indent=1))
    return 0


if __name__ == "__main__":
    sys.exit(main())
