#!/usr/bin/env bash
# Makes the manifests for winget and Scoop of the installer and the portable folder that build_installer.sh and
# build_portable.sh have left, and checks them: build/windows/winget/ and build/windows/scoop/.
#
# The files are expected for download at <homepage>/releases/download/v<version>/; the homepage is CMakeLists.txt's.
set -euo pipefail
cd "$(dirname "$0")/../.."

eval "$(cmake -P cmake/KivoRelease.cmake)"
folder=${1:-build/windows}
setup=KivoScreen-$KIVO_VERSION-setup.exe
portable=KivoScreen-$KIVO_VERSION-portable.zip
if [ -z "$KIVO_HOMEPAGE" ]; then
    # No name below it is ever given to anybody.
    KIVO_HOMEPAGE=https://homepage.invalid
    echo "CMakeLists.txt has no homepage yet; the manifests have $KIVO_HOMEPAGE instead." >&2
fi
sum_of() { sha256sum "$folder/$1" | cut -d' ' -f1; }
setup_sha256=$(sum_of "$setup")
portable_sha256=$(sum_of "$portable")

rm -rf "$folder/winget" "$folder/scoop"
mkdir -p "$folder/winget" "$folder/scoop"
for template in packaging/winget/*.in packaging/scoop/*.in; do
    kind=$(basename "$(dirname "$template")")
    sed -e "s|@VERSION@|$KIVO_VERSION|; s|@DATE@|$KIVO_RELEASE_DATE|; s|@HOMEPAGE@|$KIVO_HOMEPAGE|" \
        -e "s|@DOWNLOADS@|$KIVO_HOMEPAGE/releases/download/v$KIVO_VERSION|" \
        -e "s|@SETUP@|$setup|; s|@PORTABLE@|$portable|" \
        -e "s|@SETUP_SHA256@|${setup_sha256^^}|; s|@PORTABLE_SHA256@|$portable_sha256|" \
        "$template" >"$folder/$kind/$(basename "$template" .in)"
done
packaging/windows/check_manifests.pl "$folder"/winget/*.yaml "$folder"/scoop/*.json
