#!/usr/bin/env bash
# Drives the real program in a real window with the mouse and the keyboard: draws, undoes, saves,
# and looks at the saved picture and at the screen.
# usage: window_test.sh PROGRAM OUTPUT_FOLDER
set -euo pipefail
# shellcheck source=tests/e2e/desktop.sh
source "$(dirname "$0")/desktop.sh"
program=$1
out=$2
rm -rf "$out"
mkdir -p "$out"
start_desktop 1400x900
start_program "$program"

# pixel FILE X Y: red, green, blue and alpha of one pixel, 0 to 255 each.
pixel() {
  convert "$1" -alpha on -format \
    "%[fx:round(255*p{$2,$3}.r)] %[fx:round(255*p{$2,$3}.g)] %[fx:round(255*p{$2,$3}.b)] %[fx:round(255*p{$2,$3}.a)]" info:
}

# is_color "R G B A" R G B A TOLERANCE
is_color() {
  local -a have
  read -ra have <<<"$1"
  local i difference
  for i in 0 1 2 3; do
    local want=$((i + 2))
    difference=$((have[i] - ${!want}))
    [ "${difference#-}" -le "$6" ] || return 1
  done
}

# screen_shows R G B X Y: waits until the canvas shows about that colour there.
screen_shows() {
  screenshot "$out/look.png"
  is_color "$(pixel "$out/look.png" "$4" "$5")" "$1" "$2" "$3" 255 40
}

find_canvas
left=$((canvas_x + 150))
middle=$((canvas_x + canvas_width / 2))
right=$((canvas_x + canvas_width - 150))
row=$((canvas_height / 4))

drag $left $((canvas_y + row)) $right $((canvas_y + row))
click_swatch 1
drag $left $((canvas_y + 2 * row)) $right $((canvas_y + 2 * row))
drag $left $((canvas_y + 3 * row)) $right $((canvas_y + 3 * row))

# The middle of a glowing stroke is nearly white with a touch of its colour.
wait_until "the first stroke" screen_shows 175 246 255 $middle $((canvas_y + row))
wait_until "the second stroke" screen_shows 255 179 237 $middle $((canvas_y + 2 * row))
wait_until "the third stroke" screen_shows 255 179 237 $middle $((canvas_y + 3 * row))
screenshot "$out/three_strokes.png"

xdotool key ctrl+z
wait_until "the third stroke to go" screen_shows 20 20 26 $middle $((canvas_y + 3 * row))
screen_shows 255 179 237 $middle $((canvas_y + 2 * row)) || fail "undo took too much"

# Clearing only asks.
for keys in ctrl+shift+BackSpace ctrl+shift+Delete; do
  xdotool key "$keys"
  wait_for_window "Clear the painting?"
  xdotool key Escape
  wait_until "the question to close" no_window "Clear the painting?"
done

# Save the painting alone.
xdotool key ctrl+s
wait_for_window "Save image"
screenshot "$out/save_choice.png"
xdotool key Tab space
wait_for_window "Save Image"
xdotool key ctrl+a
xdotool type --delay 20 "$out/painting"
xdotool key Return
wait_until "the picture to be saved" test -s "$out/painting.png"
wait_until "the window to be active again" activate "$window"

# picture_shows R G B A ROW: at the middle of a row of the saved picture.
picture_shows() {
  local have
  have=$(pixel "$out/painting.png" 960 $((1080 * $5 / 4)))
  is_color "$have" "$1" "$2" "$3" "$4" 8 || fail "row $5 of the picture is $have"
}
[ "$(identify -format '%w %h' "$out/painting.png")" = "1920 1080" ] || fail "wrong picture size"
picture_shows 175 246 255 255 1
picture_shows 255 179 237 255 2
picture_shows 0 0 0 0 3

# The window keeps its least size.
xdotool windowsize "$window" 300 200
wait_until "the window to shrink" window_is_at_most 1000 700
read -r width height < <(window_size)
if [ "$width" -lt 960 ] || [ "$height" -lt 620 ]; then
  fail "the window became $width x $height"
fi

# Nothing is kept between runs.
xdotool key ctrl+q
wait_until "the program to end" program_has_ended
kept=$(find "$HOME" -type f -not -path '*/.cache/*' -not -path "$XDG_RUNTIME_DIR/*")
[ -z "$kept" ] || fail "left behind: $kept"
echo "The window works."
