#!/usr/bin/env bash
# How long it takes from a camera's frame to the line on the screen: the real program with watches at
# its joints, in a real window, before a virtual camera that shows the painter of a clip again and
# again at 30 frames a second.
# usage: frame_to_line.sh PROGRAM CLIP SECONDS
set -euo pipefail
# shellcheck source=tests/e2e/desktop.sh
source "$(dirname "$0")/desktop.sh"
# shellcheck source=tests/e2e/camera_services.sh
source "$(dirname "$0")/camera_services.sh"
program=$1
clip=$2
seconds=$3
require_camera_services
out=$(mktemp -d)
start_desktop 1400x900
start_camera_services

# The clip is some 17 seconds long.
showings=()
for _ in $(seq 0 $(((seconds + 10) / 17))); do
  showings+=(filesrc "location=$clip" ! decodebin ! showings.)
done
plug_in 1280 720 "${showings[@]}" concat name=showings ! videoscale ! videoconvert ! videorate ! \
  identity sync=true
"$program" "$seconds"
rm -rf "$out"
