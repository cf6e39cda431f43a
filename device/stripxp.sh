#!/bin/sh
# Stand-in for the instrument's expression-stripping program.  It takes the
# full path of one MIDI file; it succeeds when the file exists and leaves it
# unchanged, and fails (exit 1) otherwise.
[ $# -eq 1 ] || { echo "usage: stripxp.sh FILE" >&2; exit 2; }
[ -f "$1" ] || { echo "stripxp.sh: $1: no such file" >&2; exit 1; }
exit 0
