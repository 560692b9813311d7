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
  # The second line is a comment with the time of day.
  if [ "$(for file in "$folder"/*.ppm; do sed 2d "$file" | sha256sum; done | sort -u | wc -l)" -ne 1 ]; then
    echo "$look differs"
    code=1
  fi
done
[ $code -ne 0 ] || echo "all looks give the same bytes"
exit $code
