#!/usr/bin/env bash
# Builds the Debian package: build/package/kivo-screen_<version>_<architecture>.deb, with its dbgsym package beside it. The
# same commit gives the same bytes.
set -euo pipefail
cd "$(dirname "$0")/../.."
. tools/scripts/packages.sh

install_packages packaging/debian/build-packages.txt
install_packages packaging/debian/package-packages.txt
. packaging/debian/debian_folder.sh
cmake --preset release
cmake --build --preset release --target kivo-screen kivo-report-log

root=$PWD
work=$root/build/package-work
rm -rf build/package "$work"
mkdir -p build/package "$work/kivo-screen-$KIVO_VERSION"
tree=$work/kivo-screen-$KIVO_VERSION
make_debian_folder "$tree"
cp CHANGELOG.md "$tree"
if ! (cd "$tree" && KIVO_BUILT=$root/build/release dpkg-buildpackage --build=binary --no-sign) >"$work/log" 2>&1; then
    cat "$work/log" >&2
    exit 1
fi
mv "$work"/*.deb "$work"/*.changes "$work"/*.buildinfo build/package/
rm -rf "$work"

package=$(echo build/package/kivo-screen_*.deb)
dpkg-deb --contents "$package" | grep -v '/$'
dpkg-deb --field "$package" Package Version Depends Recommends Installed-Size
echo "$(stat -c %s "$package") bytes: $package"
