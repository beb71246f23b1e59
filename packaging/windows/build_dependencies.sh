#!/usr/bin/env bash
# Builds what the Windows program is made with, from Debian's own source packages: Qt base and hidapi, with mingw-w64.
# Prints the folder with the result on standard output, everything else on standard error.
#
# The result is kept in a cache folder under a name that carries a hash of this recipe and of the compiler, so that it is
# built once a machine; a second run only prints the folder. KIVO_WINDOWS_CACHE names another cache folder.
# Needs the packages of packaging/debian/windows-packages.txt. No right of root, no change to the system's own apt lists.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
recipe=("$here/$(basename "$0")" "$here/hidapi_write.patch")
cache=${KIVO_WINDOWS_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/kivo-screen/windows}
host=x86_64-w64-mingw32
host_tools=/usr/lib/qt5/bin
compiler=$host-g++-posix

hash=$({ cat "${recipe[@]}"; "$compiler" -dumpfullversion; } | sha256sum | cut -c1-16)
result=$cache/dependencies-$hash
if [ -e "$result/complete" ]; then
    echo "$result"
    exit 0
fi

mkdir -p "$cache"
exec 9>"$cache/lock"
flock 9 # two builds at once would step on each other
[ ! -e "$result/complete" ] || { echo "$result"; exit 0; }

started=$SECONDS
work=$cache/work-$hash
rm -rf "$work" "$result"
mkdir -p "$work"
log=$work/log.txt
exec 3>&1 1>&2 # only the folder goes to standard output
echo "Building Qt and hidapi for Windows, about a quarter of an hour on two cores. The log is $log"
trap 'status=$?; [ $status -eq 0 ] || { tail -40 "$log" 2>/dev/null; echo "build_dependencies.sh: failed, see $log"; }' EXIT

say() { echo "  $((SECONDS - started)) s: $*"; }

# Sources, as Debian has signed them: the mirrors are the system's, lists and archives our own. Of the release itself: Qt
# has to be the one whose moc is installed here.
fetch_sources() {
    local codename
    codename=$(. /etc/os-release && echo "$VERSION_CODENAME")
    mkdir -p "$work/apt/lists/partial" "$work/apt/cache/archives/partial"
    apt-get indextargets --format '$(ORIGIN)|$(REPO_URI)|$(RELEASE)' 'Created-By: Packages' 'Component: main' |
        sed -n 's/^Debian|\([^|]*\)|\([^|]*\)$/deb-src [signed-by=\/usr\/share\/keyrings\/debian-archive-keyring.gpg] \1 \2 main/p' |
        { grep -E " $codename(-updates|-security)? main\$" || true; } | sort -u >"$work/apt/sources.list"
    [ -s "$work/apt/sources.list" ] || { echo "apt knows no packages of $codename; run apt-get update."; return 1; }
    local options=(-q -o Dir::Etc::SourceList="$work/apt/sources.list" -o Dir::Etc::SourceParts=/dev/null
        -o Dir::State::Lists="$work/apt/lists" -o Dir::Cache="$work/apt/cache" -o APT::Sandbox::User="$(id -un)")
    apt-get "${options[@]}" update
    (cd "$work" && apt-get "${options[@]}" source --download-only qtbase-opensource-src hidapi)
    local description
    for description in "$work"/*.dsc; do
        dpkg-source --no-check -x "$description" "$work/$(basename "${description%%_*}")"
    done
}

# Only what the program and its tests use. "generic" input plugins and all else that wants QtNetwork is left out. moc, rcc
# and uic are this system's, of the same source package; precompiled headers save a tenth of the time.
build_qt() {
    export MAKEFLAGS=-j$(nproc)
    mkdir -p "$work/qt"
    cd "$work/qt"
    "$work/qtbase-opensource-src/configure" -opensource -confirm-license -xplatform win32-g++ \
        -device-option CROSS_COMPILE=$host- -prefix / -extprefix "$result" -hostprefix "$result" \
        -external-hostbindir "$host_tools" \
        -shared -release -silent -no-opengl -no-direct2d -no-dbus -no-ssl -no-icu -pch \
        -qt-zlib -qt-libpng -qt-libjpeg -qt-freetype -qt-pcre \
        -no-feature-sql -no-feature-concurrent -no-feature-printer -no-feature-tabletevent \
        -nomake examples -nomake tests
    mkdir -p src/plugins
    cd src
    ../bin/qmake "$work/qtbase-opensource-src/src/src.pro"
    make qmake_all
    # "-o": the tools count as made, though only their Makefiles are.
    make -o sub-bootstrap -o sub-moc -o sub-rcc -o sub-uic -o sub-tracegen -o sub-qlalr -o sub-qvkgen \
        sub-winmain sub-widgets sub-testlib sub-platformsupport sub-3rdparty-libjpeg
    cd plugins
    ../../bin/qmake "$work/qtbase-opensource-src/src/plugins/plugins.pro"
    make sub-platforms sub-imageformats sub-styles
}

install_qt() {
    cd "$work/qt"
    local folder
    for folder in src/winmain src/corelib src/gui src/widgets src/testlib \
        src/plugins/platforms src/plugins/imageformats src/plugins/styles; do
        make -C "$folder" install
    done
    # Qt's CMake files ask for these, which no "install" of a folder brings.
    install -D bin/qmake "$result/bin/qmake"
    ln -s "$host_tools"/{moc,rcc,uic} "$result/bin/"
    mkdir -p "$result/mkspecs"
    cp -r "$work/qtbase-opensource-src/mkspecs/win32-g++" "$result/mkspecs/"
}

build_hidapi() {
    cd "$work"
    patch -d hidapi -p1 <"$here/hidapi_write.patch"
    $host-gcc -O2 -shared -DHID_API_DLL_EXPORT -Ihidapi/hidapi -Ihidapi/windows hidapi/windows/hid.c \
        -Wl,--out-implib,libhidapi.dll.a -o hidapi.dll -s
    install -D -m 644 hidapi.dll "$result/bin/hidapi.dll"
    install -D -m 644 libhidapi.dll.a "$result/lib/libhidapi.dll.a"
    install -D -m 644 hidapi/hidapi/hidapi.h "$result/include/hidapi/hidapi.h"
    mkdir -p "$result/lib/pkgconfig"
    cat >"$result/lib/pkgconfig/hidapi.pc" <<-END
	prefix=$result
	Name: hidapi
	Description: C library for USB HID devices
	Version: $(cat hidapi/VERSION)
	Libs: -L\${prefix}/lib -lhidapi
	Cflags: -I\${prefix}/include/hidapi
	END
}

# The compiler's own libraries, which everything above is linked to.
install_runtime() {
    local name
    for name in libgcc_s_seh-1.dll libstdc++-6.dll libwinpthread-1.dll; do
        install -s --strip-program=$host-strip -m 644 "$("$compiler" -print-file-name=$name)" "$result/bin/$name"
    done
}

# The licences go with the libraries, and what was built from what.
install_papers() {
    mkdir -p "$result/licenses"
    local qt=$work/qtbase-opensource-src
    cp "$qt/LICENSE.LGPL3" "$result/licenses/Qt-LGPL-3.txt"
    cp "$qt/LICENSE.GPL3" "$result/licenses/GPL-3.txt" # the one above stands on it
    cp "$qt/debian/copyright" "$result/licenses/Qt-copyright.txt" # with all that is built into it
    cp "$work"/hidapi/LICENSE-bsd.txt "$result/licenses/hidapi-BSD.txt"
    cp /usr/share/doc/gcc-mingw-w64-base/copyright "$result/licenses/GCC-libraries.txt"
    cp /usr/share/doc/mingw-w64-common/copyright "$result/licenses/MinGW-w64.txt"
    (cd "$work" && ls ./*.dsc | sed 's|^\./||') >"$result/sources.txt"
    "$compiler" --version | head -1 >>"$result/sources.txt"
}

for step in fetch_sources build_qt install_qt build_hidapi install_runtime install_papers; do
    say "$step"
    (set -e; "$step") >>"$log" 2>&1
done
touch "$result/complete"
rm -rf "$work"
say "done, $(du -sh "$result" | cut -f1) in $result"
echo "$result" >&3
