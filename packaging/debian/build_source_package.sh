#!/usr/bin/env bash
# Makes the Debian source package of what is committed: build/source/kivo-screen_<version>.dsc with its two archives. With
# --try it is unpacked and built, which takes as long as any build.
set -euo pipefail
cd "$(dirname "$0")/../.."
. tools/scripts/packages.sh

install_packages packaging/debian/build-packages.txt
install_packages packaging/debian/package-packages.txt
. packaging/debian/debian_folder.sh

rm -rf build/source
mkdir -p build/source
name=kivo-screen-$KIVO_VERSION
git archive --format=tar --prefix="$name/" HEAD | gzip -9n >"build/source/kivo-screen_$KIVO_VERSION.orig.tar.gz"
tar -xf "build/source/kivo-screen_$KIVO_VERSION.orig.tar.gz" -C build/source
make_debian_folder "build/source/$name"
(cd build/source && dpkg-source --build "$name")
rm -rf "build/source/${name:?}"
if [ "${1:-}" = --try ]; then
    (cd build/source && dpkg-source --extract ./*.dsc && cd "$name" && dpkg-buildpackage --build=binary --no-sign)
fi
(cd build/source && sha256sum ./*.dsc ./*.tar.*)
