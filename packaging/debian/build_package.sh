#!/usr/bin/env bash
# Builds the Debian package: build/package/kivo-screen_<version>_<architecture>.deb.
set -euo pipefail
cd "$(dirname "$0")/../.."
. tools/scripts/packages.sh

install_packages packaging/debian/build-packages.txt
install_packages packaging/debian/package-packages.txt
cmake --preset release
cmake --build --preset release
rm -rf build/package
mkdir -p build/package
log=build/release/cpack.log
if ! (umask 022 && cpack --config build/release/CPackConfig.cmake -G DEB -B build/release/package) >"$log" 2>&1; then
    cat "$log" >&2
    exit 1
fi
mv build/release/package/*.deb build/package/
rm -rf build/release/package

package=$(echo build/package/*.deb)
dpkg-deb --contents "$package" | grep -v '/$'
dpkg-deb --field "$package" Package Version Depends Recommends Installed-Size
echo "$(stat -c %s "$package") bytes: $package"
