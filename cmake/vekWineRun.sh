#!/bin/sh
# Runs a Windows program under Wine, with the Wine prefix kept in the build tree (VEK_WINEPREFIX).
export WINEPREFIX="${VEK_WINEPREFIX:-$PWD/wineprefix}"
export WINEDEBUG=-all
exec /usr/lib/wine/wine64 "$@"
