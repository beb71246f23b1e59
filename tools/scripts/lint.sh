#!/usr/bin/env bash
# clang-tidy and clazy over the sources, with the compile commands of the dev build. Arguments: files (default all).
# The one warning that is off is about Qt's own logging macros.
set -euo pipefail
cd "$(dirname "$0")/../.."
# The packages of the checks may have come after the build was configured.
cmake --preset dev >/dev/null
if [ $# -gt 0 ]; then
    files=("$@")
else
    mapfile -t files < <(git ls-files 'src/*.cpp' 'tools/*.cpp' 'resources/*.cpp' | grep -v '_windows\.cpp$')
fi
printf '%s\n' "${files[@]}" | xargs -P "$(nproc)" -n 4 clang-tidy --quiet -p build/dev 2> >(grep -v 'warnings generated' >&2 || true)
printf '%s\n' "${files[@]}" | xargs -P "$(nproc)" -n 8 clazy-standalone -p build/dev --ignore-included-files \
    -checks=level0,level1,connect-3arg-lambda,lambda-in-connect,old-style-connect,no-range-loop-reference \
    --extra-arg=-Werror --extra-arg=-Wno-gnu-zero-variadic-macro-arguments 2> >(grep -v 'warnings generated' >&2 || true)
echo "${#files[@]} files are clean."
