#!/usr/bin/env bash
# Somebody records, and the program is ended in other ways than by its window: by each signal with
# which a system asks programs to end, and by the end of the display. Every time the video must be
# finished, up to the last moment.
# usage: quit_test.sh PROGRAMS_FOLDER OUTPUT_FOLDER
set -euo pipefail
# shellcheck source=tests/e2e/desktop.sh
source "$(dirname "$0")/desktop.sh"
programs=$1
out=$2
rm -rf "$out"
mkdir -p "$out"

# check_video NAME BEGIN END: it is finished, and its last frame is from shortly before its end,
# moments in seconds.
check_video() {
  "$programs/video_times" "$out/$1.mp4" >"$out/times" || fail "$1: the video does not play"
  ! grep -q moof "$out/$1.mp4" || fail "$1: the video is not finished"
  awk -v lasted="$(awk "BEGIN { print $3 - $2 }")" '{ last = $1 }
    END { exit !(NR > 10 && last > lasted - 1.5) }' "$out/times" || fail "$1: the video's end is missing"
}

record() {
  start_program "$programs/wavescribe"
  find_canvas
  xdotool key ctrl+r
  wait_for_window "Record Video"
  xdotool key ctrl+a
  xdotool type --delay 20 "$out/$1.mp4"
  xdotool key Return
  wait_until "the recording to begin" test -s "$out/$1.mp4"
  began=$EPOCHREALTIME
  wait_until "the window to be active again" activate "$window"
  drag $((canvas_x + 100)) $((canvas_y + 100)) $((canvas_x + 400)) $((canvas_y + 300))
  sleep 1
}

start_desktop 1400x900
for signal in TERM HUP INT; do
  record "$signal"
  ended=$EPOCHREALTIME
  kill -"$signal" "$program_pid"
  wait_until "the program to end" program_has_ended
  check_video "$signal" "$began" "$ended"
done

record display
ended=$EPOCHREALTIME
kill -KILL "$display_pid"
unset DISPLAY
wait_until "the program to end" program_has_ended
check_video display "$began" "$ended"
echo "passed"
