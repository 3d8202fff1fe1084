#!/usr/bin/env bash
# Writes the reference images of tests/golden afresh from the rendering as it
# is now: every layout of every drawing in examples/plans, plotted at 4 px/mm
# on white, one PNG per sheet (<drawing>-<layout>.png, plain ASCII).
#
#   scripts/update-golden.sh [BUILD_DIR]        (default: build)
#
# Run it after a change to the rendering that is meant to change the plots,
# or after merging several such changes, then look at what changed before
# committing the images with the change (`git status tests/golden` lists
# them; open the changed PNG files side by side with `git show HEAD:<file>`).
# A golden test that fails writes the
# image it got and a diff image (differences in red) into
# <BUILD_DIR>/tests/golden/golden-failures/ and names them in its message.
set -euo pipefail
cd "$(dirname "$0")/.."
build="${1:-build}"

bash scripts/build.sh "$build" --target golden_tests
rm -f tests/golden/*.png   # references of sheets that no longer exist go too
SHEAFWORK_UPDATE_GOLDEN=1 "$build/tests/golden/golden_tests" \
  --gtest_filter='Examples/GoldenImage.*' --gtest_brief=1
echo "update-golden: $(ls tests/golden/*.png | wc -l) reference images in tests/golden"
"$build/tests/golden/golden_tests" --gtest_brief=1
