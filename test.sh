#!/usr/bin/env bash
# Builds and runs every test: ./test.sh [dev|asan|tsan], dev where nothing is said. Further arguments go to ctest.
set -euo pipefail
cd "$(dirname "$0")"
. tools/scripts/packages.sh

preset=${1:-dev}
[ $# -eq 0 ] || shift
case $preset in
    dev | asan | tsan) ;;
    *)
        echo "test.sh: there is no preset '$preset' (dev, asan, tsan)." >&2
        exit 2
        ;;
esac
install_packages packaging/debian/build-packages.txt
cmake --preset "$preset"
cmake --build --preset "$preset"
ctest --preset "$preset" "$@"
