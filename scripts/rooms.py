#!/usr/bin/env python3
"""Draws which room includes which, and fails on whatever the table of rooms below does not allow.

    scripts/rooms.py           the rooms from top to bottom, each with the rooms that it includes
    scripts/rooms.py --dot     the same for Graphviz: scripts/rooms.py --dot | dot -Tsvg > rooms.svg

Checked are the includes between rooms, the libraries that a room may include, the libraries that
the build lists link, and that no header includes itself by way of others. Ends with 1 if anything
is not allowed.
"""
import argparse
import collections
import fnmatch
import os
import re
import sys

Room = collections.namedtuple("Room", "name places knows")

# The rooms from the ground floor to the roof. A room may include itself and the rooms that it
# knows, which all stand above its row: so no arrow points upwards, and none leads back.
# Its places are folders, or headers with the .cpp file of the same name; a file belongs to the
# longest place that fits.
ROOMS = [
    Room("base", ["base"], []),
    Room("base/PLATFORM", ["base/linux", "base/win32"], ["base"]),
    Room("pictures", ["pictures"], ["base"]),
    Room("gds", ["gds"], ["base"]),
    # What a process asks for: all of the model that its reader knows.
    Room("model/mask_layer", ["model/mask/mask_layer.h"], []),
    Room("model/process", ["model/process.h"], ["base", "model/mask_layer"]),
    Room("process_file", ["process_file"], ["base", "model/process"]),
    Room("model/grid", ["model/grid"], ["base", "model/process"]),
    Room("model/stack",
         ["model/stack.h", "model/settle_stack.cpp", "model/process_model.h", "model/cover_map.h",
          "model/cover_map_lanes.h", "model/mask/mask_polygon.h"],
         ["base", "model/process", "model/grid"]),
    Room("model/disc", ["model/disc"], ["base", "model/grid", "model/stack"]),
    Room("model/mask", ["model/mask"],
         ["base", "model/mask_layer", "model/grid", "model/stack", "model/disc"]),
    Room("model/offset", ["model/offset"], ["base", "model/grid"]),
    Room("model/steps", ["model/steps"],
         ["base", "model/process", "model/grid", "model/stack", "model/disc", "model/mask",
          "model/offset"]),
    Room("model", ["model"], ["base", "model/stack", "model/steps"]),
    Room("process_run", ["process_run"],
         ["base", "gds", "model/process", "process_file", "model/grid", "model/stack", "model"]),
    Room("results", ["results"],
         ["base", "gds", "model/process", "process_file", "model/grid", "model/stack",
          "process_run"]),
    Room("command_line", ["command_line"],
         ["base", "gds", "process_file", "model/stack", "process_run"]),
    Room("command_line/PLATFORM", ["command_line/linux", "command_line/win32"],
         ["base", "command_line"]),
    Room("layout_tool", ["layout_tool"],
         ["base", "gds", "model/mask_layer", "model/process", "process_file", "process_run",
          "command_line"]),
    Room("render/mesh", ["render/mesh"], ["base", "model/grid", "model/stack"]),
    Room("render/visible", ["render/visible"],
         ["base", "model/grid", "model/stack", "render/mesh"]),
    Room("render/gl", ["render/gl"], ["base", "pictures", "render/mesh"]),
    Room("render", ["render"],
         ["base", "pictures", "model/grid", "model/stack", "render/mesh", "render/visible",
          "render/gl"]),
    Room("report", ["report"],
         ["base", "pictures", "process_file", "model/process", "model/grid", "model/stack",
          "process_run", "results"]),
    Room("batch", ["batch"],
         ["base", "pictures", "gds", "process_file", "model/process", "model/grid", "model/stack",
          "process_run", "results", "command_line", "render/gl", "render", "report"]),
    Room("python", ["python"],
         ["base", "pictures", "gds", "process_file", "model/process", "model/grid", "model/stack",
          "model", "process_run", "results", "command_line", "render", "report"]),
    Room("desktop", ["desktop"],
         ["base", "pictures", "gds", "process_file", "model/stack", "process_run", "render"]),
    Room("desktop/null", ["desktop/null"], ["base", "pictures", "desktop"]),
    Room("desktop/qt", ["desktop/qt"], ["base", "pictures", "render/gl", "desktop"]),
    Room("desktop/win32", ["desktop/win32"], ["base", "pictures", "render/gl", "desktop"]),
]

# What measures and tries the rooms may include everything; no room includes any of it.
OUTSIDE = ["examples", "benchmarks", "tests", "docs"]

# Headers that are not the project's own, and the rooms that may include them. The first row that
# fits decides; names without a full stop or slash are the C++ library's, for everybody.
LIBRARIES = [
    ("fmt/*", ["*"]),
    ("CLI/*", ["command_line"]),
    ("nlohmann/*", ["results", "report", "batch", "layout_tool"]),
    ("tiny_gltf.h", ["results"]),
    ("png.h", ["pictures"]),
    ("webp/*", ["pictures"]),
    ("zlib.h", ["gds", "report"]),
    ("clipper.hpp", ["model/mask"]),
    ("pybind11/*", ["python"]),
    ("unistd.h", ["*/PLATFORM", "render/gl", "python"]),
    ("Q[A-Z]*", ["desktop/qt"]),
    ("GL/*", ["render", "render/gl"]),
    ("EGL/*", ["render/gl"]),
    ("ft2build.h", ["render/gl"]),
    ("FT_*_H", ["render/gl"]),
    ("fontconfig/*", ["render/gl"]),
    ("windows.h", ["*/PLATFORM", "render/gl", "desktop/win32"]),
    ("comm*.h", ["desktop/win32"]),
    ("*[./]*", ["*/PLATFORM", "render/gl"]),
]

INCLUDE = re.compile(r'\s*#\s*include\b\s*(?:"([^"]+)"|<?(\w[^>\s]*)>?)?')
# One call in a build list: its name and its words.
CMAKE_CALL = re.compile(r"(\w+)\s*\(([^()]*)\)")


def fits(path, place):
    """Whether a file belongs to a place."""
    stem, ending = os.path.splitext(place)
    if ending:
        return os.path.splitext(path)[0] == stem
    return path.startswith(place + "/")


def room_of(path, rooms):
    """The room that a file belongs to, or None."""
    found = [(len(place), room) for room in rooms for place in room.places if fits(path, place)]
    return max(found, key=lambda pair: pair[0])[1] if found else None


def project_files(root, endings):
    """The paths below root that end so, sorted; what builds leave there is passed over."""
    found = []
    for folder, folders, names in os.walk(root):
        folders[:] = [f for f in folders if not f.startswith(".") and f != "node_modules" and
                      not (folder == root and f == "build")]
        found += [os.path.relpath(os.path.join(folder, name), root) for name in names
                  if name.endswith(endings)]
    return sorted(found)


def read_includes(root, path):
    """(line number, own header or None, foreign header or None) of every include of a file."""
    with open(os.path.join(root, path), encoding="utf-8") as file:
        for number, line in enumerate(file, 1):
            match = INCLUDE.match(line)
            if match:
                yield number, match.group(1), match.group(2)


def resolve(root, path, name):
    """The file that an include in quotes means, as the compiler looks for it, or None."""
    beside = os.path.normpath(os.path.join(os.path.dirname(path), name))
    for candidate in (beside, name):
        if os.path.isfile(os.path.join(root, candidate)):
            return candidate
    return None


def table_faults(rooms):
    """What is wrong with the table itself."""
    above = []
    for room in rooms:
        for known in room.knows:
            if known not in above:
                yield f"the table: {room.name} knows {known}, which does not stand above it"
        above.append(room.name)


def why_not(room, other, rooms):
    """Why a room may not include another, or None where it may."""
    if other is room or other.name in room.knows:
        return None
    upwards = rooms.index(other) > rooms.index(room)
    return f"{room.name} includes {other.name}, " + (
        "which stands above it" if upwards else "which it is not to know")


def library_fault(room, name, libraries):
    """Why a room may not include a foreign header, or None where it may."""
    for pattern, allowed in libraries:
        if fnmatch.fnmatchcase(name, pattern):
            if any(fnmatch.fnmatchcase(room.name, known) for known in allowed):
                return None
            return f"{room.name} is not to include <{name}>"
    return None


def include_fault(room, own, foreign, target, rooms, libraries):
    """Why one include of a room's file is not allowed, or None where it is."""
    if foreign:
        return library_fault(room, foreign, libraries)
    if not own:
        return "an include that cannot be read"
    if target is None:
        return f'"{own}" is not there'
    other = room_of(target, rooms)
    if other is None:
        return f'{room.name} includes "{own}", which belongs to no room'
    return why_not(room, other, rooms)


def find_cycle(graph):
    """A list of files each of which includes the next, the first being the last; or None."""
    finished = set()

    def visit(path, trail):
        if path in trail:
            return trail[trail.index(path):] + [path]
        if path in finished:
            return None
        for target in graph.get(path, []):
            cycle = visit(target, trail + [path])
            if cycle:
                return cycle
        finished.add(path)
        return None

    for start in sorted(graph):
        cycle = visit(start, [])
        if cycle:
            return cycle
    return None


def check_file(root, path, rooms, libraries):
    """Returns (faults, files that it includes, rooms of those) of one file."""
    room = room_of(path, rooms)
    faults = []
    targets = []
    for number, own, foreign in read_includes(root, path):
        target = resolve(root, path, own) if own else None
        if target:
            targets.append(target)
        if room:
            fault = include_fault(room, own, foreign, target, rooms, libraries)
            faults += [f"{path}:{number}: {fault}"] if fault else []
    if room is None and path.split("/")[0] not in OUTSIDE:
        faults.append(f"{path}: belongs to no room; a new room needs a row in the table")
    return faults, targets, [room_of(target, rooms) for target in targets]


def check_includes(root, rooms, libraries):
    """Returns (faults, {(room, room): how many includes}, {room: how many files})."""
    faults = []
    arrows = collections.Counter()
    sizes = collections.Counter()
    graph = {}
    for path in project_files(root, (".h", ".cpp", ".inc")):
        found, graph[path], others = check_file(root, path, rooms, libraries)
        faults += found
        room = room_of(path, rooms)
        if room:
            sizes[room.name] += 1
            arrows.update((room.name, other.name) for other in others if other not in (room, None))
    cycle = find_cycle(graph)
    if cycle:
        faults.append("a circle of includes: " + " -> ".join(cycle))
    return faults, arrows, sizes


def read_calls(path):
    """(name, words) of every call in a build list that has words."""
    with open(path, encoding="utf-8") as file:
        text = re.sub(r"#.*", "", file.read())
    return [(call, arguments.split()) for call, arguments in CMAKE_CALL.findall(text)
            if arguments.split()]


def read_build_lists(root, rooms):
    """({library: its rooms}, [(file, library, what it links)]) of the rooms' build lists."""
    members = collections.defaultdict(list)
    links = []
    for path in project_files(root, "CMakeLists.txt"):
        folder = os.path.dirname(path)
        if room_of(folder + "/x", rooms) is None:
            continue
        for call, words in read_calls(os.path.join(root, path)):
            if call in ("zelmo_library", "add_library", "add_executable", "zelmo_lane_kernels"):
                places = [room_of(f"{folder}/{w}", rooms) for w in words if w.endswith(".cpp")]
                members[words[0]] += places or [room_of(folder + "/x", rooms)]
            if call == "target_link_libraries" or (call == "zelmo_library" and "LINK" in words):
                start = words.index("LINK") if call == "zelmo_library" else 1
                links += [(path, words[0], linked) for linked in words[start + 1:]]
    return members, links


def check_links(root, rooms):
    """What the build lists link though no room of the library may know any room of the other."""
    members, links = read_build_lists(root, rooms)
    outside = set()
    for folder in OUTSIDE:
        for path in project_files(os.path.join(root, folder), "CMakeLists.txt"):
            outside.update(words[0] for call, words
                           in read_calls(os.path.join(root, folder, path))
                           if call in ("zelmo_library", "add_library"))
    for path, library, linked in links:
        if linked in outside:
            yield f"{path}: {library} links {linked}, which belongs to no room"
        pairs = [(room, other) for room in members[library] for other in members.get(linked, [])]
        if pairs and all(why_not(room, other, rooms) for room, other in pairs):
            yield f"{path}: {library} links {linked}: {why_not(*pairs[0], rooms)}"


def check(root, rooms, libraries):
    """Returns (faults, arrows, sizes) of the project below root."""
    faults = list(table_faults(rooms))
    if faults:
        return faults, {}, {}
    faults, arrows, sizes = check_includes(root, rooms, libraries)
    faults += check_links(root, rooms)
    faults += [f"the table: {room.name} has no file" for room in rooms if not sizes[room.name]]
    return faults, arrows, sizes


def picture(rooms, arrows, sizes):
    """The rooms from top to bottom as text."""
    width = max(len(room.name) for room in rooms)
    lines = []
    for room in reversed(rooms):
        targets = [f"{other.name} {arrows[room.name, other.name]}" for other in reversed(rooms)
                   if (room.name, other.name) in arrows]
        lines.append(f"{room.name:{width}}  {sizes[room.name]:3} files  -> "
                     + (", ".join(targets) or "nothing"))
    return "\n".join(lines)


def dot(rooms, arrows, sizes):
    """The rooms for Graphviz, the arrows with the number of includes."""
    lines = ["digraph rooms {", "    node [shape=box];"]
    lines += [f'    "{room.name}" [label="{room.name}\\n{sizes[room.name]} files"];'
              for room in reversed(rooms)]
    lines += [f'    "{room}" -> "{other}" [label="{count}"];'
              for (room, other), count in sorted(arrows.items())]
    return "\n".join(lines + ["}"])


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--dot", action="store_true", help="draw for Graphviz")
    parser.add_argument("root", nargs="?",
                        default=os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
    options = parser.parse_args()
    faults, arrows, sizes = check(options.root, ROOMS, LIBRARIES)
    if sizes:
        print((dot if options.dot else picture)(ROOMS, arrows, sizes))
    for fault in faults:
        print(fault, file=sys.stderr)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
