# Sourced by run.sh, test.sh and .ci/run.

# apt_get ARG...: apt-get as root. While another program holds one of its locks (a desktop's unattended upgrade does for
# minutes), it is tried again, for two minutes. apt's own DPkg::Lock::Timeout does not cover the locks of the package
# lists and of the downloads.
apt_get() {
    local as_root=() tries=60 output status
    [ "$(id -u)" -eq 0 ] || as_root=(sudo)
    while true; do
        status=0
        output=$("${as_root[@]}" env LC_ALL=C DEBIAN_FRONTEND=noninteractive apt-get "$@" 2>&1 >/dev/null) || status=$?
        case $status:$output in
            0:*) break ;;
            *"Could not get lock"* | *"locked by another process"*) ;;
            *) break ;;
        esac
        if [ $tries -eq 0 ]; then
            echo "Another program still holds apt's lock after two minutes; try again when it is done." >&2
            break
        fi
        [ $tries -lt 60 ] || echo "Another program holds apt's lock; waiting for it, two minutes at most."
        tries=$((tries - 1))
        sleep 2
    done
    [ -z "$output" ] || echo "$output" >&2
    return $status
}

# install_packages FILE: installs what is missing of a package list (one name a line, # starts a comment).
install_packages() {
    local missing=() name
    while read -r name; do
        if [ "$(dpkg-query -W -f='${db:Status-Status}' "$name" 2>/dev/null)" != installed ]; then
            missing+=("$name")
        fi
    done < <(sed 's/#.*//' "$1" | awk 'NF { print $1 }')
    if [ ${#missing[@]} -eq 0 ]; then
        return 0
    fi
    if [ "$(id -u)" -ne 0 ] && ! command -v sudo >/dev/null; then
        echo "Missing packages: ${missing[*]}. Install them as root (there is no sudo here)." >&2
        return 1
    fi
    echo "Installing ${missing[*]}"
    apt_get update -qq && apt_get install -y -qq --no-install-recommends "${missing[@]}"
}
