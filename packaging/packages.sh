# shellcheck shell=bash
# Sourced by the commands at the root: installs the packages of the named sections of
# debian-packages.txt that are missing, through sudo when not root, and builds presets.

# How long to wait for another program that is installing packages.
readonly kPackageLockSeconds=600

packages_in() {
  awk -v wanted=" $* " '
    /^[[:space:]]*(#|$)/ { next }
    /^\[/ { section = substr($0, 2, index($0, "]") - 2); next }
    index(wanted, " " section " ") { print $1 }' "$(dirname "${BASH_SOURCE[0]}")/debian-packages.txt"
}

# Those of the packages that are not installed.
missing_among() {
  comm -23 <(printf '%s\n' "$@" | sort -u) \
    <(dpkg-query -W -f='${db:Status-Status} ${Package}\n' "$@" 2>/dev/null |
      sed -n 's/^installed //p' | sort -u)
}

as_root() {
  if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

# apt-get can wait for the lock of the packages, but not for that of their lists. Any other failure
# need not matter: the lists that are there may do.
update_package_lists() {
  local said deadline=$((SECONDS + kPackageLockSeconds))
  until said=$(as_root env LC_ALL=C apt-get update -qq 2>&1); do
    if [[ $said != *"Could not get lock"* ]] || [ "$SECONDS" -gt "$deadline" ]; then
      echo "$said"
      return 0
    fi
    sleep 5
  done
}

install_packages() {
  local -a wanted missing
  mapfile -t wanted < <(packages_in "$@")
  mapfile -t missing < <(missing_among "${wanted[@]}")
  [ ${#missing[@]} -eq 0 ] && return 0
  if ! command -v apt-get >/dev/null || { [ "$(id -u)" -ne 0 ] && ! command -v sudo >/dev/null; }; then
    echo "These packages are missing, and only root on Debian can install them:" >&2
    echo "  apt-get install --no-install-recommends ${missing[*]}" >&2
    return 1
  fi
  echo "Installing ${#missing[@]} packages: ${missing[*]}"
  update_package_lists
  as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
    -o DPkg::Lock::Timeout="$kPackageLockSeconds" "${missing[@]}" >/dev/null
}

# Whether the preset is configured: here, and since the presets changed.
is_configured() {
  local folder=build/$1
  [ -f "$folder/build.ninja" ] && [ "$folder/CMakeCache.txt" -nt CMakePresets.json ] &&
    [ "$(sed -n 's/^CMAKE_HOME_DIRECTORY:INTERNAL=//p' "$folder/CMakeCache.txt")" -ef . ]
}

# build_preset PRESET [TARGET...]: configures when needed and builds, quietly unless it fails.
build_preset() {
  local preset=$1 log
  shift
  mkdir -p "build/$preset"
  log=build/$preset/build.log
  local targets=()
  [ $# -gt 0 ] && targets=(--target "$@")
  [ -f "build/$preset/build.ninja" ] || echo "Building ($preset). The first time takes minutes."
  if ! { { is_configured "$preset" || cmake --fresh --preset "$preset"; } &&
    cmake --build --preset "$preset" "${targets[@]}"; } >"$log" 2>&1; then
    cat "$log"
    echo "The $preset build failed; its log is $log."
    return 1
  fi
}
