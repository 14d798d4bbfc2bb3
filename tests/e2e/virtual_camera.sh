# shellcheck shell=bash
# Sourced beside desktop.sh by the tests that need a camera: one that PipeWire shows, on a session
# bus of its own.

camera= # The process that shows its picture.

# Ends the test as skipped where the tools for it are missing.
needs_virtual_camera() {
  local tool
  for tool in dbus-daemon pipewire wireplumber gst-launch-1.0; do
    if ! command -v "$tool" >/dev/null; then
      echo "SKIPPED: $tool is not installed."
      exit 77
    fi
  done
}

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
