#!/usr/bin/env bash
# Builds what systems other than Debian install: build/package/kivo-screen-<version>-1.<architecture>.rpm and
# kivo-screen-<version>-<architecture>.tar.gz, which is unpacked into /usr/local. The same commit gives the same bytes.
set -euo pipefail
cd "$(dirname "$0")/../.."
. tools/scripts/packages.sh

install_packages packaging/debian/build-packages.txt
install_packages packaging/debian/package-packages.txt
eval "$(cmake -P cmake/KivoRelease.cmake)"
export SOURCE_DATE_EPOCH=$KIVO_SOURCE_EPOCH
cmake --preset release
cmake --build --preset release --target kivo-screen kivo-report-log

mkdir -p build/package
rm -f build/package/*.rpm build/package/*.tar.gz
work=build/release/package
log=build/release/cpack.log
umask 022
if ! cpack --config build/release/CPackConfig.cmake -B "$work" >"$log" 2>&1; then
    cat "$log" >&2
    exit 1
fi
mv "$work"/*.rpm build/package/
# CPack packs in the order in which the folder gives its files.
archive=$(basename "$work"/*.tar.gz)
mkdir "$work/sorted"
tar -xf "$work/$archive" -C "$work/sorted"
tar --sort=name --mtime="@$SOURCE_DATE_EPOCH" --owner=0 --group=0 --numeric-owner -C "$work/sorted" -cf - \
    "${archive%.tar.gz}" | gzip -9n >"build/package/$archive"
rm -rf "$work"
for package in build/package/*.rpm build/package/*.tar.gz; do
    echo "$(stat -c %s "$package") bytes: $package"
done
