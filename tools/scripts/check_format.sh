#!/usr/bin/env bash
# Whether every source is formatted as .clang-format says; --fix formats them.
set -euo pipefail
cd "$(dirname "$0")/../.."
mapfile -t files < <(git ls-files '*.h' '*.cpp')
if [ "${1:-}" = --fix ]; then
    exec clang-format -i "${files[@]}"
fi
clang-format --dry-run -Werror "${files[@]}"
echo "${#files[@]} files are formatted."
