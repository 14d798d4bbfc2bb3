#!/usr/bin/env bash
# Paints a little picture in the real program and takes the picture of its window for the README.
# usage: tests/e2e/screenshot.sh PROGRAM OUTPUT.png
set -euo pipefail
# shellcheck source=tests/e2e/desktop.sh
source "$(dirname "$0")/desktop.sh"
program=$1
picture=$2
out=$(mktemp -d)
start_desktop 1400x900
start_program "$program"
find_canvas

# curve X Y: paints the curve of two formulas in awk, both of t from 0 to 1, as shares of the
# canvas's width and height; h is the share of the width that is as long as one of the height.
curve() {
  awk -v left="$canvas_x" -v top="$canvas_y" -v width="$canvas_width" -v height="$canvas_height" "
    function x(t) { return $1 }
    function y(t) { return $2 }
    BEGIN {
      pi = atan2(0, -1); h = height / width
      for (i = 0; i <= 140; ++i) {
        printf \"mousemove %d %d sleep 0.008\\n\", left + width * x(i / 140), top + height * y(i / 140)
        if (i == 0) print \"mousedown 1 sleep 0.05\"
      }
      print \"mouseup 1\"
    }" | xdotool -
}

wave() { curve '0.05 + 0.9 * t' "0.7 + 0.2 * sin(pi * t) * sin(2 * pi * (2 * t + $1))"; }

wave 0
click_swatch 1
wave 0.33
click_swatch 6
wave 0.67
click_swatch 3
curve '0.5 + h * 0.19 * t * cos(6 * pi * t)' '0.29 + 0.19 * t * sin(6 * pi * t)'
click_swatch 5
curve '0.17 + h * 0.13 * sin(2 * pi * t) ^ 3' \
  '0.27 - 0.008 * (13 * cos(2 * pi * t) - 5 * cos(4 * pi * t) - 2 * cos(6 * pi * t) - cos(8 * pi * t))'
click_swatch 4
curve '0.83 + h * 0.15 * sin(4 * pi * t) * (1 - 0.35 * sin(5 * pi * t) ^ 2)' \
  '0.29 - 0.15 * cos(4 * pi * t) * (1 - 0.35 * sin(5 * pi * t) ^ 2)'
xdotool mousemove 2 2
sleep 1
import -silent -window "$window" "$picture"
rm -rf "$out"
