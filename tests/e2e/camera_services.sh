# shellcheck shell=bash
# Sourced after desktop.sh by what needs a camera: PipeWire with a session bus of its own, and cameras
# that it shows.

camera= # The process of the one that is plugged in.

# require_camera_services: ends the script where they cannot be had.
require_camera_services() {
  local tool
  for tool in dbus-daemon pipewire pw-cli wireplumber gst-launch-1.0; do
    if ! command -v "$tool" >/dev/null; then
      echo "SKIPPED: $tool is not installed."
      exit 77
    fi
  done
}

start_camera_services() {
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

# plug_in WIDTH HEIGHT SOURCE...: a camera of that size which shows what the words of a GStreamer
# source make. Returns when PipeWire lists it.
plug_in() {
  camera=
  wait_until "the camera to be listed" camera_comes "$@"
}

# camera_comes: as plug_in, once; on a busy machine PipeWire does not take every camera in.
camera_comes() {
  local width=$1 height=$2 deadline=$((SECONDS + 8))
  shift 2
  [ -z "$camera" ] || unplug
  gst-launch-1.0 -q "$@" ! "video/x-raw,format=YUY2,width=$width,height=$height,framerate=30/1" ! \
    pipewiresink mode=provide \
    'stream-properties=p,media.class=Video/Source,media.role=Camera,node.name=virtual-camera' \
    >/dev/null 2>&1 &
  camera=$!
  pids+=("$camera")
  until camera_is_listed; do
    [ "$SECONDS" -lt "$deadline" ] || return 1
    sleep 0.1
  done
}

camera_is_listed() { pw-cli ls Node 2>/dev/null | grep -q virtual-camera; }

# plug_in_bars WIDTH HEIGHT: colour bars, white on the left and blue on the right.
plug_in_bars() { plug_in "$1" "$2" videotestsrc is-live=true pattern=smpte; }

unplug() {
  kill -KILL "$camera" 2>/dev/null || true
  wait "$camera" 2>/dev/null || true
}
