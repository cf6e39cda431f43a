#!/usr/bin/env bash
# Checks that every #include "..." of the library's sources and public
# headers follows the layering written in docs/architecture.md: the block
# between "<!-- layering" and "<!-- /layering" lists, per layer, the layers
# (and single headers) that its files may include.  Prints each offending
# file and line and fails when there is one.
#
#   scripts/check-layering.sh [REPO_DIR]
set -euo pipefail
repo=${1:-"$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"}
doc="$repo/docs/architecture.md"
layers=(common db formats storage fileman async)
shared_headers=(zansong/export.h zansong/result_codes.h zansong/limits.h)

is_layer() {
  local l
  for l in "${layers[@]}"; do [ "$l" = "$1" ] && return 0; done
  return 1
}

# allowed[layer] = " item item ... ": layers and single headers.
declare -A allowed
while IFS= read -r line; do
  [[ $line =~ ^\ \ \ \ ([a-z]+)\ +-\>\ +(.*)$ ]] || continue
  layer=${BASH_REMATCH[1]}
  if ! is_layer "$layer"; then
    echo "$doc: unknown layer '$layer' in the layering block" >&2
    exit 2
  fi
  for item in ${BASH_REMATCH[2]}; do
    if is_layer "$item" || [[ $item == *.h ]]; then
      allowed[$layer]+=" $item "
    else
      break  # the rest of the line says why
    fi
  done
done < <(sed -n '/^<!-- layering/,/^<!-- \/layering/p' "$doc")

for layer in "${layers[@]}"; do
  if [ -z "${allowed[$layer]:-}" ]; then
    echo "$doc: the layering block names no includes for '$layer'" >&2
    exit 2
  fi
done

# The layer an included header belongs to, or "" for none of them.
layer_of() {
  local header=$1 first rest
  first=${header%%/*}
  if [ "$first" = zansong ]; then
    rest=${header#zansong/}
    if [[ $rest == */* ]]; then first=${rest%%/*}; else first=""; fi
  fi
  if is_layer "$first"; then echo "$first"; else echo ""; fi
}

status=0
check() {
  local layer=$1 file=$2 number header target h
  while IFS=: read -r number header; do
    header=${header#*\"}
    header=${header%%\"*}
    for h in "${shared_headers[@]}"; do [ "$header" = "$h" ] && continue 2; done
    [[ ${allowed[$layer]} == *" $header "* ]] && continue
    target=$(layer_of "$header")
    if [ -n "$target" ] && [[ ${allowed[$layer]} == *" $target "* ]]; then continue; fi
    echo "${file#"$repo"/}:$number: $layer may not include \"$header\"" \
         "(${target:-not a layer header})"
    status=1
  done < <(grep -n '^[[:space:]]*#[[:space:]]*include[[:space:]]*"' "$file" || true)
}

for layer in "${layers[@]}"; do
  for dir in "$repo/src/$layer" "$repo/include/zansong/$layer"; do
    [ -d "$dir" ] || continue
    while IFS= read -r -d '' file; do
      check "$layer" "$file"
    done < <(find "$dir" -type f \( -name '*.cpp' -o -name '*.h' \) -print0 | sort -z)
  done
done

if [ $status -eq 0 ]; then echo "layering: every include follows docs/architecture.md"; fi
exit $status
