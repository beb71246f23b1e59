#!/usr/bin/env bash
# Prints every test of a preset that is built (list_tests.sh [dev|asan|tsan|windows]), a line each: the name that ctest
# has for it and the function, "compose/contrast BrighterPicturesNeedMore()". For comparing what is there before and after
# tests are moved.
set -euo pipefail
cd "$(dirname "$0")/../.."
preset=${1:-dev}
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
export QT_QPA_PLATFORM=offscreen HOME=$home XDG_RUNTIME_DIR=$home
declare -A functions
while IFS=$'\t' read -r name command; do
    if [ -z "${functions[$command]:-}" ]; then
        functions[$command]=$(eval "$command -functions" | tr -d '\r' | sed '/^ *$/d')
    fi
    sed "s|^|$name |" <<<"${functions[$command]}"
done < <(ctest --preset "$preset" -N -V |
    sed -n 's/^[0-9]*: Test command: //p; s/^ *Test *#[0-9]*: //p' | paste - - | awk -F'\t' '{ print $2 "\t" $1 }') | sort
