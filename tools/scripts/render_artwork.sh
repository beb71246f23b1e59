#!/usr/bin/env bash
# Renders every picture of resources/ from its sources in resources/artwork: drawings first, then the overview
# pictures and default files, which are made by the program itself from those. With --check nothing is changed: it
# tells whether the committed files are what the sources give. Pictures are compared by their pixels, with a little
# tolerance, because encoders and font rasterisers of other versions differ in bits. KIVO_PRESET takes another build
# than that of the preset release.
set -euo pipefail
cd "$(dirname "$0")/../.."
preset=${KIVO_PRESET:-release}
build=build/$preset
check=false
if [ "${1:-}" = --check ]; then
    check=true
elif [ $# -gt 0 ]; then
    echo "Usage: render_artwork.sh [--check]" >&2
    exit 2
fi

cmake --preset "$preset" >/dev/null
cmake --build "$build" --target kivo-artwork kivo-compare-pictures
if $check; then
    into=$(mktemp -d)
    trap 'rm -rf "$into"' EXIT
else
    into=resources
fi
"$build/bin/kivo-artwork" "$into"
# The overviews of a new theme are named before they are there.
if ! $check; then
    sed -n 's|.*<file>\(.*\)</file>.*|resources/\1|p' resources/background.qrc | xargs touch -a
fi
# These two have the committed pictures compiled in, so they come after a build with the new ones.
cmake --build "$build" --target kivo-overviews kivo-generate-defaults
"$build/bin/kivo-overviews" "$into"
"$build/bin/kivo-generate-defaults" "$into/defaults"
if $check; then
    "$build/bin/kivo-compare-pictures" "$into" resources
fi
