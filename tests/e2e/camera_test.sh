#!/usr/bin/env bash
# The real program before a virtual camera that PipeWire shows: the picture is mirrored, upright and
# dimmed on the canvas; the camera goes and comes back; another one has another shape.
# usage: camera_test.sh PROGRAM OUTPUT_FOLDER
set -euo pipefail
# shellcheck source=tests/e2e/desktop.sh
source "$(dirname "$0")/desktop.sh"
# shellcheck source=tests/e2e/camera_services.sh
source "$(dirname "$0")/camera_services.sh"
program=$1
out=$2
require_camera_services
rm -rf "$out"
mkdir -p "$out"
start_desktop 1400x900

# shows X Y R G B: whether the newest screenshot has about that colour there.
shows() {
  local -a have
  read -ra have < <(convert "$out/look.png" -format \
    "%[fx:round(255*p{$1,$2}.r)] %[fx:round(255*p{$1,$2}.g)] %[fx:round(255*p{$1,$2}.b)]" info:)
  local i difference
  for i in 0 1 2; do
    local want=$((i + 3))
    difference=$((have[i] - ${!want}))
    [ "${difference#-}" -le 20 ] || return 1
  done
}

# The canvas lies between the bars of the window, which is 1280 pixels wide, and its sidebar.
left=0 top=0
find_window_corner() {
  eval "$(xdotool getwindowgeometry --shell "$window" | grep -E '^[XY]=')"
  left=$X
  top=$Y
}

# Bars at 65 % of their light, because the picture is darkened by 0.35: mirrored, so that blue is
# on the left and white on the right, and upright, so that the long bars are above.
shows_bars() {
  screenshot "$out/look.png"
  shows $((left + $1)) $((top + 300)) 0 0 165 && shows $((left + $2)) $((top + 300)) 165 165 165 &&
    ! shows $((left + $1)) $((top + 610)) 0 0 165
}

# The desk behind a canvas of 4:3 is not the camera's picture.
shows_narrow_bars() {
  works_again 200 820 && ! shows $((left + 40)) $((top + 300)) 0 0 165
}

# The banner's grey, where the canvas has a coloured bar otherwise.
banner_is_shown() {
  screenshot "$out/look.png"
  shows $((left + 500)) $((top + 102)) 239 239 239
}

works_again() { shows_bars "$1" "$2" && ! banner_is_shown; }

start_camera_services
plug_in_bars 1280 720
start_program "$program"
find_window_corner
wait_until "the camera's picture" shows_bars 40 980
cp "$out/look.png" "$out/wide.png"

unplug
wait_until "the camera's end to be told" banner_is_shown
cp "$out/look.png" "$out/unplugged.png"
plug_in_bars 1280 720
wait_until "the camera's picture again" works_again 40 980

unplug
wait_until "the camera's end to be told" banner_is_shown
plug_in_bars 640 480
wait_until "the picture of 4:3" shows_narrow_bars
cp "$out/look.png" "$out/narrow.png"

xdotool key ctrl+q
wait_until "the program to end" program_has_ended
echo "The camera works."
