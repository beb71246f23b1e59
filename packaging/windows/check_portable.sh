#!/usr/bin/env bash
# Tries the portable folder under Wine: unpacks it, runs the program, looks where its things are. ./test.sh windows has built
# the program before.
set -euo pipefail
cd "$(dirname "$0")/../.."
. tools/scripts/packages.sh
install_packages packaging/debian/windows-packages.txt

fail() {
    echo "check_portable.sh: $1" >&2
    exit 1
}
packaging/windows/build_portable.sh
zip=$(ls "$PWD"/build/windows/KivoScreen-*-portable.zip)
cp "$zip" build/windows/portable-before.zip
packaging/windows/build_portable.sh >/dev/null
cmp "$zip" build/windows/portable-before.zip || fail "packed twice, it is not the same"
rm build/windows/portable-before.zip

home=$(mktemp -d)
export HOME=$home XDG_CACHE_HOME=$home/.cache LC_ALL=C.UTF-8
unset QT_QPA_PLATFORM
prefix=$home/.cache/kivo-screen/wine
clean_up() {
    WINEPREFIX=$prefix wineserver -k 2>/dev/null || true # what was started here and still runs
    rm -rf "$home"
}
trap clean_up EXIT

stick="$home/My stick 屏"
mkdir "$stick"
unzip -q "$zip" -d "$stick"
program=$stick/KivoScreen
run() { tools/scripts/in_wine.sh "$program/KivoScreen.exe" --virtual-screen --run-for 5; }
said=$(run)
echo "$said"
[[ $said == *"Live values sent last: "* ]] || fail "the program sent nothing"
for file in settings/Config.ini working/whole.png "Kivo Config.ini"; do
    [ -e "$program/data/$file" ] || fail "there is no data/$file"
done
left=$(find "$prefix/drive_c/users" -name 'Kivo Tool')
[ -z "$left" ] || fail "in the user's folders is: $left"
! tools/scripts/in_wine.sh reg query 'HKCU\Software\Kivo Tool' >/dev/null 2>&1 || fail "it has left something in the registry"

# On another PC: the settings come along and are no first run's.
echo "# mine" >>"$program/data/settings/Config.ini"
WINEPREFIX=$prefix wineserver -k || true
rm -rf "$prefix"
run >/dev/null
grep -q "# mine" "$program/data/settings/Config.ini" || fail "another PC took the settings away"
echo "The portable folder keeps everything in itself."
