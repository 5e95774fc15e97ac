#!/bin/sh
# Runs one Windows program under Wine: wine_run.sh <program.exe> [argument ...]
#
# CMake calls it for gtest_discover_tests and for every CTest entry
# (CMAKE_CROSSCOMPILING_EMULATOR).  It keeps one Wine server alive between
# calls: a program then starts in about 20 ms instead of 500 ms.
#
# The first program of a Wine session starts Wine's service processes, and they
# keep that program's stdout open until the session ends.  CTest would wait for
# them.  So the session is opened here by a program whose streams are closed.
set -eu

export WINEPREFIX="${WINEPREFIX:-${XDG_CACHE_HOME:-$HOME/.cache}/genostat-wine}"
export WINEDEBUG="${WINEDEBUG:--all}"
# No menu entries, no file associations, no offer to install Mono or Gecko.
export WINEDLLOVERRIDES="${WINEDLLOVERRIDES:-winemenubuilder.exe,mscoree,mshtml=}"

mkdir -p "$WINEPREFIX"
exec 9>"$WINEPREFIX/.session.lock"
flock 9
if ! wineserver -k0 2>/dev/null; then
  wineserver -p60 </dev/null >/dev/null 2>&1 9>&-
  wine cmd.exe /c exit </dev/null >/dev/null 2>&1 9>&-
fi
exec 9>&-

exec wine "$@"
