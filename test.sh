#!/usr/bin/env bash
# Builds and runs every test: ./test.sh [dev|qt6|asan|tsan|windows], dev where nothing is said. Further arguments go to
# ctest, and only the programs of the tests that they choose are built. --build, as the first argument, runs none.
# "qt6" is dev with Qt 6 instead of Qt 5. "windows" builds the Windows program with its tests and runs them under Wine;
# its first run builds Qt too.
set -euo pipefail
cd "$(dirname "$0")"
. tools/scripts/packages.sh

build_only=
if [ "${1:-}" = --build ]; then
    build_only=yes
    shift
fi
preset=${1:-dev}
fresh=
[ $# -eq 0 ] || shift
case $preset in
    dev | qt6 | asan | tsan | windows) ;;
    *)
        echo "test.sh: there is no preset '$preset' (dev, qt6, asan, tsan, windows)." >&2
        exit 2
        ;;
esac
install_packages packaging/debian/build-packages.txt
[ "$preset" != qt6 ] || install_packages packaging/debian/qt6-packages.txt
if [ "$preset" = windows ]; then
    install_packages packaging/debian/windows-packages.txt
    KIVO_WINDOWS_DEPENDENCIES=$(packaging/windows/build_dependencies.sh)
    export KIVO_WINDOWS_DEPENDENCIES
    # Another recipe makes another folder; CMake would go on with the one it knows.
    cached=$(sed -n 's/^KIVO_WINDOWS_DEPENDENCIES:PATH=//p' build/windows/CMakeCache.txt 2>/dev/null || true)
    [ -z "$cached" ] || [ "$cached" = "$KIVO_WINDOWS_DEPENDENCIES" ] || fresh=yes
fi
cmake ${fresh:+--fresh} --preset "$preset"
targets=()
if [ $# -gt 0 ]; then
    mapfile -t targets < <(ctest --preset "$preset" -N "$@" | sed -n 's|^ *Test *#[0-9]*: \([a-z]*\)/.*|tests_\1|p' | sort -u)
fi
cmake --build --preset "$preset" ${targets:+--target "${targets[@]}"}
[ -n "$build_only" ] || ctest --preset "$preset" "$@"
