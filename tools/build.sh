# Building: the program, its tests, the native fuzz targets. Source after bench/common.sh.
# shellcheck shell=bash

BUILD=$REPO/build

# with_build_lock COMMAND ARG...: one build at a time in this checkout.
with_build_lock() {
  mkdir -p "$BUILD" || die "cannot create $BUILD"
  (
    exec 7>"$BUILD/.lock"
    if ! flock -n 7; then
      step "waiting for another build in this checkout"
      flock 7
    fi
    "$@"
  )
}

# build_tree PRESET TEXT [TARGET...]
build_tree() {
  local preset=$1 text=$2 tree=$BUILD/$1 targets=() quiet=()
  shift 2
  [ $# -eq 0 ] || targets=(--target "$@")
  # A tree made for another place of the checkout cannot be used again.
  if [ -f "$tree/CMakeCache.txt" ] && ! grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$REPO" "$tree/CMakeCache.txt"; then
    rm -rf "$tree"
  fi
  if [ ! -f "$tree/build.ninja" ] || [ "$REPO/CMakePresets.json" -nt "$tree/build.ninja" ]; then
    (cd "$REPO" && cmake --preset "$preset") >"$BUILD/configure-$preset.log" 2>&1 7>&- || {
      tail -n 25 "$BUILD/configure-$preset.log" >&2
      die "configuring $text failed (whole output in $BUILD/configure-$preset.log)"
    }
  fi
  step "building $text"
  [ -t 1 ] || quiet=(--quiet)
  cmake --build "$tree" "${targets[@]}" -- "${quiet[@]}" ${VELTRANE_JOBS:+-j"$VELTRANE_JOBS"} >&2 7>&- ||
    die "building $text failed (see the compiler's messages above)"
}

build_program() { build_tree win "the program and its sample distribution"; }
build_windows() {
  build_program
  build_tree tests "the tests"
}
build_host() { build_tree host "the native fuzz targets"; }
