#!/bin/sh
# Compares the picture in ARCHITECTURE.md with what the rooms' files include: every include between rooms is an arrow of
# the picture, every arrow is an include, and every arrow runs down, so that no two rooms can include each other.
#
#     architecture.sh PROJECT_FOLDER
#
# The picture is the block that opens with "```picture": a line for each room, "room -> room, room", with a line of dashes
# between floors. A room is named after its folder, or after the folder above where that is "src". A public header belongs
# to the room that its file is in, also where it is included as <zvctrl/name.h> or <zvservice/name.h>.
set -eu
cd "$1"

# shellcheck disable=SC2016
find protocol platform libzvCommon libzvCtrlD service sim tools -name '*.h' -o -name '*.cpp' | sort | xargs awk '
function complain(text)
{
    print "architecture: " text
    failed = 1
}

function folder_of(path)
{
    sub("/[^/]*$", "", path)
    return path
}

function room_of(path)
{
    path = folder_of(path)
    sub("/src$", "", path)
    sub(".*/", "", path)
    return path
}

# The file that an include means: the neighbour of that name, or else the only file of that name. Empty for a file that
# is not of the project.
function included_file(i,    neighbour, name)
{
    neighbour = folder_of(from[i]) "/" to[i]
    if (neighbour in files) {
        return neighbour
    }
    name = to[i]
    if (sub("^zvservice/", "service/src/", name)) {
        return name
    }
    sub("^zvctrl/", "", name)
    if (count[name] > 1) {
        complain(where[i] " includes " name ", which is the name of " count[name] " files")
    }
    return home[name]
}

BEGIN {
    for (i = 2; i < ARGC; ++i) { # after the picture
        name = ARGV[i]
        sub(".*/", "", name)
        files[ARGV[i]] = 1
        home[name] = ARGV[i]
        ++count[name]
        real[room_of(ARGV[i])] = 1
    }
}

FILENAME == "ARCHITECTURE.md" && /^```/ { in_picture = $0 == "```picture"; next }
FILENAME == "ARCHITECTURE.md" && in_picture && /^--/ { ++depth; next }
FILENAME == "ARCHITECTURE.md" && in_picture && NF > 0 {
    floor[$1] = depth + 0
    line[$1] = FNR
    arrows = $0
    if (!sub("^[^>]*->", "", arrows)) {
        next
    }
    pieces = split(arrows, targets, "[ ,]+")
    for (piece = 1; piece <= pieces; ++piece) {
        if (targets[piece] != "") {
            drawn[$1, targets[piece]] = 1
        }
    }
}
FILENAME == "ARCHITECTURE.md" { next }

/^#include [<"]/ {
    name = $2
    gsub("[<>\"]", "", name)
    ++includes
    from[includes] = FILENAME
    to[includes] = name
    where[includes] = FILENAME ":" FNR
}

END {
    if (includes == 0) {
        complain("no includes found")
        exit failed
    }
    for (room in real) {
        if (!(room in floor)) {
            complain("the picture has no room " room)
        }
    }
    for (room in floor) {
        if (!(room in real)) {
            complain("ARCHITECTURE.md:" line[room] ": no folder is the room " room)
        }
    }
    for (i = 1; i <= includes; ++i) {
        target = included_file(i)
        if (target == "" || room_of(from[i]) == room_of(target)) {
            continue
        }
        seen[room_of(from[i]), room_of(target)] = 1
        if (!((room_of(from[i]), room_of(target)) in drawn)) {
            complain(where[i] " includes " to[i] ": the picture has no arrow " room_of(from[i]) " -> " room_of(target))
        }
    }
    for (arrow in drawn) {
        split(arrow, ends, SUBSEP)
        if (!(arrow in seen)) {
            complain("ARCHITECTURE.md:" line[ends[1]] ": nothing is included along " ends[1] " -> " ends[2])
        }
        if (floor[ends[2]] <= floor[ends[1]]) {
            complain("ARCHITECTURE.md:" line[ends[1]] ": " ends[1] " -> " ends[2] " does not run down")
        }
    }
    exit failed
}' ARCHITECTURE.md
