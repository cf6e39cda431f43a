#!/usr/bin/env bash
# The lists of exported names of a 64-bit and of a 32-bit target name the
# same functions, classes and objects: they differ only in how parameter
# types such as size_t and int64_t are spelled, so with the parameter lists
# left out they are the same.  Fails, on any build, when an export was
# written into one list and not the other.
#   exported_symbol_lists_test.sh LIST_64BIT LIST_32BIT
set -euo pipefail
[ $# -eq 2 ] || { echo "usage: exported_symbol_lists_test.sh LIST_64BIT LIST_32BIT" >&2; exit 2; }

# Each name up to its parameter list, sorted.
names() { sed 's/(.*//' "$1" | LC_ALL=C sort; }

if ! diff -u --label "$1" --label "$2" <(names "$1") <(names "$2"); then
  echo
  echo "The two lists of exported names differ in more than their parameter types:"
  echo "an export added or removed goes into both (see docs/architecture.md)."
  exit 1
fi
