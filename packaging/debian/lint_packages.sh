#!/usr/bin/env bash
# Runs lintian over Debian packages (.changes, .deb, .dsc): lint_packages.sh FILE... Every tag from "pedantic" upwards fails,
# unless the package explains it in its overrides; an override that overrides nothing fails too.
set -euo pipefail

# There is no public address yet to write to, and files without overrides (.changes, dbgsym) say the same.
status=0
said=$(lintian --no-cfg --allow-root --suppress-tags bogus-mail-host,bogus-mail-host-in-debian-changelog --display-info --pedantic --tag-display-limit 0 \
    --fail-on error,warning,info,pedantic "$@" 2>&1) || status=$?
[ -z "$said" ] || echo "$said" >&2
if [ $status -ne 0 ] || grep -q 'unused-override' <<<"$said"; then
    echo "lint_packages.sh: lintian has something to say." >&2
    exit 1
fi
echo "lintian has nothing to say about: $*"
