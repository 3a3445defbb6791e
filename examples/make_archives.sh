#!/usr/bin/env bash
# Packs the folders below assemblies/sources into the archives beside them. Needs 7zz of Debian's
# package 7zip. The archives hold no times and no attributes, and one thread packs them, so that
# the same version of 7zz gives the same bytes.
set -euo pipefail
export LC_ALL=C

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
list=$(mktemp)
trap 'rm -f "$list"' EXIT

# pack NAME FOLDER SWITCH... : adds the files below a folder of assemblies/sources/NAME to the
# archive of that name, sorted by their paths.
pack()
{
    local archive=$here/assemblies/$1.oblar folder=$2
    cd "$here/assemblies/sources/$1"
    shift 2
    find "$folder" -type f | sort >"$list"
    7zz a -t7z -mmt=1 -mtm=off -mtc=off -mta=off -mtr=off "$@" "$archive" "@$list" >/dev/null
}

rm -f "$here/assemblies/metal_filters.oblar" "$here/assemblies/stone_filters.oblar"

# All files in one block.
pack metal_filters assemblies -m0=lzma -mx=9 -ms=on

# A block per file, two methods, and a header that is not packed.
pack stone_filters authoring -m0=copy -ms=off -mhc=off
pack stone_filters assemblies -m0=lzma2 -mx=5 -ms=off -mhc=off
