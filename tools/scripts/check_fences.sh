#!/usr/bin/env bash
# The rules of the source tree that no compiler watches.
set -euo pipefail
cd "$(dirname "$0")/../.."
failed=0
complain() {
    echo "$1"
    failed=1
}
# forbid MESSAGE PATTERN PATH...
forbid() {
    local message=$1 pattern=$2
    shift 2
    local hits
    hits=$(git grep -nE "$pattern" -- "$@" || true)
    [ -z "$hits" ] || complain "$message"$'\n'"$hits"
}

forbid "Nothing below the window may know a widget:" \
    '#include <(Q(Widget|Label|PushButton|Dialog|MainWindow|Application|ListWidget)|QtWidgets)' \
    src/model src/device src/telemetry src/config src/compose src/panel src/session
forbid "The tables of items and themes know nothing but themselves:" \
    '#include "(main|session|window|compose|config|device|editor|panel|pictures|resources|telemetry|virtualscreen|widgets)/' src/model
forbid "The widget kit knows nothing of the program:" \
    '#include "(main|session|window|compose|config|device|editor|model|panel|pictures|telemetry|virtualscreen)/' src/widgets
forbid "What is brought to the panel is handed in:" '#include "(main|session|window|editor|pictures|virtualscreen|widgets)/' src/panel
forbid "The session knows nothing of what the window shows:" \
    '#include "(compose|device|editor|main|panel|virtualscreen|widgets|window)/' src/session
forbid "Only main knows main:" '#include "main/' src bench tests ':!src/main' ':!tests/main' ':!tests/windows' ':!tools/scripts'
forbid "What nothing calls is called by nothing:" '#include "reserved/' src ':!src/reserved' bench
forbid "The editor's tools know nothing of the window and of the device:" \
    '#include "(main|session|window|device|panel|virtualscreen)/' src/editor
forbid "The picture library knows settings, composition and the widget kit only:" \
    '#include "(main|session|window|device|editor|panel|telemetry|virtualscreen)/' src/pictures
forbid "What reads pictures knows no widget:" '#include (<Q(Widget|Pixmap|Icon|Label|Application)>|"widgets/)' \
    src/pictures/picture.h src/pictures/picture_decoder.* src/pictures/picture_reader.* src/pictures/picture_s* \
    src/pictures/picture_work* src/pictures/layout_picture.*
forbid "Platform macros belong into platform files:" '\b(Q_OS_[A-Z]+|_WIN32|__linux__)\b' \
    src ':!src/*_windows.cpp' ':!src/*_linux.cpp'
forbid "Unfinished or switched off:" '\b(TODO|FIXME|XXX)\b|QSKIP\(' '*.cpp' '*.h'

includers=$(git grep -lE '#include [<"](hidapi/)?hidapi\.h[>"]' -- src bench tools || true)
[ "$(echo "$includers" | wc -w)" -eq 1 ] || complain "hidapi.h is included by: $includers (one source may)"

while read -r lines file; do
    [ "$file" = total ] || [ "$lines" -le 500 ] || complain "$file has $lines lines (500 at most)."
done < <(git ls-files 'src/*.cpp' 'src/*.h' 'tests/*.cpp' 'tests/*.h' 'bench/*.cpp' 'tools/*.cpp' | xargs wc -l)

[ $failed -eq 0 ] && echo "All fences stand."
exit $failed
