#!/usr/bin/env bash
# sheets.sh TINTWERK FOLDER [PHOTO]: paints a contact sheet of each family of looks into FOLDER, from a photo or
# the built-in scene, and a README.md that shows them. TINTWERK is the command; all looks that it lists are there.
set -euo pipefail
tintwerk=$1 out=$2 photo=${3:-}
tile=200 across=5 quality=75  # some two hundred tiles in 1.5 MB
work=$(mktemp -d)
trap 'rm -r "$work"' EXIT

# Puts a title under a picture: picture, title, tile.
label() {
  vips thumbnail "$1" "$work/small.v" "$tile"
  vips extract_band "$work/small.v" "$work/rgb.v" 0 --n 3
  vips text "$work/text.v" "$2" --font "DejaVu Sans 9" --dpi 90
  vips invert "$work/text.v" "$work/dark.v"
  vips gravity "$work/dark.v" "$work/line.v" centre "$tile" 22 --extend white
  vips colourspace "$work/line.v" "$work/title.v" srgb --source-space b-w
  vips join "$work/rgb.v" "$work/title.v" "$3" vertical
}

[ -n "$photo" ] || { photo=$work/scene.png && "$tintwerk" scene -o "$photo"; }
label "$photo" "the picture itself" "$work/original.v"
"$tintwerk" list --json >"$work/looks.json"
mkdir -p "$out"
cat >"$out/README.md" <<'END'
# The looks

Every look at full strength on one picture, family by family. `./dev sheets` paints this page and its pictures.
END
families=$(jq -r '.[].category' "$work/looks.json" | uniq)
for family in $families; do
  title=$("$tintwerk" list --category "$family" | sed -n 1p)
  printf '\n## %s\n\n![%s](%s.jpg)\n\n| look | entry | what it does |\n|---|---|---|\n' \
    "$title" "$title" "$family" >>"$out/README.md"
  looks=$(jq -r --arg family "$family" \
    '.[] | select(.category == $family) | [.name, .title, .description] | @tsv' "$work/looks.json")
  tiles=$work/original.v
  while IFS=$'\t' read -r name title description; do
    "$tintwerk" apply "$name" "$photo" -o "$work/look.png" >/dev/null
    label "$work/look.png" "$title" "$work/$name.v"
    tiles+=" $work/$name.v"
    echo "| $title | \`$name\` | $description |" >>"$out/README.md"
  done <<<"$looks"
  vips arrayjoin "$tiles" "$out/$family.jpg[Q=$quality,subsample-mode=on,interlace,optimize-coding,strip]" \
    --across "$across" --shim 6 --background 255
  echo "painted $out/$family.jpg"
done
