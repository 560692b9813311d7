#!/usr/bin/env bash
# PROGRAM OTHER: whether two builds of the command give every look of the built-in scene the same bytes.
set -euo pipefail
folder=$(mktemp -d)
trap 'rm -r "$folder"' EXIT
"$1" scene -o "$folder/scene.png"
code=0
for look in $("$1" list --json | jq -r ".[].name"); do
  for program in "$1" "$2"; do
    "$program" apply "$look" "$folder/scene.png" -o "$folder/$(basename "$(dirname "$(dirname "$program")")").ppm"
  done
  if ! cmp -s "$folder"/*.ppm; then
    echo "$look differs"
    code=1
  fi
done
[ $code -ne 0 ] || echo "all looks give the same bytes"
exit $code
