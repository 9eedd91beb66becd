# Shared by ./dev and the bench scripts: places, messages, locks. Source it, do not run it.
# shellcheck shell=bash

REPO=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
CACHE=${VELTRANE_CACHE:-${XDG_CACHE_HOME:-${HOME:-/tmp}/.cache}/veltrane-setup}
case $CACHE in
  /*) ;;
  *) CACHE=$PWD/$CACHE ;;
esac

# One line, the last one of a failing command: what failed and why.
die() {
  printf 'error: %s\n' "$*" >&2
  exit 1
}

# Progress of long steps; to standard error so that a command's own output stays clean.
step() { printf '==> %s\n' "$*" >&2; }

make_cache() {
  case $CACHE in
    *[[:space:]]*) die "the cache folder must not have blanks in its path: $CACHE (set VELTRANE_CACHE)" ;;
  esac
  mkdir -p "$CACHE"/{locks,logs,clones} || die "cannot create the cache folder $CACHE (set VELTRANE_CACHE)"
}

# with_lock NAME COMMAND ARG...: runs the command in a subshell while holding the lock of that name.
with_lock() {
  local name=$1
  shift
  mkdir -p "$CACHE/locks" || die "cannot create the cache folder $CACHE (set VELTRANE_CACHE)"
  (
    exec 9>"$CACHE/locks/$name"
    if ! flock -n 9; then
      step "waiting for another run that holds the lock $name"
      flock 9 || die "cannot lock $CACHE/locks/$name"
    fi
    "$@" 9>&9
  )
}

# logged NAME TEXT COMMAND ARG...: runs a long command with its output in a log file; shows the end of it on failure.
# The command stops at its first failing step. For that, no caller may put this behind || or into a condition, where the
# shell forgets about "set -e".
logged() {
  local log=$CACHE/logs/$1.log text=$2 rc
  shift 2
  step "$text"
  set +e
  (
    set -e
    "$@"
  ) >"$log" 2>&1 </dev/null
  rc=$?
  set -e
  if [ "$rc" -ne 0 ]; then
    tail -n 25 "$log" >&2
    die "$text: failed with code $rc (whole output in $log)"
  fi
}

# Runs a command as root: directly, or by sudo.
as_root() {
  if [ "$(id -u)" -eq 0 ]; then
    "$@"
  elif command -v sudo >/dev/null; then
    sudo "$@"
  else
    die "needs root for '$*', but this is an ordinary user and there is no sudo"
  fi
}
