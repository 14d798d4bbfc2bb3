#!/usr/bin/env bash
# Runs COMMAND where Qt, GStreamer, FFmpeg and OpenCV are not installed: an empty folder is mounted
# over the development files of each, for this command alone. That needs root; without it, the
# command runs as it is and a line says so.
# usage: tests/without_desktop_libraries.sh COMMAND [ARG...]
set -euo pipefail

if ! unshare --mount true 2>/dev/null; then
  echo "Not allowed to hide the desktop libraries; running with them in place."
  exec "$@"
fi

# shellcheck disable=SC2016 # expanded by the inner shell
exec unshare --mount bash -c '
  empty=$(mktemp -d)
  shopt -s nullglob
  for folder in /usr/include/*/qt6 /usr/lib/*/cmake/Qt6* /usr/lib/qt6 \
    /usr/include/gstreamer-1.0 /usr/include/opencv4 /usr/include/*/libav* /usr/include/*/libsw*; do
    [ -d "$folder" ] && mount --bind "$empty" "$folder"
  done
  "$@"
  status=$?
  rmdir "$empty"  # The mounts end with this process.
  exit $status' _ "$@"
