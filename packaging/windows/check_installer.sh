#!/usr/bin/env bash
# Tries the installer under Wine: installs, looks at what is there, runs the installed program, puts a newer copy over it
# while it runs, removes it again. ./test.sh windows has built the program before.
set -euo pipefail
cd "$(dirname "$0")/../.."
. tools/scripts/packages.sh
install_packages packaging/debian/windows-packages.txt

packaging/windows/build_installer.sh
setup=$(ls build/windows/KivoScreen-*-setup.exe)

home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
export HOME=$home XDG_CACHE_HOME=$home/.cache
unset DISPLAY QT_QPA_PLATFORM
wine_run() { tools/scripts/in_wine.sh "$@"; }
fail() {
    echo "check_installer.sh: $1" >&2
    exit 1
}
registry() { # KEY VALUE: its data, nothing where there is none
    wine_run reg query "HKCU\\$1" /v "$2" 2>/dev/null | tr -d '\r' | sed -n "s/^ *$2 *REG_[A-Z]* *//p"
}
run_key='Software\Microsoft\Windows\CurrentVersion\Run'
uninstall_key='Software\Microsoft\Windows\CurrentVersion\Uninstall\Kivo Screen'

wine_run "$setup" /S
users=$(dirname "$(find "$home/.cache/kivo-screen/wine/drive_c/users" -maxdepth 2 -name AppData -not -path '*/Public/*')")
program="$users/AppData/Local/Programs/Kivo Screen"
[ -e "$program/KivoScreen.exe" ] || fail "nothing was installed"
diff <(cd build/windows/stage && find . -type f | sort) <(cd "$program" && find . -type f -not -name Uninstall.exe | sort) ||
    fail "what is installed is not what was packed"
[ -e "$program/Uninstall.exe" ] || fail "there is no uninstaller"
# All but the libraries, which are Qt, hidapi and the compiler's.
most_bytes=$((12 * 1024 * 1024))
bytes=$(find "$program" -type f -not -name '*.dll' -printf '%s\n' | awk '{ sum += $1 } END { print sum }')
echo "The program's own files are $bytes bytes."
[ "$bytes" -lt $most_bytes ] || fail "the program weighs $bytes bytes, more than $most_bytes"
menu=$(find "$users" -name 'Kivo Screen.lnk' -path '*Start Menu*')
[ -n "$menu" ] || fail "there is no Start menu entry"
[ -z "$(registry "$run_key" "Kivo Screen")" ] || fail "it starts with Windows though nobody asked for it"
[ "$(registry "$uninstall_key" DisplayName)" = "Kivo Screen" ] || fail "the list of programs does not have it"

# Only what lies beside it: no folder of the build is in its search path.
said=$(wine_run "$program/KivoScreen.exe" --virtual-screen --run-for 5)
echo "$said"
[[ $said == *"Live values sent last: "* ]] || fail "the installed program sent nothing"
settings="$users/AppData/Roaming/Kivo Tool/Config.ini"
[ -e "$settings" ] || fail "the installed program made no settings"
echo "# mine" >>"$settings"
cp "$settings" "$home/settings"

# An update ends the running copy, which would hold its files, and keeps the choice to start with Windows.
wine_run "$program/KivoScreen.exe" >"$home/running" 2>&1 &
running=$!
wine_run "$setup" /S /AUTOSTART
wait "$running" || fail "the running copy did not end well"
[[ "$(registry "$run_key" "Kivo Screen")" == *KivoScreen.exe* ]] || fail "it does not start with Windows though asked to"
wine_run "$setup" /S
[[ "$(registry "$run_key" "Kivo Screen")" == *KivoScreen.exe* ]] || fail "an update forgot the choice"

# The uninstaller goes on in a copy of itself, for it removes its own file.
remove() {
    wine_run "$program/Uninstall.exe" /S "$@"
    local tenths
    for tenths in $(seq 300); do
        [ -e "$program" ] || [ -n "$(registry "$uninstall_key" DisplayName)" ] || break
        sleep 0.1
    done
    echo "Removed after $tenths steps of waiting."
}
cp "$settings" "$home/settings"
remove
[ ! -e "$program" ] || fail "the uninstaller left: $(find "$program")"
[ -z "$(find "$users" -name 'Kivo Screen.lnk')" ] || fail "the uninstaller left a shortcut"
[ -z "$(registry "$run_key" "Kivo Screen")" ] || fail "the uninstaller left the start with Windows"
[ -z "$(registry "$uninstall_key" DisplayName)" ] || fail "the uninstaller left its entry"
cmp "$settings" "$home/settings" || fail "the uninstaller touched the user's settings"

wine_run "$setup" /S
touch "$users/AppData/Roaming/Kivo Tool/a picture of mine.png"
remove /SETTINGS
[ ! -e "$settings" ] || fail "the settings are still there though asked away"
[ -e "$users/AppData/Roaming/Kivo Tool/a picture of mine.png" ] || fail "a file of the user's own is gone"
echo "The installer installs, updates and removes."
