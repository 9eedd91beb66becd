# Windows prefixes: the golden one, clones of it, and how programs are run in them. Source after common.sh and wine.sh.
# shellcheck shell=bash

# Programs of the bench see none of the machine's fonts: a removed font must never be one of the machine's files.
bench_fonts_conf() {
  mkdir -p "$CACHE/no-fonts"
  cat <<CONF
<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "fonts.dtd">
<fontconfig>
  <dir>$CACHE/no-fonts</dir>
  <cachedir>$CACHE/no-fonts/cache</cachedir>
</fontconfig>
CONF
}

# bench_env: sets the environment for the prefix in WINEPREFIX.
bench_env() {
  export HOME=$WINEPREFIX/home LC_ALL=${VELTRANE_LOCALE:-C.UTF-8} FONTCONFIG_FILE=$CACHE/fonts.conf
  export WINEDEBUG=${WINEDEBUG:--all}
  # No download of Mono or Gecko, and no desktop entries on the machine for the shortcuts a program makes.
  export WINEDLLOVERRIDES=${WINEDLLOVERRIDES:+$WINEDLLOVERRIDES;}'mscoree,mshtml=;winemenubuilder.exe=d'
  unset LANG LANGUAGE LC_CTYPE LC_MESSAGES XDG_CONFIG_HOME XDG_DATA_HOME XDG_CACHE_HOME XDG_DESKTOP_DIR XAUTHLOCALHOSTNAME
}

# Prints the words to put before a command. Root without capabilities meets the same access errors as anybody else;
# with them, read-only files and folders would be writable.
drop_words() {
  local name value
  while read -r name value; do
    [ "$name" = CapPrm: ] && break
  done </proc/self/status
  [ "$value" = 0000000000000000 ] || printf '%s\n' setpriv --bounding-set=-all --inh-caps=-all --ambient-caps=-all
}

# wine_run SECONDS ARG...: runs wine32 with the arguments in WINEPREFIX; input from nowhere, output as the caller set it.
wine_run() (
  local seconds=$1 drop
  shift
  mapfile -t drop < <(drop_words)
  bench_env
  exec timeout -k 5 "$seconds" "${drop[@]}" "$WINE32" "$@" </dev/null
)

# Ends everything that runs in WINEPREFIX. To the programs inside it is a power cut.
wine_kill() { wine_run 30 --server -k >/dev/null 2>&1 || true; }

# ---- display ----

XVFB_PID=
# Starts a display of our own unless one was given from outside. It is ended by end_display.
start_display() {
  [ -z "${DISPLAY:-}" ] || return 0
  local number pipe line
  pipe=$(mktemp "${TMPDIR:-/tmp}/veltrane-display.XXXXXX")
  exec 8<>"$pipe"
  Xvfb -displayfd 8 -screen 0 1024x768x24 -nolisten tcp >/dev/null 2>&1 </dev/null 7>&- 9>&- &
  XVFB_PID=$!
  disown "$XVFB_PID"
  exec 8>&-
  for _ in $(seq 1 200); do
    read -r number <"$pipe" || true
    [ -n "$number" ] && break
    kill -0 "$XVFB_PID" 2>/dev/null || break
    sleep 0.05
  done
  rm -f "$pipe"
  [ -n "$number" ] || die "Xvfb did not start (try: Xvfb :77)"
  export DISPLAY=:$number
}
end_display() {
  [ -z "$XVFB_PID" ] || kill "$XVFB_PID" 2>/dev/null || true
  XVFB_PID=
}

# ---- golden prefix ----

# One for each user: Wine refuses a prefix of somebody else. The name carries a sum over this file's recipe.
golden_name() {
  printf 'golden-%s-%s-%s\n' "$WINE_RECIPE" "$(id -un)" "$({ declare -f make_golden bench_env bench_fonts_conf; } | sha256sum | cut -c1-12)"
}
GOLDEN=$CACHE/$(golden_name)

ensure_golden() {
  [ -d "$GOLDEN" ] && [ -f "$CACHE/fonts.conf" ] && return 0
  make_cache
  with_lock golden make_golden_once
}

make_golden_once() {
  bench_fonts_conf >"$CACHE/fonts.conf"
  [ -d "$GOLDEN" ] && return 0
  rm -rf "$GOLDEN.building"
  logged golden "making the Windows prefix that every test clones (about 10 s)" make_golden "$GOLDEN.building"
  mv "$GOLDEN.building" "$GOLDEN" || die "cannot rename $GOLDEN.building to $GOLDEN"
}

make_golden() {
  export WINEPREFIX=$1
  unset DISPLAY
  trap 'wine_kill; end_display' EXIT
  mkdir -p "$WINEPREFIX/home"
  start_display
  wine_run 120 wineboot -i
  wine_run 60 --server -w
  # The machine's disks: not for the programs under test.
  rm -f "$WINEPREFIX"/dosdevices/z: "$WINEPREFIX"/dosdevices/z::
  # User folders are links to $HOME by absolute path, so that clones would share them: make them real.
  find "$WINEPREFIX/drive_c/users" -type l -exec sh -c 'rm "$1" && mkdir "$1"' - {} \;
  # A crash ends the program instead of showing a dialog that nobody answers.
  wine_run 60 reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f
  # Without a window manager a managed window takes two seconds to go away.
  wine_run 60 reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f
  wine_run 60 --server -w
  [ -d "$WINEPREFIX/drive_c/windows/system32" ]
  trap - EXIT
  end_display
}

# ---- clones ----

# Clones lie in the cache, not in /tmp: hidden files need a file system with user attributes.
new_clone() {
  local dir
  dir=$(mktemp -d "$CACHE/clones/$$.XXXXXX") || die "cannot create a folder below $CACHE/clones"
  cp -a "$GOLDEN/." "$dir/" || die "cannot clone the golden prefix to $dir (disk full?)"
  printf '%s\n' "$dir"
}

# delete_prefix DIR: programs that are just being ended may still write; try a few times.
delete_prefix() {
  (export WINEPREFIX=$1; wine_kill)
  for _ in 1 2 3 4 5; do
    chmod -R u+rwX "$1" 2>/dev/null || true
    rm -rf "$1" 2>/dev/null && return 0
    sleep 0.2
  done
  rm -rf "$1"
}

# Clones whose owner is gone (a killed run) are removed; the number in front of the name is the owner's pid.
sweep_clones() {
  local dir pid
  for dir in "$CACHE"/clones/*.*; do
    [ -d "$dir" ] || continue
    pid=${dir##*/}
    pid=${pid%%.*}
    kill -0 "$pid" 2>/dev/null || delete_prefix "$dir"
  done
}
