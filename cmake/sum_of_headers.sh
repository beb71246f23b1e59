#!/bin/sh
# Runs a compile command; lays a checksum beside the precompiled headers that it makes. The compiler cache then compares
# that, and does not read some hundred megabytes for every test that it has.
set -e
"$@"
before=
for argument; do
    [ "$before" != -o ] || sha1sum <"$argument" >"$argument.sum"
    before=$argument
done
