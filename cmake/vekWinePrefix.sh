#!/bin/sh
# Creates the Wine prefix of a build tree. Test programs started in parallel on a missing prefix
# race to create it, so it is made once, before them. The server is let go before returning: a
# server kept alive would keep the helper processes it started, and with them the test driver's
# output pipe, open.
export WINEPREFIX="${VEK_WINEPREFIX:-$PWD/wineprefix}"
export WINEDEBUG=-all
/usr/lib/wine/wine64 wineboot --init || exit 1
exec /usr/lib/wine/wineserver -w
