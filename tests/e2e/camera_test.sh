#!/usr/bin/env bash
# The real program before a virtual camera that PipeWire shows: the picture is mirrored, upright and
# dimmed on the canvas; the camera goes and comes back; another one has another shape.
# usage: camera_test.sh PROGRAM OUTPUT_FOLDER
set -euo pipefail
# shellcheck source=tests/e2e/desktop.sh
source "$(dirname "$0")/desktop.sh"
program=$1
out=$2
for tool in dbus-daemon pipewire wireplumber gst-launch-1.0; do
  if ! command -v "$tool" >/dev/null; then
    echo "SKIPPED: $tool is not installed."
    exit 77
  fi
done
rm -rf "$out"
mkdir -p "$out"
start_desktop 1400x900

start_services() {
  export DBUS_SESSION_BUS_ADDRESS=unix:path=$XDG_RUNTIME_DIR/bus
  # Without services that start by themselves: no portal, so the device itself decides.
  cat >"$XDG_RUNTIME_DIR/bus.conf" <<XML
<busconfig>
  <type>session</type>
  <listen>$DBUS_SESSION_BUS_ADDRESS</listen>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/>
  </policy>
</busconfig>
XML
  dbus-daemon --config-file="$XDG_RUNTIME_DIR/bus.conf" --nofork --nopidfile 2>/dev/null &
  pids+=($!)
  wait_until "the bus" test -S "$XDG_RUNTIME_DIR/bus"
  pipewire >/dev/null 2>&1 &
  pids+=($!)
  wait_until "PipeWire" test -S "$XDG_RUNTIME_DIR/pipewire-0"
  wireplumber >/dev/null 2>&1 &
  pids+=($!)
  sleep 2
}

# plug_in WIDTH HEIGHT: a camera of colour bars, white on the left and blue on the right.
plug_in() {
  gst-launch-1.0 -q videotestsrc is-live=true pattern=smpte ! \
    "video/x-raw,format=YUY2,width=$1,height=$2,framerate=30/1" ! pipewiresink mode=provide \
    'stream-properties=p,media.class=Video/Source,media.role=Camera,node.name=virtual-camera' \
    >/dev/null 2>&1 &
  camera=$!
  pids+=("$camera")
}

unplug() {
  kill -KILL "$camera"
  wait "$camera" 2>/dev/null || true
}

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
  shows_bars 200 820 && ! shows $((left + 40)) $((top + 300)) 0 0 165
}

no_camera_shown() {
  screenshot "$out/look.png"
  ! shows $((left + 980)) $((top + 300)) 165 165 165
}

start_services
plug_in 1280 720
sleep 1
start_program "$program"
find_window_corner
wait_until "the camera's picture" shows_bars 40 980
cp "$out/look.png" "$out/wide.png"

unplug
wait_until "the picture to go" no_camera_shown
cp "$out/look.png" "$out/unplugged.png"
plug_in 1280 720
wait_until "the camera's picture again" shows_bars 40 980

unplug
wait_until "the picture to go" no_camera_shown
plug_in 640 480
wait_until "the picture of 4:3" shows_narrow_bars
cp "$out/look.png" "$out/narrow.png"

xdotool key ctrl+q
wait_until "the program to end" program_has_ended
echo "The camera works."
