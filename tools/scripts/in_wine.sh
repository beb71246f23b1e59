#!/usr/bin/env bash
# Runs a Windows program under Wine as if it were one of this system: in_wine.sh [--dlls FOLDER] PROGRAM [ARGUMENT...].
# Its standard output, error and exit status are the program's.
#
# Each user's cache folder (XDG_CACHE_HOME) gets a Wine prefix of its own, so that tests which run side by side share
# neither registry nor settings. The large part of a prefix is prepared once and linked to.
set -euo pipefail

dlls=
if [ "${1:-}" = --dlls ]; then
    dlls=$2
    shift 2
fi

# Wine's menus and its crash window are of no use here; a crash must end the program, with its status.
export WINEDEBUG=${WINEDEBUG--all}
export WINEDLLOVERRIDES="winedbg.exe=d;winemenubuilder.exe=d;mscoree=d;mshtml=d${WINEDLLOVERRIDES:+;$WINEDLLOVERRIDES}"

template=${KIVO_WINDOWS_CACHE:-$(getent passwd "$(id -un)" | cut -d: -f6)/.cache/kivo-screen/windows}/wine-prefix-$(dpkg-query -W -f='${Version}' wine64)
prefix=${XDG_CACHE_HOME:-$HOME/.cache}/kivo-screen/wine
made=$prefix/made-from-$(basename "$template") # of another Wine it is made anew

make_template() {
    mkdir -p "$(dirname "$template")"
    exec 9>"$template.lock"
    flock 9
    if [ ! -e "$template/complete" ]; then
        rm -rf "$template"
        # Where the copies look for their documents is decided here too: not in the home of who prepares it.
        env -u DISPLAY HOME="$template.home" WINEPREFIX="$template" wineboot -i </dev/null >/dev/null 2>&1
        WINEPREFIX="$template" wineserver -w
        touch "$template/complete"
    fi
    exec 9>&-
}

# Registry, user's folders and what is installed are the prefix's own; Windows itself, and what it has installed,
# is shared.
make_prefix() {
    rm -rf "$prefix"
    mkdir -p "$prefix/drive_c" "$prefix/dosdevices"
    cp "$template"/*.reg "$template/.update-timestamp" "$prefix/"
    cp -a "$template/drive_c/users" "$template/drive_c/ProgramData" "$prefix/drive_c/"
    local folder
    ln -sfn "$template/drive_c/windows" "$prefix/drive_c/windows"
    for folder in "Program Files" "Program Files (x86)"; do
        mkdir "$prefix/drive_c/$folder"
        ln -s "$template/drive_c/$folder"/* "$prefix/drive_c/$folder/"
    done
    ln -sfn ../drive_c "$prefix/dosdevices/c:"
    ln -sfn / "$prefix/dosdevices/z:"
    touch "$made"
}

[ -e "$template/complete" ] || make_template
[ -e "$made" ] || make_prefix
export WINEPREFIX=$prefix
[ -z "$dlls" ] || export WINEPATH="Z:${dlls//\//\\}${WINEPATH:+;$WINEPATH}"

# Wine keeps QT_ variables from its programs, but hands WINEQT_X on as QT_X.
for name in $(compgen -e QT_ || true); do
    export "WINE$name=${!name}"
done
export WINEQT_FORCE_STDERR_LOGGING=1

# Windows of the windows platform need an X server; without one, a private one that nobody looks at.
display=()
case ${QT_QPA_PLATFORM:-} in
    offscreen | minimal) unset DISPLAY ;;
    *) [ -n "${DISPLAY:-}" ] || display=(xvfb-run -a -s "-screen 0 1920x1200x24") ;;
esac

# Wine's own helpers outlive the program; they must not keep our caller's pipes open.
output=$(mktemp -d)
trap 'rm -rf "$output"' EXIT
status=0
"${display[@]}" wine "$@" </dev/null >"$output/out" 2>"$output/err" || status=$?
cat "$output/out"
cat "$output/err" >&2
exit $status
