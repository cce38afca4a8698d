# SPDX-License-Identifier: Apache-2.0
# What the scripts of this folder share. To be sourced first: goes to the project's root.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# What a build looks for when it is configured, the tests' parts too: a build folder is configured once
# and serves all scripts.
readonly BUILD_PACKAGES=(
  g++ cmake ninja-build python3 zlib1g-dev android-libbase-dev android-liblog-dev
  libgtest-dev libgmock-dev libjsoncpp-dev
)

# What single scripts need besides.
readonly ANALYSE_PACKAGES=(clang clang-tidy cppcheck)
readonly BENCHMARK_PACKAGES=(libbenchmark-dev valgrind strace)
readonly COVERAGE_PACKAGES=(clang-19 llvm-19 libclang-rt-19-dev zsh)
readonly PACKAGE_PACKAGES=(dpkg-dev file git)
readonly BROWSER_PACKAGES=(chromium chromium-driver python3-selenium pngquant)
readonly FUZZ_PACKAGES=(clang llvm libclang-rt-14-dev)

# Prints the comment at the head of the script.
usage() {
  sed -n '/^# usage/,/^$/s/^# \{0,1\}//p' "script/${0##*/}"
}

# Says what is wrong with the script's arguments, and ends it.
wrong_usage() {
  echo "${0##*/}: $*" >&2
  usage >&2
  exit 2
}

# Ends a script that has no arguments, or one of the options $1, for other arguments and for --help.
take_option() {
  local options=" $1 "
  shift
  [ "${1-}" != --help ] || { usage; exit 0; }
  [ $# = 0 ] || [[ $# = 1 && $options == *" $1 "* ]] || wrong_usage "unknown argument ${*: -1}"
}

# Says what is done next, and when: minutes and seconds since the first script began. The steps of a
# script that is called by another one go where the first one's go.
export STEPS_BEGAN=${STEPS_BEGAN-$EPOCHSECONDS} STEPS_OF=${STEPS_OF-${0##*/}}
{ : >&9; } 2>/dev/null || exec 9>&2
step() {
  local seconds=$((EPOCHSECONDS - STEPS_BEGAN))
  printf '[%2d:%02d] %s: %s\n' $((seconds / 60)) $((seconds % 60)) "$STEPS_OF" "$*" >&9
}

fail() {
  echo "${0##*/}: $*" >&2
  exit 2
}

# Installs those of the named Debian packages that are missing, as root or through sudo. Does nothing,
# and asks nobody, when none is.
install_packages() {
  local missing=() package root=()
  for package in "$@"; do
    dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed ||
      missing+=("$package")
  done
  [ ${#missing[@]} = 0 ] && return
  command -v apt-get >/dev/null || fail "needs ${missing[*]}; install them and run this again"
  [ "$(id -u)" = 0 ] || root=(sudo)
  command -v "${root[@]-true}" >/dev/null || fail "needs root or sudo to install packages"
  step "install ${missing[*]}"
  "${root[@]}" apt-get update -q >/dev/null || fail "cannot read the package lists"
  "${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends \
    "${missing[@]}" >/dev/null || fail "cannot install ${missing[*]}"
}

# Configures the preset $1, unless that has been done since the presets changed. Other changes CMake
# notices by itself.
configure_preset() {
  local stamp=build/$1/configured
  [ -z "$(find CMakePresets.json cmake/toolchains -newer "$stamp" 2>&1)" ] && return
  step "configure build/$1"
  quietly cmake --fresh --preset "$1" && touch "$stamp"
}

# Configures and builds the preset $1, with the targets that follow or all. Waits for another leg that
# builds it too.
build_preset() {
  local preset=$1
  shift
  configure_preset "$preset" || return
  step "build ${*:-all} in build/$preset"
  quietly flock "build/$preset" cmake --build "build/$preset" ${@:+--target "$@"}
}

# Runs $2 with each of the arguments that follow, so many at a time as $1 says.
side_by_side() {
  local most=$1 command=$2 argument
  shift 2
  for argument in "$@"; do
    while [ "$(jobs -rp | wc -l)" -ge "$most" ]; do wait -n || true; done
    "$command" "$argument" &
  done
  wait
}

# Runs a command and shows its output only when it fails.
quietly() {
  local log status=0
  log=$(mktemp)
  "$@" >"$log" 2>&1 || status=$?
  if [ $status != 0 ]; then
    cat "$log" >&2
    echo "${0##*/}: '$*' failed" >&2
  fi
  rm -f "$log"
  return $status
}
