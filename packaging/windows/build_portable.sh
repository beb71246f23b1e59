#!/usr/bin/env bash
# Packs the Windows program that ./test.sh windows has built as a folder that needs no installation and keeps its settings
# beside the program: build/windows/KivoScreen-<version>-portable.zip. The same program gives the same bytes.
set -euo pipefail
cd "$(dirname "$0")/../.."

eval "$(cmake -P cmake/KivoRelease.cmake)"
export SOURCE_DATE_EPOCH=$KIVO_SOURCE_EPOCH # what strip writes into the program
output=$PWD/build/windows/KivoScreen-$KIVO_VERSION-portable.zip
work=$PWD/build/windows/portable
folder=$work/KivoScreen

cmake --build --preset windows --target kivo-screen
rm -rf "$work" "$output"
cmake --install build/windows --prefix "$folder" --strip >/dev/null
cp packaging/windows/portable.txt "$folder/"
find "$work" -type d -exec chmod 755 {} + -o -type f -exec chmod 644 {} +
find "$work" -exec touch --date="@$KIVO_SOURCE_EPOCH" {} +
(cd "$work" && find KivoScreen -type f | LC_ALL=C sort | TZ=UTC zip -9 -q -X -@ "$output")
rm -rf "$work"
echo "$(stat -c %s "$output") bytes: $output"
echo "SHA-256: $(sha256sum "$output" | cut -d' ' -f1)"
