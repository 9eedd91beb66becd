# The Debian packages that build, tests and lint need. Source after common.sh.
# shellcheck shell=bash

PACKAGES=(
  # building the program and the tests
  cmake ninja-build g++-mingw-w64-i686-win32 g++-mingw-w64-i686-posix binutils-mingw-w64-i686 googletest
  # the sample distribution: LZ compression, fonts, help (compiled HTML)
  mscompress fonts-liberation fonts-dejavu-core fp-utils
  # native fuzz targets, format, lint
  clang clang-format clang-tidy libclang-rt-dev
  # the bench
  patchelf xvfb xdotool imagemagick locales bubblewrap python3 util-linux fontconfig
)

# Prints the packages of the list that are not installed.
missing_packages() {
  local have
  have=" $(dpkg-query -W -f='${Package}=${db:Status-Status} ' "${PACKAGES[@]}" 2>/dev/null || true)"
  local p
  for p in "${PACKAGES[@]}"; do
    case $have in
      *" $p=installed "*) ;;
      *) printf '%s\n' "$p" ;;
    esac
  done
}

# Installs what is missing. Quick when nothing is.
ensure_packages() {
  command -v apt-get >/dev/null && command -v dpkg-query >/dev/null ||
    die "this machine has no apt-get: the bench needs Debian 12 or 13 (or a relative of them)"
  [ -z "$(missing_packages)" ] || {
    make_cache
    with_lock packages install_packages
  }
}

install_packages() {
  local missing
  mapfile -t missing < <(missing_packages)
  [ ${#missing[@]} -gt 0 ] || return 0
  logged apt-update "refreshing the package lists" refresh_lists
  logged apt-install "installing ${#missing[@]} packages: ${missing[*]}" \
    as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -o DPkg::Lock::Timeout=600 \
    install -y --no-install-recommends "${missing[@]}"
}

# apt's waiting for locks does not cover the lock of the lists: try again while somebody else holds it, ten minutes at most.
refresh_lists() {
  local out
  for _ in $(seq 1 120); do
    if out=$(as_root apt-get -q update 2>&1); then
      printf '%s\n' "$out"
      return 0
    fi
    printf '%s\n' "$out"
    case $out in
      *"Could not get lock"* | *"Unable to lock"*) sleep 5 ;;
      *) return 1 ;;
    esac
  done
  return 1
}
