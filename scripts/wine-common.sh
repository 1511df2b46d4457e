# SPDX-License-Identifier: MIT
# Shared by install-wine and wine-run: where things are.
WINE_TREE=${OVRA_WINE_TREE:-/var/cache/ovra-wine-i386}
export WINEDEBUG=${WINEDEBUG:--all}
