#!/usr/bin/env bash
# Builds Kivo Screen and starts it. Further arguments go to the program (see --help).
# Without a screen attached a software panel takes its place; without a display the program runs for 15 seconds and
# leaves a picture of the panel.
set -euo pipefail
cd "$(dirname "$0")"
. tools/scripts/packages.sh

install_packages packaging/debian/build-packages.txt
cmake --preset release
cmake --build --preset release

screen_nodes() {
    grep -lisE '^HID_ID=[0-9A-F]+:000004D9:0000FD01' /sys/class/hidraw/*/device/uevent 2>/dev/null || true
}

# The device's own chatter is for QT_LOGGING_RULES="kivo.*=true".
export QT_LOGGING_RULES=${QT_LOGGING_RULES-*.debug=false}

for argument in "$@"; do
    case $argument in
        --autostart* | --help | --version | -h | -v)
            exec build/release/bin/kivo-screen "$@" # says or switches something and ends: nothing is added
            ;;
    esac
done

arguments=()
picture=
if [ -z "$(screen_nodes)" ]; then
    echo "No screen is attached: a software panel takes its place."
    arguments+=(--virtual-screen)
    picture=build/panel.png # without a display
else
    for uevent in $(screen_nodes); do
        node=/dev/$(basename "$(dirname "$(dirname "$uevent")")")
        if [ ! -w "$node" ]; then
            echo "The screen at $node may not be written by you; see \"With a real screen\" in README.md." >&2
        fi
    done
fi
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
    arguments+=(--run-for 15)
    [ -z "$picture" ] || arguments+=(--panel-image "$picture")
fi
[ -z "$picture" ] || rm -f "$picture"
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    echo "The program lives in the tray: click its icon, or run this once more, to see its window."
fi
status=0
build/release/bin/kivo-screen "${arguments[@]}" "$@" || status=$?
if [ -n "$picture" ] && [ -e "$picture" ]; then
    echo "The panel's picture is in $PWD/$picture"
fi
exit $status
