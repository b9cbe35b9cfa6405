#!/usr/bin/env bash
# Checks `drenik synth` against `drenik tolerance` on a few real masks: the
# chosen design's choices, and those of every listed candidate with fewer
# parts, run through the tolerance command with the same mask and build at
# 20,000 trials. The chosen one should meet the target, the simpler ones
# fall below it. Usage: scripts/synth-crosscheck.sh [path/to/drenik]
set -euo pipefail
drenik=${1:-build/app/drenik}

masks=(
  "20 m harmonic lowpass|--pass-edge 14.35M --pass-rl 18 --stop 28.7M:50|--ctol 5 --ltol 2|--yield 99"
  "80 m highpass|--pass-edge 3.5M --pass-rl 18 --stop 1.7M:40|--ctol 5 --ltol 5|--response highpass --yield 99"
  "40 m preselector|--pass-edge 7M --pass-edge 7.3M --pass-rl 12 --stop-below 5.5M:30 --stop 9.5M:30|--ctol 1 --ltol 1|--response bandpass --yield 95"
  "FM broadcast notch|--pass-edge 70M --pass-edge 130M --pass-rl 14 --stop 88M:108M:30|--ctol 2 --ltol 2|--response bandstop --yield 95"
)

for entry in "${masks[@]}"; do
  IFS='|' read -r name mask build goal <<<"$entry"
  target=$(sed -n 's/.*--yield \([0-9.]*\).*/\1/p' <<<"$goal")
  echo "== $name: $mask $build $goal"
  start=$(date +%s.%N)
  # shellcheck disable=SC2086
  table=$("$drenik" synth $mask $build $goal --quiet || true)
  end=$(date +%s.%N)
  echo "$table" | sed -n '4,$p' | grep -v '^       --' || true
  awk -v a="$start" -v b="$end" 'BEGIN { printf "search: %.2f s\n", b - a }'
  # Each row: its parts count and its words (the next line).
  chosenParts=$(echo "$table" | awk '/^\* /{print $9 + $10; exit}')
  echo "$table" | awk '/^[* ] +[0-9]+ /{star = ($1 == "*"); off = star ? 1 : 0;
      parts = $(8 + off) + $(9 + off); getline words; print star "|" parts "|" words}' |
  while IFS='|' read -r star parts words; do
    if [ "$star" = 1 ]; then
      what=chosen
    elif [ -n "$chosenParts" ] && [ "$parts" -lt "$chosenParts" ]; then
      what=simpler
    else
      continue
    fi
    # shellcheck disable=SC2086
    counts=$("$drenik" tolerance $words --values exact $mask $build --trials 20000 --quiet |
      sed -n 's/^Yield: .*(\([0-9]*\) of \([0-9]*\)).*/\1 \2/p')
    read -r passed trials <<<"$counts"
    awk -v p="$passed" -v n="$trials" -v t="$target" -v what="$what" -v parts="$parts" 'BEGIN{
      y = 100 * p / n; printf "  %s (%d parts): %.2f%% (%d of %d): %s the %g%% target\n",
      what, parts, y, p, n, (y >= t) ? "meets" : "below", t}'
  done
done
