#!/usr/bin/env python3
"""Mutation score of the test suite on a fixed sample of mutants.

    python3 scripts/mutants.py [--list] [--limit N] [--build-dir DIR]

Finds every place in a chosen set of source files where a simple mutation
applies (a comparison flipped, && and || swapped, an integer constant changed
by one, a statement dropped, a condition negated, break and continue
swapped), draws a fixed sample of them with a fixed seed, and for each one:
applies it to the source tree, rebuilds the tests of the library that holds
the file, runs them, and puts the file back. A mutant is killed when the
tests fail or time out, survives when they pass, and is stillborn when it
does not compile (stillborn mutants do not count).

The sample is drawn once (--draw) and kept in scripts/mutants-sample.json,
each mutant with the text of the line it changes. Later runs take the mutants
from that file and find each line by its text, so scores taken before and
after a change of the tests are over the same mutants even when the sources
moved on; a mutant whose line is no longer there is "gone" and not counted.
The results go to out/mutants/results.tsv (one line per mutant, kept between
runs: a run resumes where the last one stopped, with the tests that failed
on each mutant) and the score to standard output; --needed lists the tests
that alone kill some mutant.
"""

import argparse
import json
import os
import random
import re
import subprocess
import sys
import tempfile
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
SEED = 2026
SAMPLE = ROOT / "scripts" / "mutants-sample.json"

# Areas of the sample: (name, source folders or files, mutants drawn).
AREAS = [
    ("core", ["src/log", "src/plotrun", "src/plottest", "src/plotcfg", "src/host", "src/text"], 100),
    ("list file", ["src/batch"], 60),
    ("DXF reader", ["src/embedded/dxf"], 80),
    ("plot engine", ["src/embedded/render"], 80),
]

COMPARISONS = {"==": "!=", "!=": "==", "<=": ">", ">=": "<", " < ": " >= ", " > ": " <= "}
DECLARATION_START = re.compile(
    r"^\s*(const\s+|static\s+|constexpr\s+)*"
    r"(auto|bool|int|char|double|float|std::|size_t|unsigned|long|short|[A-Z]\w*\s*[&*]?\s+\w)")
STATEMENT = re.compile(r"^(\s*)([A-Za-z_][\w:]*(\.|->|\(|\s*[-+*/|&]?=[^=]|\+\+|--)).*;\s*$")
KEYWORDS = ("return", "if", "for", "while", "else", "case", "break", "continue", "throw",
            "delete", "using", "namespace", "template", "typename", "goto", "default", "do")
INTEGER = re.compile(r"(?<![\w.])(\d+)(?![\w.'])")


def masked(line):
    """The line with comments removed and string/char contents blanked."""
    out, quote, i = [], None, 0
    while i < len(line):
        c = line[i]
        if quote:
            if c == "\\":
                out.append("  ")
                i += 2
                continue
            out.append(c if c == quote else " ")
            if c == quote:
                quote = None
        elif c in "\"'":
            quote = c
            out.append(c)
        elif line.startswith("//", i):
            break
        else:
            out.append(c)
        i += 1
    return "".join(out)[: len(line)]


def balanced(text):
    return text.count("(") == text.count(")")


def sites_of(path):
    """Every (line number, operator, old text, new text) of a file."""
    lines = path.read_text(encoding="utf-8").split("\n")
    in_block_comment = False
    # Open conditional blocks: "windows" where the code is compiled only on
    # Windows (skipped here), "posix" for its other side, "other" for the rest.
    blocks = []
    for number, line in enumerate(lines, 1):
        view = masked(line)
        stripped = view.strip()
        directive = re.match(r"#\s*(if|ifdef|ifndef|else|elif|endif)\b(.*)", stripped)
        if directive:
            word, rest = directive.groups()
            if word in ("if", "ifdef", "ifndef"):
                negated = word == "ifndef" or "!" in rest
                blocks.append("other" if "_WIN32" not in rest else
                              "posix" if negated else "windows")
            elif word in ("else", "elif") and blocks:
                blocks[-1] = {"windows": "posix", "posix": "windows"}.get(blocks[-1], "other")
            elif word == "endif" and blocks:
                blocks.pop()
            continue
        if "windows" in blocks:
            continue
        if in_block_comment:
            if "*/" in stripped:
                in_block_comment = False
            continue
        if stripped.startswith("/*"):
            in_block_comment = "*/" not in stripped
            continue
        if not stripped or stripped.startswith("#") or stripped.startswith("static_assert"):
            continue
        for old, new in COMPARISONS.items():
            for match in re.finditer(re.escape(old), view):
                if old in ("==", "!=") and view[match.end():match.end() + 1] == "=":
                    continue
                if old in ("<=", ">=") and (view[match.start() - 1:match.start()] in "<>"
                                            or view[match.end():match.end() + 1] == ">"):
                    continue
                yield number, "comparison", match.start(), old, new
        for old, new in ((" && ", " || "), (" || ", " && ")):
            for match in re.finditer(re.escape(old), view):
                yield number, "logic", match.start(), old, new
        if not re.search(r"\[\s*\]|\boperator\b|\btemplate\b", view):
            for match in INTEGER.finditer(view):
                value = match.group(1)
                if len(value) > 1 and value.startswith("0"):
                    continue
                yield number, "constant", match.start(), value, str(int(value) + 1)
        statement = STATEMENT.match(view)
        if (statement and balanced(view) and not stripped.startswith(KEYWORDS)
                and not DECLARATION_START.match(view) and not stripped.endswith("{};")):
            yield number, "statement", len(statement.group(1)), line.strip(), ";"
        condition = re.match(r"^(\s*(?:\}\s*else\s+)?if \()(.*)(\)\s*\{?)\s*$", view)
        if (condition and balanced(condition.group(2)) and "constexpr" not in view
                and not re.search(r"[^=!<>]=[^=]|;", condition.group(2))):
            start = len(condition.group(1))
            old = line[start:start + len(condition.group(2))]
            yield number, "condition", start, old, "!(" + old + ")"
        for old, new in (("break;", "continue;"), ("continue;", "break;")):
            if stripped == old:
                yield number, "loop exit", view.index(old), old, new


def source_files(folders):
    for folder in folders:
        base = ROOT / folder
        yield from sorted(base.rglob("*.cpp")) if base.is_dir() else [base]


def test_target(path):
    """The test binary of the library that holds `path`."""
    parts = path.relative_to(ROOT / "src").parts
    name = "_".join(parts[:2]) if parts[0] == "embedded" else parts[0]
    folder = "/".join(parts[:2]) if parts[0] == "embedded" else parts[0]
    return f"{name}_tests", f"tests/{folder}/{name}_tests"


FIELDS = ("area", "file", "line", "operator", "column", "old", "new", "text")


def read_results(path):
    """The verdicts of a results file: {mutant key: fields}."""
    path = Path(path)
    if not path.exists():
        return {}
    return {fields[1]: fields for fields in
            (line.split("\t") for line in path.read_text(encoding="utf-8").splitlines())}


def killers_of(fields):
    """The tests named as killing a mutant (none for "(crash)" or "(timeout)")."""
    if fields[2] != "killed" or len(fields) < 5:
        return []
    return [k for k in fields[4].split(",") if k and not k.startswith("(")]


def draw():
    """A new sample from the sources as they stand."""
    rng = random.Random(SEED)
    chosen = []
    for area, folders, count in AREAS:
        candidates = []
        for path in source_files(folders):
            relative = path.relative_to(ROOT).as_posix()
            lines = path.read_text(encoding="utf-8").split("\n")
            for number, operator, column, old, new in sites_of(path):
                candidates.append((area, relative, number, operator, column, old, new,
                                   lines[number - 1]))
        chosen += sorted(rng.sample(candidates, min(count, len(candidates))),
                         key=lambda m: (m[1], m[2], m[4]))
    return chosen


def sample():
    if not SAMPLE.exists():
        return draw()
    return [tuple(m[f] for f in FIELDS) for m in json.loads(SAMPLE.read_text(encoding="utf-8"))]


def key(mutant):
    area, file, number, operator, column, old, new, text = mutant
    return f"{file}:{number}:{column}:{operator}"


def apply(mutant):
    """Applies the mutant; None when its line is no longer in the file."""
    area, file, number, operator, column, old, new, text = mutant
    path = ROOT / file
    if not path.exists():
        return None
    original = path.read_text(encoding="utf-8")
    lines = original.split("\n")
    places = [i + 1 for i, line in enumerate(lines) if line == text]
    if not places:
        return None
    number = min(places, key=lambda n: abs(n - number))
    line = lines[number - 1]
    if operator == "statement":
        lines[number - 1] = line[:column] + new
    else:
        assert line[column:column + len(old)] == old, (file, number, line, old)
        lines[number - 1] = line[:column] + new + line[column + len(old):]
    path.write_text("\n".join(lines), encoding="utf-8")
    return path, original


def run(command, timeout=None):
    try:
        return subprocess.run(command, cwd=ROOT, capture_output=True, timeout=timeout).returncode
    except subprocess.TimeoutExpired:
        return "timeout"


def run_tests(binary, timeout=None, failed=None, only=()):
    """Runs a test binary (its tests named in `only`, when given) in a
    process namespace and session of its own: a mutant that turns kill(pid)
    into kill(0) or kill(-1) must not reach anything outside it. The names of
    the tests that failed go to `failed` ("(crash)" when the binary ended
    before writing them)."""
    sandbox = ["setsid", "--wait"]
    if os.geteuid() == 0:  # a process namespace needs root
        sandbox = ["unshare", "--pid", "--fork", "--kill-child"] + sandbox
    with tempfile.TemporaryDirectory() as scratch:
        report = Path(scratch) / "report.json"
        command = [str(binary), "--gtest_brief=1", f"--gtest_output=json:{report}"]
        if only:
            command.append("--gtest_filter=" + ":".join(only))
        status = run(sandbox + command, timeout)
        if failed is not None and status not in (0, "timeout"):
            try:
                suites = json.loads(report.read_text(encoding="utf-8"))["testsuites"]
                failed += [f"{suite['name']}.{test['name']}" for suite in suites
                           for test in suite["testsuite"] if test.get("failures")]
            except (OSError, ValueError, KeyError):
                failed.append("(crash)")
        if failed is not None and status == "timeout":
            failed.append("(timeout)")
    return status


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[1].strip(),
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--list", action="store_true", help="print the sample and stop")
    parser.add_argument("--draw", action="store_true",
                        help=f"draw a new sample into {SAMPLE.relative_to(ROOT)} and stop")
    parser.add_argument("--limit", type=int, default=0, help="test at most N more mutants")
    parser.add_argument("--area", action="append", default=[],
                        help="test only the mutants of this area (repeatable): "
                             + ", ".join(a[0] for a in AREAS))
    parser.add_argument("--needed", action="store_true",
                        help="print the tests that alone kill a mutant of the results, and stop")
    parser.add_argument("--killers-first", metavar="RESULTS",
                        help="run first, alone, the tests that killed each mutant in these "
                             "earlier results: when one fails the mutant is killed without "
                             "running the rest (faster; the same verdict)")
    parser.add_argument("--build-dir", default="build-mutants")
    parser.add_argument("--results", default="out/mutants/results.tsv")
    args = parser.parse_args()

    if args.draw:
        mutants = draw()
        rows = (json.dumps(dict(zip(FIELDS, m)), ensure_ascii=False) for m in mutants)
        SAMPLE.write_text("[\n" + ",\n".join(rows) + "\n]\n", encoding="utf-8")
        print(f"{len(mutants)} mutants drawn into {SAMPLE.relative_to(ROOT)}", file=sys.stderr)
        return 0
    mutants = [m for m in sample() if not args.area or m[0] in args.area]
    if args.list:
        for m in mutants:
            print(f"{m[0]}\t{key(m)}\t{m[5]!r} -> {m[6]!r}")
        print(f"{len(mutants)} mutants", file=sys.stderr)
        return 0

    results_path = ROOT / args.results
    results_path.parent.mkdir(parents=True, exist_ok=True)
    done = read_results(results_path)
    if args.needed:
        # A test that alone kills a mutant is needed; the others may go as
        # far as the mutants are concerned (coverage has its say too).
        needed = {}
        for fields in done.values():
            killers = killers_of(fields)
            if len(killers) == 1:
                needed.setdefault(killers[0], []).append(fields[1])
        for test in sorted(needed):
            print(f"{test}\t{' '.join(needed[test])}")
        return 0
    build = ROOT / args.build_dir
    if not (build / "build.ninja").exists():
        subprocess.run(["cmake", "-S", ".", "-B", str(build), "-G", "Ninja",
                        "-DCMAKE_BUILD_TYPE=Release", "-DCMAKE_CXX_FLAGS_RELEASE=-O1",
                        "-DSHEAFWORK_TESTS=ON", "-DSHEAFWORK_WERROR=OFF"],
                       cwd=ROOT, check=True, stdout=subprocess.DEVNULL)

    earlier = {}
    if args.killers_first:
        earlier = {key: killers_of(fields)
                   for key, fields in read_results(ROOT / args.killers_first).items()}
    baseline = {}
    tested = 0
    with results_path.open("a", encoding="utf-8") as results:
        for m in mutants:
            if key(m) in done or (args.limit and tested >= args.limit):
                continue
            target, binary = test_target(ROOT / m[1])
            if target not in baseline:
                if run(["ninja", "-C", str(build), target]) != 0:
                    sys.exit(f"mutants: {target} does not build unmutated")
                start = time.monotonic()
                if run_tests(build / binary) != 0:
                    sys.exit(f"mutants: {target} fails unmutated")
                baseline[target] = time.monotonic() - start
            killers = []
            applied = apply(m)
            if applied is None:
                verdict = "gone"
            else:
                path, original = applied
                try:
                    if run(["ninja", "-C", str(build), target]) != 0:
                        verdict = "stillborn"
                    else:
                        timeout = max(60, 10 * baseline[target])
                        status = 0
                        if earlier.get(key(m)):
                            status = run_tests(build / binary, timeout, killers, earlier[key(m)])
                        if status == 0:
                            killers.clear()
                            status = run_tests(build / binary, timeout, killers)
                        verdict = "survived" if status == 0 else "killed"
                finally:
                    path.write_text(original, encoding="utf-8")
            fields = [m[0], key(m), verdict, f"{m[5]!r} -> {m[6]!r}", ",".join(killers)]
            results.write("\t".join(fields) + "\n")
            results.flush()
            done[key(m)] = fields
            tested += 1
            print(f"{len(done)}/{len(mutants)} {verdict:9} {key(m)}", file=sys.stderr)
        # Put the test binaries built back to the unmutated sources.
        if baseline:
            run(["ninja", "-C", str(build)] + sorted(baseline))

    wanted = {key(m) for m in mutants}
    by_area = {}
    for fields in done.values():
        if fields[1] in wanted:
            by_area.setdefault(fields[0], []).append(fields[2])
    total_killed = total_counted = 0
    for area, _, _ in AREAS:
        if args.area and area not in args.area:
            continue
        verdicts = by_area.get(area, [])
        killed = verdicts.count("killed")
        counted = killed + verdicts.count("survived")
        total_killed += killed
        total_counted += counted
        share = f"{100 * killed / counted:.1f} %" if counted else "-"
        print(f"{area:12} {killed:4} killed of {counted:4} ({share}); "
              f"{verdicts.count('stillborn')} stillborn, {verdicts.count('gone')} gone")
    missing = len(wanted) - sum(len(v) for v in by_area.values())
    share = f"{100 * total_killed / total_counted:.1f} %" if total_counted else "-"
    print(f"{'all':12} {total_killed:4} killed of {total_counted:4} ({share})"
          + (f"; {missing} not yet tested" if missing else ""))
    return 0


if __name__ == "__main__":
    sys.exit(main())
