#!/usr/bin/env bash
# Somebody paints before a virtual camera, with glow, and records it: twenty minutes, or SECONDS.
# From the middle on strokes fade. Prints what the program took of the machine each minute, how soon
# the screen showed a press of the mouse, how steadily it was redrawn, and how many of the frames
# due are in the video. Only a recording without a playable video is a failure: the rest are figures.
# usage: tests/e2e/long_recording.sh PROGRAMS_FOLDER OUTPUT_FOLDER [SECONDS]
set -euo pipefail
# shellcheck source=tests/e2e/desktop.sh
source "$(dirname "$0")/desktop.sh"
# shellcheck source=tests/e2e/camera_services.sh
source "$(dirname "$0")/camera_services.sh"
programs=$1
out=$2
seconds=${3:-1200}
video=$out/recording.mp4
require_camera_services
rm -rf "$out"
mkdir -p "$out"
start_desktop 1400x900
start_camera_services
plug_in_bars 1280 720
start_program "$programs/wavescribe"
sleep 2

# Where things are in a window of 1280 x 680.
eval "$(xdotool getwindowgeometry --shell "$window" | grep -E '^[XY]=')"
canvas_x=$X
canvas_y=$((Y + 53))
canvas_width=1029
canvas_height=578
fade_switch="$((X + 1050)) $((Y + 371))"
press_y=$((canvas_y + 60)) # Painting stays below.

# watch NAME X Y WIDTH HEIGHT: the moments at which that part of the screen changed go to a file.
watch() {
  "$programs/watch_screen" "$2" "$3" "$4" "$5" >"$out/$1" &
  pids+=($!)
}

# A dot, at a place of its own, on a part of the canvas where nothing else changes.
press() {
  xdotool mousemove --sync $((canvas_x + 320 + 37 * $1 % 300)) "$press_y"
  echo "$EPOCHREALTIME" >>"$out/presses"
  xdotool mousedown 1 sleep 0.05 mouseup 1
}

# paint NUMBER: a curve of a hundred points, another one for each number.
paint() {
  awk -v left="$canvas_x" -v top="$canvas_y" -v width="$canvas_width" -v height="$canvas_height" \
    -v n="$1" '
    BEGIN {
      pi = atan2(0, -1)
      for (i = 0; i <= 100; ++i) {
        t = i / 100
        x = 0.5 + 0.4 * sin(2 * pi * (0.7 * t + n * 0.137)) * cos(n + t)
        y = 0.62 + 0.3 * sin(2 * pi * (1.1 * t + n * 0.271))
        printf "mousemove %d %d sleep 0.016\n", left + width * x, top + height * y
        if (i == 0) print "mousedown 1"
      }
      print "mouseup 1"
    }' | xdotool -
}

# cpu_seconds: of the program, all threads, so far.
cpu_seconds() {
  awk -v hertz="$(getconf CLK_TCK)" '{ sub(/.*\) /, ""); print ($12 + $13) / hertz }' \
    "/proc/$program_pid/stat"
}

report_machine() {
  awk -v t=$((SECONDS - begin)) -v cpu="$(cpu_seconds)" -v before="$cpu_before" \
    -v span=$((SECONDS - reported)) '
    /^VmRSS/ { printf "%4d s: %.0f MB, %.0f %% of a core\n", t, $2 / 1024, 100 * (cpu - before) / span }
    ' "/proc/$program_pid/status"
  cpu_before=$(cpu_seconds)
  reported=$SECONDS
}

xdotool key ctrl+r
wait_for_window "Record Video"
xdotool key ctrl+a
xdotool type --delay 20 "$video"
xdotool key Return
wait_until "the recording to begin" test -s "$video"
wait_until "the window to be active again" activate "$window"
watch redraws $((canvas_x + 40)) $((canvas_y + 500)) 64 16 # The camera's noise is there.
watch strip $((canvas_x + 310)) $((press_y - 8)) 320 16

begin=$SECONDS
reported=$begin
cpu_before=$(cpu_seconds)
fading=false
for ((stroke = 0; SECONDS - begin < seconds; ++stroke)); do
  if [ $fading = false ] && [ $((2 * (SECONDS - begin))) -ge "$seconds" ]; then
    fading=true
    # shellcheck disable=SC2086 # Two numbers.
    xdotool mousemove --sync $fade_switch click 1
  fi
  click_swatch $((stroke % 8))
  [ $((stroke % 5)) -ne 0 ] || press "$stroke"
  paint "$stroke"
  sleep 0.5
  [ $((SECONDS - reported)) -lt 60 ] || report_machine
done
screenshot "$out/end.png"
[ "$SECONDS" -eq "$reported" ] || report_machine
xdotool key ctrl+r
sleep 0.5
xdotool key ctrl+q
wait_until "the program to end" program_has_ended

"$programs/video_times" "$video" >"$out/times" || fail "the video does not play"
echo "$stroke strokes; the window was redrawn:"
# steadiness FILE: of moments, one a line.
steadiness() {
  awk 'NR > 1 { gap = $1 - last; if (gap > most) most = gap; if (gap > 0.1) ++long }
    { last = $1; if (NR == 1) first = $1 }
    END { printf "  %.2f times a second, longest pause %.3f s, %d longer than 0.1 s\n",
      (NR - 1) / (last - first), most, long }' "$1"
}
steadiness "$out/redraws"
echo "from a press to the screen:"
awk 'NR == FNR { press[++n] = $1; next }
  { while (i < n && press[i + 1] <= $1) print $1 - press[++i] }' "$out/presses" "$out/strip" |
  sort -n | awk '{ t[NR] = $1 } END {
    if (NR) printf "  %d presses, median %.3f s, longest %.3f s\n", NR, t[int((NR + 1) / 2)], t[NR] }'
echo "the video:"
steadiness "$out/times"
awk '{ last = $1 } END {
  due = 30 * last
  printf "  %d frames of %d due until %.1f s: %.2f %%\n", NR, due, last, 100 * NR / due }' "$out/times"
