# shellcheck shell=bash
# Sourced by the commands at the root: installs the packages of the named sections of
# debian-packages.txt that are missing, through sudo when not root.

packages_in() {
  awk -v wanted=" $* " '
    /^[[:space:]]*(#|$)/ { next }
    /^\[/ { section = substr($0, 2, index($0, "]") - 2); next }
    index(wanted, " " section " ") { print $1 }' "$(dirname "${BASH_SOURCE[0]}")/debian-packages.txt"
}

install_packages() {
  local missing=()
  local package
  for package in $(packages_in "$@"); do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "ok installed" || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "Installing ${#missing[@]} packages: ${missing[*]}"
  local as_root=()
  [ "$(id -u)" -eq 0 ] || as_root=(sudo)
  "${as_root[@]}" apt-get update -qq
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# build_preset PRESET [TARGET...]: configures when needed and builds, quietly unless it fails.
build_preset() {
  local preset=$1 log
  shift
  mkdir -p "build/$preset"
  log=build/$preset/build.log
  local targets=()
  [ $# -gt 0 ] && targets=(--target "$@")
  if ! { { [ -f "build/$preset/build.ninja" ] || cmake --preset "$preset"; } &&
    cmake --build --preset "$preset" "${targets[@]}"; } >"$log" 2>&1; then
    cat "$log"
    echo "The $preset build failed; its log is $log."
    return 1
  fi
}
