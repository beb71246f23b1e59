#!/usr/bin/env bash
# Builds the Debian package and tries it: contents, metadata, lintian, the same bytes once more, install, a run as a new user
# would make it, removal. Then the packages of other systems and the source package, as far as they can be tried here.
# Needs root or sudo, and a system where kivo-screen is not installed.
set -euo pipefail
cd "$(dirname "$0")/../.."
. tools/scripts/packages.sh

fail() {
    echo "check_package.sh: $*" >&2
    exit 1
}
is_installed() {
    [ "$(dpkg-query -W -f='${db:Status-Status}' kivo-screen 2>/dev/null)" = installed ]
}
if is_installed; then
    fail "kivo-screen is installed here; this check would take it away."
fi

packaging/debian/build_package.sh
package=$PWD/$(echo build/package/kivo-screen_*.deb)
work=$(mktemp -d)
clean_up() {
    ! is_installed || apt_get purge -y -qq kivo-screen || true
    rm -rf "$work"
}
trap clean_up EXIT

# Contents: these files, of root, nobody else may write to any; the program is stripped.
dpkg-deb --contents "$package" >"$work/listing"
grep -v '/$' "$work/listing" | sed -E 's/^([^ ]+ +){5}//' | LC_ALL=C sort >"$work/contents"
diff packaging/debian/contents.txt "$work/contents" || fail "the package does not hold what contents.txt says."
! grep -vE '^(-rw-r--r--|-rwxr-xr-x|drwxr-xr-x|lrwxrwxrwx) root/root ' "$work/listing" || fail "owner or rights."
dpkg-deb --extract "$package" "$work/tree"
tree=$work/tree/usr
for program in "$tree/lib/kivo-screen/kivo-screen" "$tree/bin/kivo-report-log"; do
    file "$program" | grep -q ', stripped' || fail "$program is not stripped."
done
# Pictures and all: a program of this kind may not weigh more. Qt comes as packages of its own.
most_bytes=$((12 * 1024 * 1024))
bytes=$(find "$tree/lib/kivo-screen" -type f -printf '%s\n' | awk '{ sum += $1 } END { print sum }')
echo "The program's folder holds $bytes bytes."
[ "$bytes" -lt $most_bytes ] || fail "the program weighs $bytes bytes, more than $most_bytes."
for icon in "$tree"/share/icons/hicolor/*/apps/kivo-screen.png; do
    side=$(basename "$(dirname "$(dirname "$icon")")")
    file "$icon" | grep -q "PNG image data, ${side/x/ x }" || fail "$icon is not $side."
done

# A crash report without line numbers helps nobody; who wants them installs the package beside it.
dpkg-deb --contents build/package/kivo-screen-dbgsym_*.deb | grep -c '/\.build-id/.*\.debug$' | grep -qx 2 ||
    fail "the dbgsym package does not have both programs."
# Programs know nothing of where they were built.
! grep -rlaF "$PWD" "$tree" || fail "the package holds the path of the clone."
packaging/debian/lint_packages.sh build/package/*.changes
! grep '"command": ' build/release/compile_commands.json | grep -v -e '-D_FORTIFY_SOURCE=2.*-fstack-protector-strong' ||
    fail "these are compiled without hardening."

# The changelogs and the shop window tell the same version and day.
eval "$(cmake -P cmake/KivoRelease.cmake)"
heading=$(sed -n 's/^## //p' CHANGELOG.md | head -n 1)
[ "$(zcat "$tree/share/doc/kivo-screen/changelog.gz" | sed -n 's/^## //p' | head -n 1)" = "$heading" ] ||
    fail "the package has another changelog."
grep -q "<release version=\"$KIVO_VERSION\" date=\"$KIVO_RELEASE_DATE\" type=\"$KIVO_RELEASE_KIND\"/>" \
    "$tree"/share/metainfo/*.metainfo.xml || fail "the AppStream data have another release than \"$heading\"."
[[ $(dpkg-deb --field "$package" Version) == "$KIVO_VERSION"-* ]] || fail "the package has another version."

# Packed once more by somebody else, somewhere else on Earth, it is the same.
sha256sum build/package/*.deb >"$work/sums"
(umask 077 && TZ=Pacific/Auckland LC_ALL=C packaging/debian/build_package.sh >/dev/null)
sha256sum --check --quiet "$work/sums" || fail "packed twice, it is not the same."
cat "$work/sums"

# The rule has to come before the one that gives out the seat's rights.
rule=$(basename "$tree"/lib/udev/rules.d/*.rules)
[ "$(printf '%s\n' "$rule" 73-seat-late.rules | LC_ALL=C sort | head -n 1)" = "$rule" ] || fail "$rule comes too late."

desktop-file-validate "$tree/share/applications/kivo-screen.desktop"
appstreamcli validate --no-net "$tree"/share/metainfo/*.metainfo.xml
depends=$(dpkg-deb --field "$package" Depends)
for needed in libqt5widgets5 libhidapi-hidraw0 fonts-noto-cjk; do
    grep -q "$needed" <<<"$depends" || fail "it does not depend on $needed: $depends"
done

# A run as a new user would make it: a home of its own, nothing of this session, no display.
apt_get install -y -qq --no-install-recommends "$package"
dpkg --listfiles kivo-screen >"$work/installed"
home=$work/home
mkdir -m 700 "$home" "$work/run" "$work/tmp"
try_program() {
    (cd / && env -i HOME="$home" XDG_RUNTIME_DIR="$work/run" TMPDIR="$work/tmp" PATH=/usr/bin:/bin LC_ALL=C.UTF-8 \
        QT_LOGGING_RULES="*.debug=false" timeout 60 "$@")
}
try() {
    try_program kivo-screen "$@"
}
try --version | tee "$work/version"
commit=$(git describe --always --dirty --abbrev=12 --exclude='*' 2>/dev/null || true)
grep -qF "${commit:+ ($commit)}" "$work/version" || fail "it does not tell that it is built from $commit."
status=0
try --virtual-screen --panel-image "$work/panel.png" --report-log "$work/reports" --run-for 5 >"$work/said" 2>"$work/complaints" || status=$?
cat "$work/said" "$work/complaints"
[ $status -eq 0 ] || fail "the program ended with status $status."
grep -qE '^Live values sent last: .*[0-9]+%.*[0-9]{2}:[0-9]{2}' "$work/said" || fail "it sent no live values."
# Qt's platform without windows says what windows it cannot have.
! grep -vE '^(kivo-screen: no display|kivo\.(start|screen|sources): |This plugin does not support)' "$work/complaints" || fail "it complained."
file "$work/panel.png" | grep -q 'PNG image data, 320 x 170' || fail "the panel's picture is not 320 x 170."
# A photograph; a panel of one colour would be a few hundred bytes.
[ "$(stat -c %s "$work/panel.png")" -gt 10000 ] || fail "the panel's picture is empty."

# Its log is read by the program beside it.
try_program kivo-report-log "$work/reports" >"$work/replayed" || fail "the log of its reports is wrong."
grep -q 'frame chunks' "$work/replayed" || fail "the log holds no frame."

# It starts at login for those who want it.
entry=$home/.config/autostart/kivo-screen.desktop
[ ! -e "$entry" ] || fail "it starts at login though nobody asked for it."
try --autostart on
desktop-file-validate "$entry"
grep -qx 'TryExec=/usr/lib/kivo-screen/kivo-screen' "$entry" || fail "the autostart entry names another program."

# Removed, it leaves nothing but what is the user's.
(cd "$home" && find . -type f -exec sha256sum {} + | sort) >"$work/before"
grep -q 'Config.ini$' "$work/before" || fail "it kept no settings."
apt_get purge -y -qq kivo-screen
while read -r path; do
    # Folders that others use too may stay.
    if [ -L "$path" ] || [ -f "$path" ] || { [ -d "$path" ] && [[ $path == */kivo-screen ]]; }; then
        fail "$path is left."
    fi
done <"$work/installed"
(cd "$home" && find . -type f -exec sha256sum {} + | sort) | diff "$work/before" - || fail "the user's files changed."

# Other systems get the same files, but nothing that is Debian's alone: the changelog and the licence in their place.
debian_only='/(changelog\.Debian|changelog|copyright)|/lintian/'
sed -E 's|^\./usr||; s/ -> .*//' packaging/debian/contents.txt | grep -vE "$debian_only" |
    sed -E 's|(/man/.*)\.gz$|\1|' >"$work/expected"
printf '/share/doc/kivo-screen/%s\n' CHANGELOG.md LICENSE >>"$work/expected"
LC_ALL=C sort -o "$work/expected" "$work/expected"
list() { (cd "$1" && find . -type f -o -type l) | sed 's/^\.//' | LC_ALL=C sort; }
cmake --install build/release --prefix "$work/other" >/dev/null
list "$work/other" | diff "$work/expected" - || fail "cmake --install brings something else."
packaging/linux/build_packages.sh
mkdir "$work/unpacked"
tar -xf build/package/kivo-screen-*.tar.gz -C "$work/unpacked" --strip-components=1
list "$work/unpacked" | diff "$work/expected" - || fail "the tar.gz holds something else."
rpm=$(echo build/package/*.rpm)
rpm --query --package --list "$rpm" | grep -vxE '/usr/(lib|share/doc)/kivo-screen(/[a-z]+)?' | sed 's|^/usr||' | LC_ALL=C sort |
    diff "$work/expected" - || fail "the RPM holds something else."
rpm --query --package --requires "$rpm" >"$work/requires"
grep -q '^libQt5Widgets\.so\.5' "$work/requires" || fail "the RPM does not require Qt."
sha256sum build/package/*.rpm build/package/*.tar.gz >"$work/sums"
packaging/linux/build_packages.sh >/dev/null
sha256sum --check --quiet "$work/sums" || fail "packed twice, the RPM or the tar.gz is not the same."

packaging/debian/build_source_package.sh
packaging/debian/lint_packages.sh build/source/*.dsc
echo "The package holds: $package"
