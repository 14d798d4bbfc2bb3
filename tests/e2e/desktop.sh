# shellcheck shell=bash
# Sourced by the tests that need a real window: an X server of their own with a window manager, a
# home of their own, and the program in it. Everything ends with the script. Pictures go to the
# folder `out`.

out=
window= # The program's.
display_pid= # The X server's.
found_window=
canvas_x=0 canvas_y=0 canvas_width=0 canvas_height=0 # On the screen.
pids=()

fail() {
  echo "FAILED: $*" >&2
  [ -z "${DISPLAY:-}" ] || import -silent -window root "$out/failure.png" || true
  exit 1
}

# wait_until WHAT COMMAND...: tries the command until it succeeds, for at most a minute.
wait_until() {
  local what=$1 deadline=$((SECONDS + 60))
  shift
  until "$@"; do
    [ "$SECONDS" -lt "$deadline" ] || fail "waited in vain for $what"
    sleep 0.1
  done
}

end_desktop() {
  local pid
  for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
  wait 2>/dev/null || true
  rm -rf "$HOME"
}

# start_desktop WIDTHxHEIGHT
start_desktop() {
  HOME=$(mktemp -d)
  export HOME XDG_RUNTIME_DIR=$HOME/runtime XDG_CONFIG_HOME=$HOME/config XDG_CACHE_HOME=$HOME/.cache
  mkdir -m 700 "$XDG_RUNTIME_DIR"
  unset WAYLAND_DISPLAY QT_QPA_PLATFORM
  trap end_desktop EXIT
  # The server picks a free display itself and says which.
  local number=$HOME/.cache/display
  mkdir -p "$HOME/.cache"
  mkfifo "$number"
  Xvfb -displayfd 3 -screen 0 "$1x24" -nolisten tcp 3>"$number" 2>/dev/null &
  display_pid=$!
  pids+=("$display_pid")
  DISPLAY=:$(timeout 60 head -n 1 "$number") || fail "the X server does not start"
  export DISPLAY
  openbox 2>/dev/null &
  pids+=($!)
  wait_until "the window manager" has_window_manager
}

has_window_manager() {
  xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q "window id"
}

# start_program PROGRAM: starts it and waits for its window, whose id is then in `window`.
start_program() {
  "$1" &
  program_pid=$!
  pids+=("$program_pid")
  wait_for_window "Wavescribe"
  window=$found_window
  wait_until "the window to be active" activate "$window"
}

program_has_ended() { ! kill -0 "$program_pid" 2>/dev/null; }

# find_window TITLE: the visible window of exactly that title is then in `found_window`.
find_window() {
  for found_window in $(xdotool search --onlyvisible --name . 2>/dev/null); do
    [ "$(xdotool getwindowname "$found_window" 2>/dev/null)" != "$1" ] || return 0
  done
  return 1
}

no_window() { ! find_window "$1"; }

activate() {
  xdotool windowactivate "$1" 2>/dev/null || true
  [ "$(xdotool getactivewindow 2>/dev/null)" = "$1" ]
}

# wait_for_window TITLE: waits until it is there and has the keyboard.
wait_for_window() {
  wait_until "the window \"$1\"" find_window "$1"
  wait_until "the window \"$1\" to be active" activate "$found_window"
}

# window_size: "WIDTH HEIGHT" of the program's window without its frame.
window_size() {
  xdotool getwindowgeometry --shell "$window" |
    awk -F= '/^WIDTH/ { w = $2 } /^HEIGHT/ { print w, $2 }'
}

window_is_at_most() {
  local width height
  read -r width height < <(window_size)
  [ "$width" -le "$1" ] && [ "$height" -le "$2" ]
}

screenshot() { import -silent -window root "$1"; }

# find_canvas: where the canvas of the freshly opened window is on the screen, by its dark grey.
find_canvas() {
  wait_until "the canvas to show" canvas_shows
}

canvas_shows() {
  screenshot "$out/look.png"
  local box
  box=$(convert "$out/look.png" -fill black +opaque 'rgb(20,20,26)' -fill white -opaque \
    'rgb(20,20,26)' -format '%@' info: 2>/dev/null) || return 1
  IFS='x+' read -r canvas_width canvas_height canvas_x canvas_y <<<"$box"
  [ "${canvas_width:-0}" -gt 600 ] && [ "${canvas_height:-0}" -gt 300 ]
}

# drag X1 Y1 X2 Y2: a straight stroke in twenty steps.
drag() {
  local step
  xdotool mousemove --sync "$1" "$2" mousedown 1
  for step in $(seq 1 20); do
    xdotool mousemove $(($1 + ($3 - $1) * step / 20)) $(($2 + ($4 - $2) * step / 20)) sleep 0.01
  done
  xdotool mouseup 1
}

# click_swatch INDEX: chooses a colour of the palette.
click_swatch() {
  xdotool mousemove --sync $((canvas_x + 22 + 30 * $1)) $((canvas_y - 27)) click 1
}
