#!/usr/bin/env bash
# Packs the Windows program that ./test.sh windows has built: build/windows/KivoScreen-<version>-setup.exe.
set -euo pipefail
cd "$(dirname "$0")/../.."

stage=$PWD/build/windows/stage
remove_list=$PWD/build/windows/remove_list.nsh
version=$(sed -n 's/^project(KivoScreen VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
output=$PWD/build/windows/KivoScreen-$version-setup.exe

cmake --build --preset windows --target kivo-screen
rm -rf "$stage"
cmake --install build/windows --prefix "$stage" --strip >/dev/null
# The uninstaller takes away what the installer brought, file by file, and a folder only when it is empty.
(
    cd "$stage"
    find . -type f -printf 'Delete "$INSTDIR/%P"\n' | tr / '\\'
    find . -mindepth 1 -depth -type d -printf 'RMDir "$INSTDIR/%P"\n' | tr / '\\'
) >"$remove_list"
makensis -V2 -INPUTCHARSET UTF8 -DSTAGE="$stage" -DREMOVE_LIST="$remove_list" -DVERSION="$version" \
    -DSIZE_KB="$(du -sk "$stage" | cut -f1)" -DOUTPUT="$output" -DICON="$PWD/resources/skins/logo.ico" \
    packaging/windows/installer.nsi
(cd "$stage" && find . -type f -printf '%8s  %P\n' | sort -k2)
echo "$(stat -c %s "$output") bytes: $output"
