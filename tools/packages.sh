#!/bin/sh
# Makes sure that what a command needs is on the machine:
#
#     tools/packages.sh [--optional] PACKAGE...
#
# A package whose tool or header is found already, whatever its origin, counts as there. Missing
# Debian packages are installed when this user may (root, or sudo); otherwise they are named, and the
# command ends with status 1 unless they are optional. Says nothing when nothing is missing.
set -u

# What shows that a package is there: a command, or a header that the compiler finds.
is_there() {
  case $1 in
    g++)                 command -v c++ || command -v g++ || command -v clang++ ;;
    cmake)               command -v cmake ;;
    ninja-build)         command -v ninja ;;
    clang)               command -v clang++ ;;
    clang-format)        command -v clang-format ;;
    clang-tidy)          command -v clang-tidy ;;
    python3)             command -v python3 ;;
    libedit-dev)         has_header histedit.h ;;
    libgtest-dev)        has_header gtest/gtest.h ;;
    librapidcheck-dev)   has_header rapidcheck.h ;;
    libbenchmark-dev)    has_header benchmark/benchmark.h ;;
    libgmp-dev)          has_header gmp.h ;;
    libmpfr-dev)         has_header mpfr.h ;;
    libclang-rt-14-dev)  test -e /usr/lib/llvm-14/lib/clang/*/lib/linux/libclang_rt.fuzzer-x86_64.a ;;
    *)                   dpkg -s "$1" ;;
  esac >/dev/null 2>&1
}
has_header() {
  echo "#include <$1>" | c++ -x c++ -std=c++20 -E - 
}
missing() {
  for package in "$@"; do is_there "$package" || printf ' %s' "$package"; done
}

optional=
if [ "${1:-}" = --optional ]; then optional=yes; shift; fi
wanted=$(missing "$@")
[ -z "$wanted" ] && exit 0

if [ "$(id -u)" = 0 ]; then
  as_root=
elif command -v sudo >/dev/null 2>&1 && sudo -n true 2>/dev/null; then
  as_root="sudo -n"
elif command -v sudo >/dev/null 2>&1 && [ -t 0 ] && [ -z "$optional" ]; then
  as_root=sudo  # asks for the password
else
  as_root=none
fi

if [ "$as_root" != none ] && command -v apt-get >/dev/null 2>&1; then
  echo "Installing$wanted" >&2
  install="env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends"
  # A first try with the lists as they are; a fresh machine has none yet.
  # shellcheck disable=SC2086 # the words are meant to split
  $as_root $install $wanted </dev/null >&2 ||
    { $as_root apt-get update </dev/null >&2; $as_root $install $wanted </dev/null >&2; }
  wanted=$(missing "$@")
  [ -z "$wanted" ] && exit 0
fi
if [ -n "$optional" ]; then
  echo "Going on without$wanted" >&2
  exit 0
fi
echo "Missing packages:$wanted" >&2
echo "Install them, for example by: apt-get install$wanted" >&2
exit 1
