# Shared locations for the project's scripts. Sourced, not run.
# The Qt-for-Windows install is cached outside the work tree, keyed by the Qt
# version, the cross compiler's version and the toolchain file, so every clone
# on this machine reuses one build.

KX_TOP=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
KX_CACHE_DIR=${KX_CACHE_DIR:-${XDG_CACHE_HOME:-${HOME:-/root}/.cache}/kxDeleteOldFiles}
KX_TOOLCHAIN_FILE=$KX_TOP/cmake/mingw-w64-x86_64.cmake
KX_WINE64=/usr/lib/wine/wine64
KX_WINESERVER=/usr/lib/wine/wineserver

kx_qt_version() {
    dpkg-query -W -f='${Version}' qt6-base-dev 2>/dev/null | sed 's/[+~-].*//'
}

kx_qt_win64_dir() {
    local compiler toolchain
    compiler=$(x86_64-w64-mingw32-g++-posix -dumpversion 2>/dev/null || echo none)
    toolchain=$(sha256sum "$KX_TOOLCHAIN_FILE" | cut -c1-12)
    echo "$KX_CACHE_DIR/qt-$(kx_qt_version)-mingw$compiler-posix-$toolchain"
}

KX_BUILD_DIR=${KX_BUILD_DIR:-$KX_TOP/build}

kx_wine_env() {
    export WINEPREFIX=${WINEPREFIX:-$KX_BUILD_DIR/wineprefix}
    export WINEDEBUG=${WINEDEBUG:--all}
    # No prompts to install Wine's Mono or Gecko: nothing here needs them.
    export WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-mscoree,mshtml=}
}

# Starts the Wine server and Wine's helper processes detached from every pipe.
# They outlive the program that starts them and keep its standard output open,
# so a test runner reading that output would otherwise wait for them forever.
kx_wine_start() {
    kx_wine_env
    mkdir -p "$WINEPREFIX"
    (
        flock 9
        # The lock's descriptor is closed for Wine's processes: they outlive
        # this block and would otherwise hold the lock for good.
        if [ ! -f "$WINEPREFIX/.kx-booted" ]; then
            "$KX_WINE64" wineboot -u </dev/null >/dev/null 2>&1 9>&-
            touch "$WINEPREFIX/.kx-booted"
        fi
        # Exit code 0 means a new server was started for this prefix.
        if "$KX_WINESERVER" -p </dev/null >/dev/null 2>&1 9>&-; then
            "$KX_WINE64" wineboot </dev/null >/dev/null 2>&1 9>&-
        fi
    ) 9>"$WINEPREFIX.lock"
}

kx_wine_stop() {
    kx_wine_env
    "$KX_WINESERVER" -k >/dev/null 2>&1 || true
}
