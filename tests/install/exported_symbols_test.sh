#!/usr/bin/env bash
# Compares the dynamic symbols that libzansong.so defines with the checked-in
# list of exported names, so that every export is a decision: a name marked
# ZANSONG_EXPORT but not listed, or listed but no longer exported, fails.
# Also fails when an exported name belongs to (or mentions) one of the
# library's internal namespaces.
#   exported_symbols_test.sh LIBRARY LIST          compare
#   exported_symbols_test.sh LIBRARY LIST --write  rewrite LIST from LIBRARY
# NM names the nm program to use (default nm; a cross-build passes its
# target's).  LIST is exported_symbols.txt for a 64-bit library,
# exported_symbols_32bit.txt for a 32-bit one.
set -euo pipefail
lib=$1; list=$2; mode=${3:-}
nm=${NM:-nm}

# nm prints "ADDRESS TYPE NAME"; the demangled name may hold spaces.
actual=$("$nm" -D --defined-only -C "$lib" | cut -d' ' -f3- | LC_ALL=C sort)

if [ "$mode" = --write ]; then
  printf '%s\n' "$actual" >"$list"
  exit 0
fi

status=0
internal=$(printf '%s\n' "$actual" | grep -E 'zansong::|zanfm::|samplefiles::|\(anonymous namespace\)' || true)
if [ -n "$internal" ]; then
  echo "libzansong.so exports names of an internal namespace:"
  printf '%s\n' "$internal"
  status=1
fi
if ! diff -u --label "$list" --label "$lib" "$list" <(printf '%s\n' "$actual"); then
  echo
  echo "The exported names differ from $list: '-' lines are listed but not exported,"
  echo "'+' lines exported but not listed.  Mark or unmark the declarations with"
  echo "ZANSONG_EXPORT, or, when the change is meant, rewrite the list with"
  echo "  $0 $lib $list --write"
  status=1
fi
exit $status
