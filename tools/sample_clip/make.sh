#!/usr/bin/env bash
# Makes assets/sample.webm, the hands in it and the lines that the pen takes, anew.
# usage: make.sh HUMAN_FOLDER, where the training's rigged mesh lies
set -euo pipefail
human=$(realpath "$1")
cd "$(dirname "$0")/../.."
source packaging/packages.sh
install_packages build run test
build_preset release sample_clip
folder=$(mktemp -d)
trap 'rm -r "$folder"' EXIT
build/release/bin/sample_clip "$human" "$folder"
gst-launch-1.0 -q filesrc location="$folder/frames.bgra" \
  ! rawvideoparse format=bgra width=640 height=360 framerate=30/1 \
  ! videoconvert ! video/x-raw,format=I420 \
  ! vp9enc deadline=1 cpu-used=4 end-usage=cq cq-level=38 target-bitrate=250000 \
  keyframe-max-dist=150 ! webmmux ! filesink location=assets/sample.webm
cp "$folder/hands.jsonl" assets/sample-hands.jsonl
cp "$folder/path.json" assets/sample-path.json
