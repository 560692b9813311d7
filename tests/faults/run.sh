#!/usr/bin/env bash
# Runs the command on full disks, damaged inputs and folders that turn read-only, and ends it by signals
# at random moments. What it may leave is whole outputs, untouched originals and true exit codes. Prints a
# table: what was done, how often, and how often something else came out, which the lines above a row tell.
#   tests/faults/run.sh PROGRAM [TIMES]    TIMES is how often each signal is sent, 20 by default
set -uo pipefail
program=$(realpath "${1:?the path of the program}")
times=${2:-20}
if [ "$(id -u)" -ne 0 ]; then
  echo "this needs root, to mount a small disk and to run as a user without rights" >&2
  exit 2
fi
# With mounts of its own: what it mounts goes with it, however it ends.
[ -n "${TINTWERK_APART:-}" ] || TINTWERK_APART=1 exec unshare --mount "$0" "$@"
work=$(mktemp -d)
finish() {
  cd /
  kill $(jobs -p) 2>/dev/null # they would go on writing
  wait
  umount "$work/disk" 2>/dev/null
  rm -rf "$work"
}
trap finish EXIT
cd "$work" || exit 2
chmod 755 .
mkdir disk data
chown nobody data
mount -t tmpfs -o size=4m none disk || exit 2

pictures=200
look=HuiYi
formats=(jpg png tif webp jp2)
failures=0

run() { "$program" "$@" 2>log; }
start() { env --default-signal=INT "$program" "$@" 2>log & } # scripts let what they start ignore SIGINT
as_nobody() {
  setpriv --reuid=nobody --regid=nogroup --clear-groups env XDG_DATA_HOME="$work/data" "$program" "$@" 2>log
}
temporaries() { find "$1" -name '.tintwerk-*' | wc -l; }
count() { find "$1" -type f -not -name '.*' 2>/dev/null | wc -l; }

# begin, then wrong WHAT for each bad outcome, then row NAME [NOTE]: a line of the table.
begin() { runs=0 bad=0 stopped=0; }
wrong() {
  bad=$((bad + 1))
  echo "  run $runs: $*; the last messages:"
  tail -n 3 log | sed 's/^/    /'
}
row() {
  printf '%-58s %5d %5d  %s\n' "$1" "$runs" "$bad" "${2:-}"
  failures=$((failures + bad))
}
# Fails, and names a file, unless every file of a folder is that of the same name in one of the others.
all_among() { # FOLDER OTHER...
  local file other
  for file in "$1"/*; do
    [ -e "$file" ] || continue
    for other in "${@:2}"; do
      cmp -s "$file" "$other/${file##*/}" && continue 2
    done
    echo "$file"
    return 1
  done
}

printf '%-58s %5s %5s\n' 'what was done' runs bad

# A full disk: each number of free pages, from none to what the output takes and one more, with and
# without an older output.
"$program" scene -o scene.png --width 300 --height 200 || exit 2
echo "an older output" >older
page=$(getconf PAGESIZE)
fill_disk() { # BYTES that stay free
  dd if=/dev/zero of=disk/filler bs="$page" count=100000 status=none 2>/dev/null
  truncate -s "-$1" disk/filler
}
for format in "${formats[@]}"; do
  begin
  run apply $look scene.png -o "whole.$format" || exit 2
  need=$((($(stat -c %s "whole.$format") + page - 1) / page))
  written=0
  for ((free = 0; free <= need + 1; ++free)); do
    for before in none older; do
      runs=$((runs + 1))
      find disk -type f -delete
      [ $before = none ] || cp older "disk/out.$format"
      fill_disk $((free * page))
      run apply $look scene.png -o "disk/out.$format"
      code=$?
      [ "$(temporaries disk)" -eq 0 ] || wrong "a temporary file is left"
      if [ $code -eq 0 ]; then
        written=$((written + 1))
        cmp -s "disk/out.$format" "whole.$format" || wrong "code 0 for a wrong output"
      else
        [ $code -eq 1 ] || wrong "code $code"
        [ $before = none ] || cmp -s "disk/out.$format" older || wrong "the older output is lost"
        [ $before = older ] || [ ! -e "disk/out.$format" ] || wrong "a part of an output"
      fi
    done
  done
  [ $written -gt 0 ] && [ $written -lt $runs ] || wrong "$written written"
  row "disk with 0..$((need + 1)) free pages, $format" "$written written"
done

# Inputs that cannot be read.
refuses() { # a command line that fails on its input and writes nothing
  runs=$((runs + 1))
  "$@"
  code=$?
  [ $code -eq 1 ] || wrong "code $code of $*"
  [ ! -e own/refused.png ] || wrong "an output of $*"
  rm -f own/refused.png
}
install -d -o nobody own
begin
for format in "${formats[@]}"; do
  size=$(stat -c %s "whole.$format")
  for share in 1 5 20 40 60 80 95; do
    head -c $((size * share / 100)) "whole.$format" >"cut.$format"
    refuses run apply $look "cut.$format" -o own/refused.png
  done
done
row "inputs cut short"
begin
ln -s /proc/self/mem broken.png # reading it is an error of the device
touch empty.png
cp scene.png own/secret.png && chmod 000 own/secret.png
refuses run apply $look broken.png -o own/refused.png
refuses run apply $look empty.png -o own/refused.png
refuses as_nobody apply $look own/secret.png -o own/refused.png
row "inputs that give errors or may not be read"

# A batch of small pictures, and what becomes of it undisturbed.
mkdir in whole
for ((i = 0; i < pictures; ++i)); do
  format=${formats[i % 5]}
  side=$((40 + i % 50))
  [ $i -ge 20 ] || run scene -o "kind$i.$format" --width $((side * 2)) --height $side || exit 2
  cp "kind$((i % 20)).$format" "in/$((1000 + i)).$format"
done
batch=(apply $look in --jobs 4)
start=$(date +%s%N)
run "${batch[@]}" -o whole || exit 2
span=$((($(date +%s%N) - start) / 1000)) # microseconds
sums=$(cat in/* | sha256sum)

# Sleeps until a random moment of the time that the batch takes.
nap() {
  local moment=$(((RANDOM * 32768 + RANDOM) % span))
  sleep "$((moment / 1000000)).$(printf %06d $((moment % 1000000)))"
}
# What must hold of the folder `out` after a run that something ended, and of another one after it.
check_batch() { # COMMAND...: that runs the program
  local file
  file=$(all_among out whole) || wrong "$file differs"
  "$@" "${batch[@]}" -o out --skip-existing || wrong "code $? of the run after it"
  diff -rq out whole >differences || wrong "after --skip-existing: $(head -n 1 differences)" # also orphans
  [ "$(cat in/* | sha256sum)" = "$sums" ] || wrong "an original has changed"
}
for signal in INT TERM KILL; do
  ended=$((128 + $(kill -l $signal)))
  begin
  for ((i = 0; i < times; ++i)); do
    runs=$((runs + 1))
    rm -rf out
    start "${batch[@]}" -o out
    nap
    kill -s $signal $! 2>/dev/null
    wait $! 2>/dev/null
    code=$?
    [ $code -ne $ended ] || stopped=$((stopped + 1))
    [ $code -eq $ended ] || { [ $code -eq 0 ] && [ "$(count out)" -eq $pictures ]; } ||
      wrong "code $code, $(count out) written"
    [ $signal = KILL ] || [ ! -e out ] || [ "$(temporaries out)" -eq 0 ] || wrong "a temporary file is left"
    check_batch run
  done
  [ $stopped -gt 0 ] || wrong "none stopped"
  row "SIG$signal in a batch of $pictures, then --skip-existing" "$stopped stopped"
done
begin
for ((i = 0; i < times; ++i)); do
  runs=$((runs + 1))
  rm -rf place && cp -r in place
  start apply $look place -o place --overwrite-input --jobs 4
  nap
  kill -s KILL $! 2>/dev/null
  wait $! 2>/dev/null
  [ $? -ne 137 ] || stopped=$((stopped + 1))
  file=$(all_among place in whole) || wrong "$file is neither original nor output"
  run apply $look place/1000.jpg -o place/other.png || wrong "code $? of the run after it"
  [ "$(temporaries place)" -eq 0 ] || wrong "an orphaned temporary file is left"
  [ "$(count place)" -eq $((pictures + 1)) ] || wrong "$(count place) files"
done
row "SIGKILL while originals are replaced" "$stopped stopped"

# A folder that nobody may write any more from a random moment on.
as_nobody apply $look scene.png -o data/first.png || exit 2 # copies the support files
begin
for ((i = 0; i < times; ++i)); do
  runs=$((runs + 1))
  rm -rf out && install -d -o nobody out
  as_nobody "${batch[@]}" -o out &
  nap
  chmod 555 out
  wait $!
  code=$?
  [ $code -ne 1 ] || stopped=$((stopped + 1))
  [ $code -ne 0 ] || [ "$(count out)" -eq $pictures ] || wrong "code 0, $(count out) written"
  [ $code -le 2 ] || wrong "code $code" # 2 if it had not begun
  chmod 755 out
  check_batch as_nobody
done
[ $stopped -gt 0 ] || wrong "none stopped"
row "folder made read-only in a batch of $pictures" "$stopped stopped"

# A disk that fills up in the middle of a batch.
begin
runs=1
find disk -type f -delete
mkdir disk/out
fill_disk $(($(du -sb --apparent-size whole | cut -f1) / 2))
run "${batch[@]}" -o disk/out
code=$?
written=$(count disk/out)
[ $code -eq 1 ] && [ "$written" -gt 0 ] && [ "$written" -lt $pictures ] || wrong "code $code, $written written"
file=$(all_among disk/out whole) || wrong "$file differs"
[ "$(temporaries disk)" -eq 0 ] || wrong "a temporary file is left"
row "disk that fills up in a batch of $pictures" "$written written"

# Many pictures in one run. Every stretch of it works the same mixture, so when the allocator has found
# its ways, the mean memory of two stretches is alike unless something is kept of each picture.
begin
runs=1
formats+=(heic avif gif)
mkdir many
for ((i = 0; i < 1000; ++i)); do
  kind=$((i % 40))
  format=${formats[kind % 8]}
  [ $i -ge 40 ] || run scene -o "large$kind.$format" --width $((200 + kind * 17)) --height $((150 + kind * 7 % 40 * 12)) || exit 2
  ln "large$kind.$format" "many/$((1000 + i)).$format"
done
start apply $look many -o soaked --jobs 2
while sleep 0.05 && kilobytes=$(sed -n 's/^VmRSS:[[:space:]]*\([0-9]*\) kB/\1/p' "/proc/$!/status" 2>/dev/null) && [ -n "$kilobytes" ]; do
  echo "$(count soaked) $kilobytes"
done >memory
wait $!
code=$?
[ $code -eq 0 ] && [ "$(count soaked)" -eq 1000 ] || wrong "code $code, $(count soaked) written"
mean() { awk -v from="$1" -v to="$2" '$1 >= from && $1 < to { sum += $2; ++n } END { print n ? int(sum / n) : 0 }' memory; }
early=$(mean 400 600) late=$(mean 800 1000)
[ "$early" -gt 0 ] && [ "$late" -gt 0 ] && [ "$late" -le $((early + early / 20)) ] || wrong "memory grows"
row "1000 pictures of ${#formats[@]} formats in one run" "MB: $((early / 1024)) at 400-600, $((late / 1024)) at 800-1000"

[ $failures -eq 0 ] || { echo "$failures bad outcomes" && exit 1; }
