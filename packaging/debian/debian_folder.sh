# Sourced: what build_package.sh and build_source_package.sh both do.

# Times in what is packed are the source's; see cmake/KivoRelease.cmake.
eval "$(cmake -P cmake/KivoRelease.cmake)"
export SOURCE_DATE_EPOCH=$KIVO_SOURCE_EPOCH

# make_debian_folder TREE: TREE/debian, from packaging/debian/debian.
make_debian_folder() {
    local file date
    date=$(LC_ALL=C date --utc --date="@$KIVO_SOURCE_EPOCH" --rfc-email)
    (umask 022 && cp -r packaging/debian/debian "$1/debian")
    for file in control changelog; do
        sed -e "s|@KIVO_VERSION@|$KIVO_VERSION|; s|@KIVO_HOMEPAGE@|$KIVO_HOMEPAGE|; s|@KIVO_SOURCE_DATE@|$date|" \
            -e '/^Homepage: $/d' "$1/debian/$file.in" >"$1/debian/$file"
        rm "$1/debian/$file.in"
    done
}
