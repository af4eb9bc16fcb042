#!/bin/sh
# usage: floors.sh SOURCE_DIR FOLDER...
# Fails when a source in one of the folders includes one that stands neither beside it in its own part nor on a lower floor.
set -eu

cd "$1"
shift
find include "$@" -maxdepth 1 -type f \( -name '*.[ch]' -o -name '*.[ch]pp' \) -exec awk '
    # The parts on the next higher floor: how the paths of their files begin. Of several the longest counts.
    function floor(parts,    names, n) {
        ++floors
        for (n = split(parts, names, " "); n > 0; --n) floor_of[names[n]] = floors
    }
    BEGIN {
        # Tables that a host sees have the types of the C interface, whatever folder they stand in; core/ has none.
        floor("include/ core/")
        # decode/ stands on three floors: every link needs the names of terminals and modules, the smaller links are
        # like the others, and what stands in decode/ itself knows every link.
        floor("decode/tables/")
        floor("digital/options/ ip/ he/ object/ convert/")
        floor("digital/")
        floor("decode/routes/") # servers.cpp passes a command on to object/
        floor("decode/")
        floor("abi/ api/ tool/output/")
        floor("tool/input/ tool/report/")
        floor("tool/select/ tool/analysis/ tool/redact/")
        floor("tool/")

        # FILE INCLUDED: an include that runs upward, and why it may.
        # A computer-link module emulates a set, and carries the messages of one.
        upward["digital/options/mpc.cpp digital/digital.hpp"]
    }

    function part_of(path,    part, longest) {
        for (part in floor_of) {
            if (index(path, part) == 1 && length(part) > length(longest)) longest = part
        }
        return longest
    }
    function complain(words) {
        print words
        failed = 1
    }
    function is_file(path,    line, status) {
        status = (getline line <path)
        close(path)
        return status >= 0
    }

    FNR == 1 {
        part = part_of(FILENAME)
        if (part == "") complain(FILENAME " stands on no floor")
    }
    /^[ \t]*#[ \t]*include[ \t]*["<]/ {
        quoted = $0 ~ /^[^<]*"/
        included = $0
        sub(/^[^"<]*["<]/, "", included)
        sub(/[">].*/, "", included)
        if (included ~ /^ztdecode(_session)?\.h(pp)?$/) included = "include/" included
        ground = part_of(included)
        if (ground == "" && !quoted) next # a system header
        ++includes
        if (ground == "" || !is_file(included)) {
            complain(FILENAME ":" FNR ": " included " is no path of a source")
        } else if ((FILENAME " " included) in upward) {
            met[FILENAME " " included]
        } else if (ground != part && floor_of[ground] >= floor_of[part]) {
            complain(FILENAME ":" FNR ": " included " stands on no lower floor")
        }
    }

    END {
        for (exception in upward) {
            if (!(exception in met)) complain("no longer an include, but still allowed to run upward: " exception)
        }
        if (includes < 100) complain("only " (includes + 0) " includes found")
        exit failed
    }' {} +
