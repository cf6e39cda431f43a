#!/usr/bin/env bash
# Lays out a fresh device image: the tree of fixed paths that the library
# expects, under DIR.  With FM_SetSystemRoot(DIR) the library then works on
# this tree instead of the instrument's own paths.
#
#   make-image.sh DIR --songdb2json PROGRAM
#
# PROGRAM is the built catalogue exporter (device/songdb2json), installed in
# the image as usr/local/bin/songdb2json.
#
# DIR is created when missing; files already in the image are replaced,
# songs and catalogues already in it are kept.
set -euo pipefail

usage() { echo "usage: make-image.sh DIR --songdb2json PROGRAM" >&2; exit 2; }

[ $# -ge 1 ] || usage
dir=$1; shift
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
exporter=
while [ $# -gt 0 ]; do
  case "$1" in
    --songdb2json) [ $# -ge 2 ] || usage; exporter=$2; shift 2 ;;
    *) usage ;;
  esac
done

[ -n "$exporter" ] || usage
sqlite=$(command -v sqlite3) || { echo "make-image.sh: no sqlite3 program found" >&2; exit 1; }

mkdir -p "$dir/usr/local/songs" "$dir/usr/local/bin" "$dir/usr/local/etc" \
         "$dir/usr/local/www/ctrl" "$dir/var/volatile/run/media" "$dir/tmp"
ln -sfn "$sqlite" "$dir/usr/local/bin/sqlite3"
install -m 0755 "$exporter" "$dir/usr/local/bin/songdb2json"
install -m 0755 "$here/stripxp.sh" "$dir/usr/local/bin/stripxp.sh"
install -m 0644 "$here/zansong.sql" "$dir/usr/local/etc/zansong.sql"
