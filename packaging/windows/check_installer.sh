#!/usr/bin/env bash
# Tries the installer under Wine: installs, looks at what is there, runs the installed program, puts a newer copy over it
# while it runs, moves it to another folder, removes it again. ./test.sh windows has built the program before.
set -euo pipefail
cd "$(dirname "$0")/../.."
. tools/scripts/packages.sh
if [ -z "${KIVO_PRIVATE_DISPLAY:-}" ]; then
    install_packages packaging/debian/windows-packages.txt
    # One display for all: a program that the installer starts goes on when the installer has ended.
    KIVO_PRIVATE_DISPLAY=1 exec xvfb-run -a -s "-screen 0 1280x1024x24" packaging/windows/check_installer.sh
fi

packaging/windows/build_installer.sh
cmake --build --preset windows --target window_stand_in
setup=$(ls build/windows/KivoScreen-*-setup.exe)
version=$(sed -n 's/.*KivoScreen-\(.*\)-setup.exe/\1/p' <<<"$setup")

home=$(mktemp -d)
export HOME=$home XDG_CACHE_HOME=$home/.cache LC_ALL=C.UTF-8
unset QT_QPA_PLATFORM
prefix=$home/.cache/kivo-screen/wine
clean_up() {
    WINEPREFIX=$prefix wineserver -k 2>/dev/null || true # what was started here and still runs
    rm -rf "$home"
}
trap clean_up EXIT
wine_run() { tools/scripts/in_wine.sh "$@"; }
fail() {
    echo "check_installer.sh: $1" >&2
    exit 1
}
step() { echo "== $SECONDS s: $1"; }
registry() { # KEY VALUE: its data, nothing where there is none
    wine_run reg query "HKCU\\$1" /v "$2" 2>/dev/null | tr -d '\r' | sed -n "s/^ *$2 *REG_[A-Z]* *//p"
}
run_key='Software\Microsoft\Windows\CurrentVersion\Run'
approved_key='Software\Microsoft\Windows\CurrentVersion\Explorer\StartupApproved\Run'
uninstall_key='Software\Microsoft\Windows\CurrentVersion\Uninstall\Kivo Screen'

# A user with a name in two scripts, whose documents lie where a cloud's program has put them.
step "a user"
user='张三 Иван'
users=$prefix/drive_c/users
me=$users/$user
wine_run reg query 'HKCU\Software' >/dev/null # makes the prefix
mkdir -p "$me/AppData/Roaming/Microsoft/Windows/Start Menu/Programs" "$me/AppData/Local" "$me/Desktop" "$me/Cloud/Documents"
{
    printf '\xff\xfe'
    iconv -t UTF-16LE <<END
Windows Registry Editor Version 5.00

[HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders]
"AppData"="C:\\\\users\\\\$user\\\\AppData\\\\Roaming"
"Local AppData"="C:\\\\users\\\\$user\\\\AppData\\\\Local"
"Desktop"="C:\\\\users\\\\$user\\\\Desktop"
"Personal"="C:\\\\users\\\\$user\\\\Cloud\\\\Documents"
"Programs"="C:\\\\users\\\\$user\\\\AppData\\\\Roaming\\\\Microsoft\\\\Windows\\\\Start Menu\\\\Programs"
END
} >"$home/user.reg"
wine_run reg import "Z:${home//\//\\}\\user.reg" >/dev/null
program="$me/AppData/Local/Programs/Kivo Screen"
menu="$me/AppData/Roaming/Microsoft/Windows/Start Menu/Programs/Kivo Screen.lnk"
desktop="$me/Desktop/Kivo Screen.lnk"
settings="$me/AppData/Roaming/Kivo Tool"
working="$users/$(id -un)/Kivo Tool" # in the profile, which Wine names after this system's user
thumbnails="$me/AppData/Local/Kivo Tool/thumbnails"

runs() { # PROGRAM.exe, a pattern: whether such a one, started in this script's home, runs at this moment
    local process
    for process in /proc/[0-9]*; do
        ! grep -qz "^[A-Z]:.*\\\\$1\$" "$process/cmdline" 2>/dev/null ||
            ! grep -qz "^HOME=$home$" "$process/environ" 2>/dev/null || return 0
    done
    return 1
}
is_running() { # soon
    local tenths
    for tenths in $(seq 100); do
        ! runs 'KivoScreen\.exe' || return 0
        sleep 0.1
    done
    return 1
}
start_copy() { # comes back when it is in full swing
    wine_run "$program/KivoScreen.exe" --virtual-screen --report-log "Z:$home/reports" >"$home/running" 2>&1 &
    running=$!
    until [ -s "$home/reports" ]; do
        kill -0 $running 2>/dev/null || fail "the installed program did not stay: $(cat "$home/running")"
        sleep 0.1
    done
}
is_whole() { # the program is there as it was packed, with nothing left of its making
    diff <(cd build/windows/stage && find . -type f | sort) \
        <(cd "$program" && find . -type f -not -name Uninstall.exe -not -name "mine*" | sort)
}
stand_in() { # [HELD]: a folder window of another program, which holds that file open
    wine_run build/windows/tests/window_stand_in.exe "Kivo Screen" "Z:$home/flag" ${1:+"Z:$1"} &
    stand_in=$!
    until [ -e "$home/flag" ]; do
        kill -0 $stand_in 2>/dev/null || fail "the window of another program did not come"
        sleep 0.1
    done
}
end_stand_in() {
    rm "$home/flag"
    wait "$stand_in" || fail "another program's window was told that the session ends"
}

step "a folder that may not be written"
status=0
wine_run "$setup" /S '/D=Z:\proc\Kivo' || status=$? # nobody may there, not even root
[ $status -ne 0 ] || fail "it said that it is installed in a folder that cannot be"
[ -z "$(registry "$uninstall_key" DisplayName)" ] || fail "a failed installation is among the programs"
[ -z "$(find "$users" -name 'KivoScreen*')" ] || fail "a failed installation went elsewhere"
[ ! -e "$menu" ] || fail "a failed installation is in the Start menu"

step "install"
wine_run "$setup" /S
[ -e "$program/KivoScreen.exe" ] || fail "nothing was installed"
is_whole || fail "what is installed is not what was packed"
[ -e "$program/Uninstall.exe" ] || fail "there is no uninstaller"
# All but the libraries, which are Qt, hidapi and the compiler's.
most_bytes=$((12 * 1024 * 1024))
bytes=$(find "$program" -type f -not -name '*.dll' -printf '%s\n' | awk '{ sum += $1 } END { print sum }')
echo "The program's own files are $bytes bytes."
[ "$bytes" -lt $most_bytes ] || fail "the program weighs $bytes bytes, more than $most_bytes"
[ -e "$menu" ] || fail "there is no Start menu entry"
[ ! -e "$desktop" ] || fail "there is a shortcut on the desktop that nobody asked for"
[ -z "$(registry "$run_key" "Kivo Screen")" ] || fail "it starts with Windows though nobody asked for it"
[ "$(registry "$uninstall_key" DisplayName)" = "Kivo Screen" ] || fail "the list of programs does not have it"
grep -aq "name=\"KivoScreen\" version=\"$version.0\"" "$program/KivoScreen.exe" || fail "the manifest has another version"
[ -s "$program/licenses/sources.txt" ] || fail "nothing tells what the libraries were built from"

step "run"
# Only what lies beside it: no folder of the build is in its search path.
said=$(wine_run "$program/KivoScreen.exe" --virtual-screen --run-for 5)
echo "$said"
[[ $said == *"Live values sent last: "* ]] || fail "the installed program sent nothing"
[ -e "$settings/Config.ini" ] || fail "the installed program made no settings"
[ -e "$working/whole.png" ] || fail "the installed program made no background"
echo "# mine" >>"$settings/Config.ini"
cp "$settings/Config.ini" "$home/settings"

step "an update while it runs"
# It ends the running copy, which would hold its files, and no other program; and starts it again.
echo "mine" >"$program/mine.txt"
mkdir -p "$program/former/deep"
touch "$program/former.dll" "$program/former/deep/former.png" "$program/former/mine.png"
printf 'former.dll\r\nformer\\deep\\former.png\r\nmine*\r\n..\\outside\r\nformer\\deep\\\r\nformer\\\r\n' >>"$program/installed.txt"
touch "$me/AppData/Local/Programs/outside" "$desktop"
chmod a-w "$program/Config.ini"
stand_in
start_copy
wine_run "$setup" /S /AUTOSTART
wait "$running" || fail "the running copy did not end well"
is_running || fail "the copy that was ended has not been started again"
end_stand_in
[ "$(cd "$program" && find former)" = $'former\nformer/mine.png' ] || fail "of a former folder this is left: $(find "$program/former")"
rm -r "$program/former"
is_whole || fail "an update left what the former version had"
[ -e "$program/mine.txt" ] || fail "an update took a file of the user's own"
[ -e "$me/AppData/Local/Programs/outside" ] || fail "an update took what lies outside of its folder"
[[ "$(registry "$run_key" "Kivo Screen")" == *KivoScreen.exe* ]] || fail "it does not start with Windows though asked to"
[ -s "$desktop" ] || fail "an update did not renew the shortcut on the desktop"

step "updates keep or change the start with Windows"
switch_off() { wine_run reg add "HKCU\\$approved_key" /v "Kivo Screen" /t REG_BINARY /d 030000000000000000000000 /f >/dev/null; }
rm "$menu"
wine_run "$setup" /S
[[ "$(registry "$run_key" "Kivo Screen")" == *KivoScreen.exe* ]] || fail "an update forgot the start with Windows"
[ ! -e "$menu" ] || fail "an update brought back the Start menu entry that was not wanted"
switch_off
wine_run "$setup" /S
[ -z "$(registry "$run_key" "Kivo Screen")" ] || fail "an update switched on what the task manager had switched off"
switch_off
wine_run "$setup" /S /AUTOSTART
[ -z "$(registry "$approved_key" "Kivo Screen")" ] || fail "it was asked to start with Windows and stays switched off"
wine_run "$setup" /S /NOAUTOSTART
[ -z "$(registry "$run_key" "Kivo Screen")" ] || fail "it still starts with Windows"
is_running || fail "the copy did not outlive the updates"

step "a file that another program has open"
before=$(cd "$program" && find . -type f -exec sha1sum {} + | sort)
stand_in "$program/lang/en.qm"
status=0
wine_run "$setup" /S || status=$?
[ $status -ne 0 ] || fail "it said that it has replaced a file that is in use"
is_running || fail "the copy that was ended for an update that failed has not been started again"
end_stand_in
[ "$before" = "$(cd "$program" && find . -type f -exec sha1sum {} + | sort)" ] || fail "an update that failed has changed something"

step "an update into another folder"
former=$program
program="$me/Мой экран/屏 Kivo"
# The folder is the rest of the command line, as it stands, without quotes.
read -ra words <<<"/D=C:\\users\\$user\\Мой экран\\屏 Kivo"
wine_run "$setup" /S /AUTOSTART "${words[@]}"
is_whole || fail "the other folder has not got what was packed"
[ "$(cd "$former" && find . -type f)" = ./mine.txt ] || fail "the former folder still has: $(find "$former")"
rm "$former/mine.txt"
wine_run reg export "HKCU\\$run_key" "Z:$home/run.reg" /y >/dev/null # a query answers in the letters of an old code page
iconv -f UTF-16 "$home/run.reg" | grep -qF 'Мой экран\\屏 Kivo\\KivoScreen.exe' || fail "another program starts with Windows"
is_running || fail "the copy that was ended has not been started again from the other folder"
wine_run "$setup" /S
[ ! -e "$former/KivoScreen.exe" ] || fail "a further update did not go where the program is"
is_whole || fail "a further update left something else"

# The uninstaller goes on in a copy of itself, for it removes its own file. Its entry goes before the settings do.
remove() {
    wine_run "$program/Uninstall.exe" /S "$@"
    local tenths
    for tenths in $(seq 300); do
        runs 'Un[^\]*\.exe' || break
        sleep 0.1
    done
    echo "Removed after $tenths steps of waiting."
}

step "remove it while it runs"
mkdir -p "$thumbnails"
touch "$thumbnails/0123456789abcdef.thumb" "$thumbnails/../log.txt" "$thumbnails/../log.txt.old"
cp "$settings/Config.ini" "$home/settings"
switch_off
is_running || fail "the copy did not outlive the updates"
remove
[ ! -e "$program" ] || fail "the uninstaller left: $(find "$program")"
[ -z "$(find "$users" -name 'Kivo Screen.lnk')" ] || fail "the uninstaller left a shortcut"
[ -z "$(registry "$run_key" "Kivo Screen")" ] || fail "the uninstaller left the start with Windows"
[ -z "$(registry "$approved_key" "Kivo Screen")" ] || fail "the uninstaller left a mark of the task manager's"
[ -z "$(registry "$uninstall_key" DisplayName)" ] || fail "the uninstaller left its entry"
[ ! -e "$thumbnails" ] || fail "the uninstaller left the thumbnails"
[ ! -e "$(dirname "$thumbnails")" ] || fail "the uninstaller left the log"
cmp "$settings/Config.ini" "$home/settings" || fail "the uninstaller touched the user's settings"
grep -q "# mine" "$settings/Config.ini" || fail "the settings are not the user's any more"

step "remove it with the settings"
program="$me/AppData/Local/Programs/Kivo Screen"
wine_run "$setup" /S
touch "$settings"/Config.ini.{broken,broken.2,broken.9,kept,kept.9,replaced,replaced.2,lock,aBcdEf} "$settings"/whole.png{,.QrStuv} \
    "$working"/whole.{pending,png.xYzABC,state,state.kLmNOp}
kept=("$settings/a picture of mine.png" "$settings/Config.ini.backup" "$settings/Config.ini.broken.10"
    "$working/whole.png.bak" "$working/whole.png.Better" "$working/holidays.png")
touch "${kept[@]}"
remove /SETTINGS
for file in "${kept[@]}"; do
    [ -e "$file" ] || fail "a file of the user's own is gone: $file"
    rm "$file"
done
[ -z "$(ls -A "$settings")" ] || fail "of the settings this is left: $(ls -A "$settings")"
[ -z "$(ls -A "$working")" ] || fail "in the working folder this is left: $(ls -A "$working")"
[ -z "$(registry 'Software\Kivo Tool\Kivo Config' isInitialized)" ] || fail "the mark of the first run is left"
step "done"
echo "The installer installs, updates, moves and removes."
