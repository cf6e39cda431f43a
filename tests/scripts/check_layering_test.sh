#!/usr/bin/env bash
# scripts/check-layering.sh on a copy of the tree: the tree as it is
# passes; an include against the layering, a private header of a layer
# above, an umbrella header and a sanctioned header used by the wrong layer
# each fail with the file and line named.
#   check_layering_test.sh REPO_DIR
set -euo pipefail
repo=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "check_layering_test: $*" >&2; exit 1; }

copy() {
  rm -rf "$work/tree"
  mkdir -p "$work/tree/docs"
  cp -r "$repo/src" "$repo/include" "$work/tree/"
  cp "$repo/docs/architecture.md" "$work/tree/docs/"
}

# Adds line 1 to file and expects the check to fail naming file:1.
expect_refused() {
  local file=$1 include=$2
  copy
  sed -i "1i $include" "$work/tree/$file"
  if out=$("$repo/scripts/check-layering.sh" "$work/tree" 2>&1); then
    fail "accepted $include in $file"
  fi
  grep -q "^$file:1: " <<<"$out" || fail "did not name $file:1 for $include: $out"
}

copy
"$repo/scripts/check-layering.sh" "$work/tree" >/dev/null || fail "the tree itself does not pass"

expect_refused src/db/dbman.cpp '#include "zansong/fileman/messages.h"'
expect_refused src/common/tsstring.cpp '#include "db/sql.h"'
expect_refused src/formats/wave.cpp '#include "zansong/zansong.h"'
expect_refused src/db/sql.cpp '#include "zansong/async/cancel.h"'
expect_refused include/zansong/storage/files.h '#include "zansong/db/dbman.h"'

# A layering block without a layer's line is refused as a whole.
copy
sed -i '/^    formats  -> /d' "$work/tree/docs/architecture.md"
if "$repo/scripts/check-layering.sh" "$work/tree" >/dev/null 2>&1; then
  fail "accepted a layering block without formats"
fi
echo "check-layering ok"
