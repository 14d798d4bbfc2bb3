#!/usr/bin/env bash
# Somebody paints in the air: the person of a clip stands before a virtual camera, again and again,
# and the real program in a real window finds the hands, paints the lines and changes the colours.
# Leaves air.png behind, taken when the colour has changed for the second time.
# usage: air_test.sh PROGRAM CLIP OUTPUT_FOLDER
set -euo pipefail
# shellcheck source=tests/e2e/desktop.sh
source "$(dirname "$0")/desktop.sh"
# shellcheck source=tests/e2e/camera_services.sh
source "$(dirname "$0")/camera_services.sh"
program=$1
clip=$2
out=$3
require_camera_services
rm -rf "$out"
mkdir -p "$out"
start_desktop 1400x900
start_camera_services

# Black at first, until the window is there to see the person come.
showings=(videotestsrc pattern=black num-buffers=150 ! 'video/x-raw,width=640,height=360,framerate=30/1' ! showings.)
for _ in 1 2 3 4 5; do showings+=(filesrc "location=$clip" ! decodebin ! showings.); done
plug_in 1280 720 "${showings[@]}" concat name=showings ! videoscale ! videoconvert ! videorate ! \
  identity sync=true
start_program "$program"

look() { import -silent -window "$window" "$out/look.png"; }

# has_color INDEX: whether that colour of the palette is the chosen one, which bears a dark ring.
has_color() {
  look
  [ "$(convert "$out/look.png" -format "%[fx:p{$((22 + 30 * $1 + 12)),44}.intensity < 0.3]" info:)" = 1 ]
}

# shows COLOR: whether there is a line of that colour on the canvas.
shows() {
  local pixels
  pixels=$(convert "$out/look.png" -crop 1029x578+0+70 -fuzz 1% -fill black +opaque "$1" \
    -fill white -opaque "$1" -format '%[fx:mean * w * h]' info:)
  awk -v pixels="$pixels" 'BEGIN { exit !(pixels > 200) }'
}

shows_all_colors() { look && shows '#1ae5ff' && shows '#ff26cc' && shows '#73ff33'; }

wait_until "the second change of colour" has_color 2
cp "$out/look.png" "$out/air.png"
wait_until "lines in three colours" shows_all_colors
cp "$out/look.png" "$out/lines.png"
echo "passed"
