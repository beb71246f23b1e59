#!/usr/bin/env bash
# Packs the Windows program that ./test.sh windows has built: build/windows/KivoScreen-<version>-setup.exe.
set -euo pipefail
cd "$(dirname "$0")/../.."

stage=$PWD/build/windows/stage
version=$(sed -n 's/^project(KivoScreen VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
output=$PWD/build/windows/KivoScreen-$version-setup.exe

cmake --build --preset windows --target kivo-screen
rm -rf "$stage"
cmake --install build/windows --prefix "$stage" --strip >/dev/null
# What there is goes with it, files and then folders from the innermost one: by this list an update and the uninstaller take
# away what the installer brought, and nothing else.
list=$(
    cd "$stage"
    find . -type f -printf '%P\r\n' | sort
    find . -mindepth 1 -depth -type d -printf '%P/\r\n'
)
if LC_ALL=C grep -q '[^ -~'$'\r'']' <<<"$list"; then
    echo "build_installer.sh: the installer reads the list as ASCII, and a name is not." >&2
    exit 1
fi
printf '%s\n' "${list//\//\\}" >"$stage/installed.txt"
makensis -V2 -INPUTCHARSET UTF8 -DSTAGE="$stage" -DVERSION="$version" \
    -DSIZE_KB="$(du -sk "$stage" | cut -f1)" -DOUTPUT="$output" -DICON="$PWD/resources/skins/logo.ico" \
    packaging/windows/installer.nsi
(cd "$stage" && find . -type f -printf '%8s  %P\n' | sort -k2)
echo "$(stat -c %s "$output") bytes: $output"
echo "SHA-256: $(sha256sum "$output" | cut -d' ' -f1)"
