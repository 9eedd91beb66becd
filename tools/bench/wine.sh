# Builds the private 32-bit Wine. Source after common.sh.
#
# No multiarch and no privileges: apt's own tools download the i386 packages of Debian bookworm into a state folder of
# their own, the packages are unpacked, and Wine's two programs are pointed at the unpacked loader. The machine's own
# packages, libraries and apt state are not touched.
# shellcheck shell=bash

WINE_RECIPE=2
WINE_DIR=$CACHE/wine-8.0-$WINE_RECIPE
WINE32=$WINE_DIR/wine32

ensure_wine() {
  [ -x "$WINE32" ] && return 0
  make_cache
  with_lock wine build_wine_once
}

build_wine_once() {
  [ -x "$WINE32" ] && return 0
  find_wine_source
  rm -rf "$WINE_DIR.building"
  logged wine "building the private 32-bit Wine in $WINE_DIR (about half a minute after the download of 130 MB)" \
    build_wine "$WINE_DIR.building" "$WINE_DIR"
  rm -rf "$WINE_DIR"
  mv "$WINE_DIR.building" "$WINE_DIR" || die "cannot rename $WINE_DIR.building to $WINE_DIR"
}

# Sets wine_source (a Debian mirror) and wine_keyring, or ends with one clear line.
find_wine_source() {
  wine_source=${WINE_MIRROR:-}
  wine_keyring=${WINE_KEYRING:-/usr/share/keyrings/debian-archive-keyring.gpg}
  if [ -z "$wine_source" ]; then
    if [ -z "$(apt-get indextargets 'Created-By: Packages' 2>/dev/null)" ]; then
      with_lock packages logged apt-update "refreshing the package lists" refresh_lists
    fi
    wine_source=$(apt-get indextargets --format '$(SITE) $(CODENAME) $(COMPONENT)' 'Created-By: Packages' 'Origin: Debian' |
      awk '$3 == "main" && $2 !~ /-/ && !found { found = $1 } END { print found }')
  fi
  [ -n "$wine_source" ] ||
    die "no Debian mirror in this machine's apt sources: set WINE_MIRROR (the address of one) and WINE_KEYRING"
  [ -r "$wine_keyring" ] ||
    die "no keyring at $wine_keyring: install debian-archive-keyring or set WINE_KEYRING to Debian's archive keyring"
}

# build_wine DIR FINAL: builds below DIR what will be used at FINAL.
build_wine() {
  local dir=$1 final=$2 root=$1/root state=$1/apt
  mkdir -p "$root" "$state"/{lists/partial,cache/archives/partial,state}
  : >"$state/status"
  echo "deb [arch=i386 signed-by=$wine_keyring] $wine_source bookworm main" >"$state/sources.list"
  local apt=(apt-get -q -o APT::Architecture=i386 -o APT::Architectures=i386
    -o Dir::State="$state/state" -o Dir::State::Lists="$state/lists" -o Dir::State::status="$state/status"
    -o Dir::Cache="$state/cache" -o Dir::Etc::sourcelist="$state/sources.list" -o Dir::Etc::sourceparts=/dev/null
    -o Dir::Etc::preferencesparts=/dev/null -o APT::Sandbox::User=root -o Debug::NoLocking=1
    -o APT::Install-Recommends=0 -o Acquire::Languages=none -o Acquire::Retries=3)
  "${apt[@]}" update
  "${apt[@]}" install -y --download-only wine32 wine fonts-wine
  local deb
  for deb in "$state"/cache/archives/*.deb; do dpkg-deb -x "$deb" "$root"; done

  # What the package's install script would do: mark zlib1.dll as one of Wine's own.
  local dlls=$root/usr/lib/i386-linux-gnu/wine/i386-windows
  cp "$root/usr/i686-w64-mingw32/lib/zlib1.dll" "$dlls/zlib1.dll"
  printf 'Wine builtin DLL\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0' |
    dd of="$dlls/zlib1.dll" bs=1 seek=64 conv=notrunc status=none

  local program
  for program in wine wineserver32; do
    patchelf --set-interpreter "$final/root/lib/i386-linux-gnu/ld-linux.so.2" "$root/usr/lib/wine/$program"
  done
  # The loader looks for its server beside itself first; the script of that name there looks below /usr only.
  ln -sf wineserver32 "$root/usr/lib/wine/wineserver"
  # This build looks for its own fonts beside its data folder, the package puts them into it. Without them no text is drawn.
  local font
  for font in "$root"/usr/share/wine/fonts/*; do ln -sf "../wine/fonts/${font##*/}" "$root/usr/share/fonts/"; done
  # Every prefix holds copies of these files: without their debug sections it is less than half the size.
  python3 "$REPO/tools/bench/strip_debug.py" "$dlls"
  rm -rf "$state" "$root"/usr/share/{doc,man,locale,info} "$root/usr/x86_64-w64-mingw32"

  cat >"$dir/wine32" <<WRAPPER
#!/bin/sh
R=$final/root
export LD_LIBRARY_PATH=\$R/usr/lib/i386-linux-gnu:\$R/lib/i386-linux-gnu
export WINELOADER=\$R/usr/lib/wine/wine WINESERVER=\$R/usr/lib/wine/wineserver32 WINEARCH=win32
[ "\$1" = --server ] && { shift; exec \$WINESERVER "\$@"; }
exec \$WINELOADER "\$@"
WRAPPER
  chmod +x "$dir/wine32"
}
