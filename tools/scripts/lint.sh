#!/usr/bin/env bash
# clang-tidy and clazy over the sources, with the compile commands of the dev build: lint.sh [--all] [FILE...], all
# sources where none is named. A source that was clean is left out as long as everything its run depended on is the
# same: each file it reads, its compile command, .clang-tidy, this script, the plugin and the linters. The user's cache
# folder remembers that for every clone; --all runs the linters anew.
# The one warning that is off is about Qt's own logging macros.
set -euo pipefail
export LC_ALL=C.UTF-8
cd "$(dirname "$0")/../.."
anew=
if [ "${1:-}" = --all ]; then
    anew=yes
    shift
fi
if [ $# -gt 0 ]; then
    files=("$@")
else
    mapfile -t files < <(git ls-files 'src/*.cpp' 'tools/*.cpp' 'resources/*.cpp' ':!tools/lint' |
        grep -v '_windows\.cpp$')
fi
export clean=${XDG_CACHE_HOME:-$HOME/.cache}/kivo-screen/lint # one empty file for each clean state of a source
most=5000                                                      # of them; the longest unused go
work=$(mktemp -d)
export work
trap 'rm -rf "$work"' EXIT
mkdir -p "$clean" "$work/states"
# The packages of the checks may have come after the build was configured.
cmake --preset dev >/dev/null

# The compile commands of these sources alone: "compile_commands.json" and, as SOURCE<TAB>COMMAND, "commands".
printf '%s\n' "${files[@]}" | awk -v root="$PWD/" -v database="$work/compile_commands.json" '
    NR == FNR { wanted[/^\// ? $0 : root $0] = 0; next }
    /^\{/ { entry = "" }
    { entry = entry $0 "\n" }
    /^ *"command": / { command = $0 }
    /^ *"file": / { file = $0; sub(/^ *"file": "/, "", file); sub(/",?$/, "", file) }
    /^\}/ && file in wanted {
        ++wanted[file]
        print file "\t" command
        sub(/,\n$/, "\n", entry)
        printf "%s\n%s", (entries++ ? "," : "["), entry > database
    }
    END {
        print "]" > database
        for (file in wanted)
            if (!wanted[file]) {
                print "lint.sh: " file " has no compile command in build/dev." > "/dev/stderr"
                missing = 1
            }
        exit missing
    }' - build/dev/compile_commands.json >"$work/commands"

# What each of them reads, as SOURCE<TAB>FILE. A header that is made by the build has to be there.
# Debian has it under its version's name only.
scan_dependencies=$(compgen -c clang-scan-deps | sort -uV | head -n 1)
"$scan_dependencies" --compilation-database="$work/compile_commands.json" -j "$(nproc)" >"$work/rules"
awk '{ sub(/ \\$/, ""); gsub(/\\ /, "\001") }
    sub(/^[^ ].*\.o:/, "") { source = "" }
    {
        for (i = 1; i <= NF; ++i) {
            file = $i
            gsub(/\001/, " ", file)
            if (source == "")
                source = file
            print source "\t" file
        }
    }' "$work/rules" >"$work/reads"
cut -f 2 "$work/reads" | sort -u | xargs -d '\n' sha256sum >"$work/sums"

# The state of each source without the clone's place, as a file in "states" in the order of "sources"; its sum is the key.
everywhere=$({
    cat tools/scripts/lint.sh tools/lint/own_code.cpp .clang-tidy
    clang-tidy --version
    clazy-standalone --version
    dpkg-query -W -f='${Package} ${Version}\n' 'clang-tidy*' 'clazy*' 'libclang*' 'libllvm*' 2>/dev/null || true
} | sha256sum)
awk -F '\t' -v root="$PWD" -v everywhere="$everywhere" -v states="$work/states/" '
    function without_root(text,   at, short) {
        while ((at = index(text, root)) > 0) {
            short = short substr(text, 1, at - 1) "."
            text = substr(text, at + length(root))
        }
        return short text
    }
    FILENAME ~ /sums$/ { sum[substr($0, 67)] = substr($0, 1, 64); next }
    !($1 in state) { state[$1] = everywhere "\n" }
    FILENAME ~ /commands$/ { state[$1] = state[$1] without_root($2) "\n"; next }
    { state[$1] = state[$1] sum[$2] " " without_root($2) "\n" }
    END {
        for (source in state) {
            name = sprintf("%s%06d", states, ++count)
            printf "%s", state[source] > name
            close(name)
            print substr(source, length(root) + 2)
        }
    }' "$work/sums" "$work/commands" "$work/reads" >"$work/sources"
sha256sum "$work/states/"* | cut -d ' ' -f 1 >"$work/keys"

# lint SOURCE KEY: both linters over one source, in one piece of output.
lint() {
    local output status=0
    output=$(clang-tidy --quiet --load="$own_code" --checks=kivo-own-code -p "$work" "$1" 2>&1) || status=1
    output+=$'\n'$(clazy-standalone -p "$work" --ignore-included-files \
        -checks=level0,level1,connect-3arg-lambda,lambda-in-connect,old-style-connect,no-range-loop-reference \
        --extra-arg=-Werror --extra-arg=-Wno-gnu-zero-variadic-macro-arguments "$1" 2>&1) || status=1
    grep -vE '^([0-9]+ warnings? generated\.)?$' <<<"$output" || true
    [ $status -eq 0 ] || { echo "lint.sh: $1 is not clean." && return 1; }
    : >"$clean/$2"
}
export -f lint

# Those that may take longest begin first.
while IFS=$'\t' read -r source key; do
    if [ -z "$anew" ] && [ -e "$clean/$key" ]; then
        touch "$clean/$key"
    else
        printf '%s %s %s\n' "$(stat -c %s "$source")" "$source" "$key"
    fi
done < <(paste "$work/sources" "$work/keys") | sort -rn | cut -d ' ' -f 2- >"$work/jobs"

# The plugin that keeps clang-tidy to our own code.
export own_code=build/own_code.so
llvm=$(dirname "$(readlink -f "$(command -v clang-tidy)")")/..
if [ -s "$work/jobs" ] &&
    { [ tools/lint/own_code.cpp -nt $own_code ] || [ "$llvm/bin/clang-tidy" -nt $own_code ]; }; then
    g++ -std=c++17 -O1 -Wall -Wextra -Werror -fPIC -fno-rtti -shared -isystem "$llvm/include" \
        -o $own_code tools/lint/own_code.cpp
fi

xargs -r -P "$(nproc)" -L 1 bash -c 'lint "$@"' lint <"$work/jobs" || exit 1
(cd "$clean" && find . -type f -printf '%T@ %f\n' | sort -rn | tail -n +$((most + 1)) | cut -d ' ' -f 2 | xargs -r rm -f)
echo "${#files[@]} files are clean; the linters ran over $(wc -l <"$work/jobs") of them, the rest has not changed."
