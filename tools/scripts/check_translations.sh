#!/usr/bin/env bash
# Whether every text of the sources is translated: collects them afresh and looks for unfinished ones.
set -euo pipefail
cd "$(dirname "$0")/../.."
copies=$(mktemp -d)
trap 'rm -rf "$copies"' EXIT
cp resources/lang/*.ts "$copies"
lupdate=/usr/lib/qt5/bin/lupdate
"$lupdate" -silent -no-obsolete -locations none src -ts "$copies"/*.ts
failed=0
for file in "$copies"/*.ts; do
    unfinished=$(grep -c 'type="unfinished"' "$file" || true)
    if [ "$unfinished" -ne 0 ]; then
        echo "$(basename "$file"): $unfinished texts are not translated."
        grep -B2 'type="unfinished"' "$file"
        failed=1
    fi
done
[ $failed -eq 0 ] && echo "All texts are translated."
exit $failed
