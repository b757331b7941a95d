#!/bin/sh
# What `make lint` asks of the tree:
#
#     tools/lint.sh BUILD JOBS
#
# Order (includes, floors, doors, sizes, names of files, the catalogue), the layout of `make format`, and
# clang-tidy with the checks of .clang-tidy. What is not installed is left out, and said so.
set -u
cd "$(dirname "$0")/.." || exit 2
build=$1
jobs=${2:-2}
status=0

"$build/tools/house" includes floors doors sizes paths catalogue || status=1

if command -v clang-format >/dev/null; then
  "$build/tools/house" format || status=1
else
  echo "lint: no clang-format, the layout is not checked" >&2
fi

if command -v clang-tidy >/dev/null; then
  # The compiler's own switches, and the loops of constant tables, are no news to clang.
  find src programs -name '*.cpp' | sort |
    xargs -P "$jobs" -n 4 clang-tidy -p "$build" --quiet \
      --extra-arg=-Wno-unknown-warning-option --extra-arg=-fconstexpr-steps=16777216 2>/dev/null || status=1
else
  echo "lint: no clang-tidy, its checks are left out" >&2
fi
exit $status
