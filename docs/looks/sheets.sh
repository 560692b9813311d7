#!/usr/bin/env bash
# sheets.sh TINTWERK FOLDER [PHOTO]: paints a contact sheet of each family of looks into FOLDER, from a photo or
# the built-in scene, a README.md that shows them, and a small gallery. TINTWERK is the command; all looks that it lists
# are there.
set -euo pipefail
tintwerk=$(realpath "$1") out=$2 photo=${3:-}
work=$(mktemp -d)
trap 'rm -r "$work"' EXIT

[ -n "$photo" ] || "$tintwerk" scene -o "${photo:=$work/scene.png}"
"$tintwerk" list --json >"$work/looks.json"
mkdir -p "$out"
cat >"$out/README.md" <<'END'
# The looks

Every look at full strength on one picture, family by family. `./dev sheets` paints this page and its pictures.
END
for family in $(jq -r '.[].category' "$work/looks.json" | uniq); do
  title=$("$tintwerk" list --category "$family" | sed -n 1p)
  printf '\n## %s\n\n![%s](%s.jpg)\n\n| look | entry | what it does |\n|---|---|---|\n' \
    "$title" "$title" "$family" >>"$out/README.md"
  jq -r --arg family "$family" '.[] | select(.category == $family) | "| \(.title) | `\(.name)` | \(.description) |"' \
    "$work/looks.json" >>"$out/README.md"
  "$tintwerk" sheet "$photo" --category "$family" -o "$out/$family.jpg" --quality 70 --progressive
  echo "painted $out/$family.jpg"
done
# The page tells the path of the photo as it was typed.
mkdir -p "$out/gallery"
gallery=$(realpath "$out/gallery")
(cd "$(dirname "$photo")" && "$tintwerk" gallery "$(basename "$photo")" -o "$gallery" --size 400 --quality 50)
