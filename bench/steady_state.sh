#!/usr/bin/env bash
# What the program costs while it only refreshes: CPU share and resident memory, beside conky showing the same values at
# the same interval and beside a bare Qt Widgets program with a tray icon, all running at the same time.
#   bench/steady_state.sh [SECONDS]   (default 60; needs the bench preset built and conky installed)
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
home=$(mktemp -d)
trap 'kill $(jobs -p) 2>/dev/null || true; rm -rf "$home"' EXIT
export HOME=$home XDG_DATA_HOME=$home/data XDG_CONFIG_HOME=$home/config XDG_RUNTIME_DIR=$home
unset DISPLAY WAYLAND_DISPLAY

cat >"$home/conky.conf" <<'CONF'
conky.config = { out_to_x = false, out_to_console = true, update_interval = 0.52, total_run_times = 0 }
conky.text = [[ ${cpu}% ${memperc}% ${time %H:%M} ${time %Y.%m.%d} ]]
CONF

nanoseconds() { cat /proc/"$1"/task/*/schedstat | awk "{ n += \$1 } END { printf \"%d\", n }"; }
memory() { awk '/^VmRSS/ { rss = $2 } /^RssAnon/ { anon = $2 } END { printf "%.1f MB resident, %.1f MB of it private", rss / 1024, anon / 1024 }' "/proc/$1/status"; }

QT_QPA_PLATFORM=offscreen build/bench/bin/bare_widgets $((seconds + 20)) &
bare=$!
build/bench/bin/kivo-screen --virtual-screen 2>/dev/null &
kivo=$!
conky -c "$home/conky.conf" >/dev/null 2>&1 &
conky=$!
sleep 10 # all have started and kivo-screen has sent its first frame

kivo_before=$(nanoseconds $kivo) conky_before=$(nanoseconds $conky)
sleep "$seconds"
kivo_used=$(($(nanoseconds $kivo) - kivo_before)) conky_used=$(($(nanoseconds $conky) - conky_before))
awk -v k=$kivo_used -v c=$conky_used -v s="$seconds" 'BEGIN {
    printf "kivo-screen  %.3f %% of one core\n", k / s / 1e7
    printf "conky        %.3f %% of one core\n", c / s / 1e7
    if (c > 0) printf "ratio        %.2f\n", k / c
}'
echo "kivo-screen   $(memory $kivo)"
echo "bare widgets  $(memory $bare)"
kill $kivo $conky $bare
wait 2>/dev/null || true
