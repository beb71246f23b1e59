#!/usr/bin/env bash
# Whether packages.sh waits for apt's locks, says so once and gives up in the end: with stand-ins for apt-get, dpkg-query
# and sleep, so nothing is installed and no time passes.
set -euo pipefail
cd "$(dirname "$0")/../.."
. tools/scripts/packages.sh
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
echo some-package >"$work/list.txt"

# Fails with the message in "complaint" as long as "refusals" has lines.
cat >"$work/apt-get" <<'END'
#!/usr/bin/env bash
cd "$(dirname "$0")"
echo "$*" >>calls
[ -s refusals ] || exit 0
sed -i 1d refusals
cat complaint >&2
exit 100
END
printf '#!/usr/bin/env bash\nexit 1\n' >"$work/dpkg-query"
printf '#!/usr/bin/env bash\necho "$1" >>"%s/sleeps"\n' "$work" >"$work/sleep"
printf '#!/usr/bin/env bash\nexec "$@"\n' >"$work/sudo"
chmod +x "$work"/{apt-get,dpkg-query,sleep,sudo}

# expect NAME REFUSALS COMPLAINT STATUS SECONDS LINES: what the installation gives, waits and prints.
expect() {
    local status=0 seconds
    seq "$2" >"$work/refusals"
    echo "$3" >"$work/complaint"
    rm -f "$work/calls" "$work/sleeps"
    (PATH=$work:$PATH && install_packages "$work/list.txt") >"$work/said" 2>"$work/errors" || status=$?
    seconds=$(awk '{ sum += $1 } END { print sum + 0 }' "$work/sleeps" 2>/dev/null || echo 0)
    if [ "$status:$seconds:$(wc -l <"$work/said")" != "$4:$5:$6" ]; then
        echo "$1: status $status, $seconds s of waiting and these lines:"
        cat "$work/said" "$work/errors"
        exit 1
    fi
}

lists='E: Could not get lock /var/lib/apt/lists/lock. It is held by process 1 (apt-get)
E: Unable to lock directory /var/lib/apt/lists/'
frontend='E: Could not get lock /var/lib/dpkg/lock-frontend. It is held by process 1 (unattended-upgr)
E: Unable to acquire the dpkg frontend lock (/var/lib/dpkg/lock-frontend), is another process using it?'
expect "no lock" 0 "" 0 0 1
[ "$(cat "$work/calls")" = "update -qq
install -y -qq --no-install-recommends some-package" ]
expect "lists held for a while" 3 "$lists" 0 6 2
[ ! -s "$work/errors" ]
expect "packages held for a while" 60 "$frontend" 0 120 2
expect "held for longer" 1000 "$frontend" 100 120 2
grep -q "after two minutes" "$work/errors"
expect "no such package" 1000 "E: Unable to locate package some-package" 100 0 1
grep -q "Unable to locate" "$work/errors"
echo "The installation of packages waits for apt's locks."
