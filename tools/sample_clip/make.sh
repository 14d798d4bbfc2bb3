#!/usr/bin/env bash
# Makes assets/sample.webm, the hands in it and the lines that are meant, anew.
set -euo pipefail
cd "$(dirname "$0")/../.."
source packaging/packages.sh
install_packages build run
build_preset release sample_clip
folder=$(mktemp -d)
trap 'rm -r "$folder"' EXIT
build/release/bin/sample_clip "$folder"
gst-launch-1.0 -q filesrc location="$folder/frames.bgra" \
  ! rawvideoparse format=bgra width=640 height=360 framerate=30/1 \
  ! videoconvert ! video/x-raw,format=I420 \
  ! vp9enc deadline=1 cpu-used=4 end-usage=cq cq-level=32 target-bitrate=200000 \
  keyframe-max-dist=120 ! webmmux ! filesink location=assets/sample.webm
cp "$folder/hands.jsonl" assets/sample-hands.jsonl
cp "$folder/path.json" assets/sample-path.json
