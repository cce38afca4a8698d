# SPDX-License-Identifier: Apache-2.0
# What the scripts of this folder share. To be sourced, from the project's root.

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

# Runs a command as root: as it is, or through sudo.
as_root() {
  if [ "$(id -u)" = 0 ]; then
    "$@"
  elif command -v sudo >/dev/null; then
    sudo "$@"
  else
    fail "needs root or sudo to install packages"
  fi
}

# Installs those of the named Debian packages that are missing. Does nothing, and asks nobody, when
# none is.
install_packages() {
  local missing=() package
  for package in "$@"; do
    dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed ||
      missing+=("$package")
  done
  [ ${#missing[@]} = 0 ] && return
  command -v apt-get >/dev/null || fail "needs ${missing[*]}; install them and run this again"
  step "install ${missing[*]}"
  as_root apt-get update -q >/dev/null || fail "cannot read the package lists"
  as_root env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends \
    "${missing[@]}" >/dev/null || fail "cannot install ${missing[*]}"
}

# Configures the preset $1, unless that has been done since the presets changed. Other changes CMake
# notices by itself.
configure_preset() {
  local stamp=build/$1/configured file
  for file in CMakePresets.json cmake/toolchains/*; do
    [ "$stamp" -nt "$file" ] && continue
    step "configure build/$1"
    quietly cmake --fresh --preset "$1" && touch "$stamp"
    return
  done
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
