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
forbid "What differs between Qt 5 and Qt 6 stands in headers of its own:" '\bQT_VERSION\b' \
    src tools resources ':!src/device/native_result.h' ':!src/pictures/decoded_megabytes.h' ':!src/widgets/enter_event.h' \
    ':!src/widgets/toolkit_defaults.h' ':!tools/scripts'
forbid "Every body has its braces:" '^ *(if|while|for) \(([^()]|\([^()]*\))*\)$|^ *(\} )?else$' '*.cpp' '*.h'
forbid "Unfinished or switched off:" '\b(TODO|FIXME|XXX)\b|QSKIP\(' '*.cpp' '*.h'

# Files and folders that the documents name in backticks: of src/, of the project, of the folder that the section of
# docs/fixed_names.md is about, or by a name without a folder. "<...>" and "*" stand for anything.
missing=$(git ls-files --cached --others --exclude-standard | awk '
    function is_there(name, pattern, file) {
        if (name in answers) return answers[name]
        pattern = name
        gsub(/<[^>]*>/, "*", pattern)
        gsub(/\./, "[.]", pattern)
        gsub(/\*/, "[^/]*", pattern)
        pattern = (name ~ /\// ? "^(src/)?" pattern "(/|$)" : "(^|/)" pattern "$")
        for (file in files) if (file ~ pattern) return answers[name] = 1
        return answers[name] = 0
    }
    function look(name) {
        sub(/\/$/, "/*", name)
        if (!is_there(name)) print FILENAME ":" FNR ": " name
    }
    FILENAME == "-" {
        files[$0]
        sub(/^src\//, "")
        sub(/\/.*/, "")
        folders[$0]
        next
    }
    FNR == 1 { section = "" }
    /^## / {
        section = FILENAME ~ /fixed_names/ && NF == 2 && $2 ~ /\/$/ ? $2 : ""
        for (k = 2; k <= NF; ++k) if ($k ~ /^[a-z]+\/[,:]?$/) { sub(/[,:]$/, "", $k); look($k) }
    }
    {
        rest = $0
        while (match(rest, /`[^` ]+`/)) {
            name = substr(rest, RSTART + 1, RLENGTH - 2)
            rest = substr(rest, RSTART + RLENGTH)
            folder = name
            sub(/\/.*/, "", folder)
            if (name ~ /^[a-z][A-Za-z0-9_.\/<>*]*([.](cpp|h|ui|sh|md|nsi|patch|rules|cmake|qrc|svg|[*])|[a-z][*]|[a-z]\/)$/)
                look(name ~ /\// ? name : section name)
            else if (name ~ /\// && folder in folders)
                look(name)
        }
    }' - docs/decisions.md docs/architecture.md docs/fixed_names.md)
[ -z "$missing" ] || complain "No such file or folder:"$'\n'"$missing"

includers=$(git grep -lE '#include [<"](hidapi/)?hidapi\.h[>"]' -- src bench tools || true)
[ "$(echo "$includers" | wc -w)" -eq 1 ] || complain "hidapi.h is included by: $includers (one source may)"

while read -r lines file; do
    [ "$file" = total ] || [ "$lines" -le 500 ] || complain "$file has $lines lines (500 at most)."
done < <(git ls-files 'src/*.cpp' 'src/*.h' 'tests/*.cpp' 'tests/*.h' 'bench/*.cpp' 'tools/*.cpp' | xargs wc -l)

[ $failed -eq 0 ] && echo "All fences stand."
exit $failed
