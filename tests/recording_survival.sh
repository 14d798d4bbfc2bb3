#!/usr/bin/env bash
# Kills recordings at random moments and fills the disk under them, a few times; with --full often
# enough for figures (some minutes).
# usage: tests/recording_survival.sh [--full] [TEST_PROGRAM]
set -euo pipefail
if [ "${1:-}" = --full ]; then
  shift
  export WAVESCRIBE_KILLS=100 WAVESCRIBE_FILL_LEVELS=20
fi
exec "${1:-$(dirname "$0")/../build/release/bin/survival_test}"
