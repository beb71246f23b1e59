# Sourced by run.sh, test.sh and .ci/run.

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
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "Missing packages: ${missing[*]}. Install them as root (there is no sudo here)." >&2
            return 1
        fi
        as_root=(sudo)
    fi
    echo "Installing ${missing[*]}"
    "${as_root[@]}" apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}
