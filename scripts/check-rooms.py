#!/usr/bin/env python3
"""Holds every #include below src against src/rooms.txt. Prints what does not fit; the exit status is 1 then.

With --count, prints how many files each room has, and the arrows between rooms with their includes.
"""
import collections
import pathlib
import re
import sys

SOURCE = pathlib.Path(__file__).resolve().parent.parent / "src"
FOLDERS = {"engine": "plugins/XmlPlugin/common"}  # where the rooms of a name's first part lie, unless in a folder of it
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.MULTILINE)


def read_rooms():
    rooms = {}
    for line in (SOURCE / "rooms.txt").read_text(encoding="utf-8").splitlines():
        name, colon, allowed = line.partition("#")[0].partition(":")
        if colon:
            rooms[name.strip()] = allowed.split()
    return rooms


def folder_of(room):
    first, _, rest = room.partition("/")
    return SOURCE / FOLDERS.get(first, first) / rest


def circles(rooms):
    """The rooms that reach themselves by the list."""
    def reached(room, seen):
        for other in rooms[room]:
            if other not in seen:
                seen.add(other)
                reached(other, seen)
        return seen
    return [room for room in rooms if room in reached(room, set())]


def main():
    rooms = read_rooms()
    complaints = [f"src/rooms.txt: {room} includes itself by way of others" for room in circles(rooms)]
    for room, allowed in rooms.items():
        complaints += [f"src/rooms.txt: {room} names {other}, which is no room" for other in allowed if other not in rooms]
        if not folder_of(room).is_dir():
            complaints.append(f"src/rooms.txt: no folder of {room}")
    # The deepest room that a file lies in.
    by_depth = sorted(rooms, key=lambda room: -len(folder_of(room).parts))

    def room_of(path):
        return next((room for room in by_depth if folder_of(room) in path.parents), None)

    roots = [SOURCE, SOURCE / "platform", SOURCE / "common", SOURCE / "plugins/XmlPlugin/common", SOURCE / "host"]
    files = collections.Counter()
    arrows = collections.Counter()
    for path in sorted([*SOURCE.rglob("*.cpp"), *SOURCE.rglob("*.h")]):
        room = room_of(path)
        name = path.relative_to(SOURCE.parent)
        if room is None:
            complaints.append(f"{name}: in no room of src/rooms.txt")
            continue
        files[room] += 1
        for included in INCLUDE.findall(path.read_text(encoding="utf-8")):
            target = next((root / included for root in [path.parent, *roots] if (root / included).is_file()), None)
            other = room_of(target.resolve()) if target else None
            if other is None:
                continue  # not a file of this tree
            if other != room:
                arrows[room, other] += 1
                if other not in rooms[room]:
                    complaints.append(f"{name}: {room} may not include {other} ({included})")
    for complaint in complaints:
        print(complaint)
    if "--count" in sys.argv[1:]:
        for room in rooms:
            print(f"{room}: {files[room]} files")
        for (room, other), count in sorted(arrows.items()):
            print(f"{room} -> {other}: {count}")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
