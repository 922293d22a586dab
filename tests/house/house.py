#!/usr/bin/env python3
"""Checks the rules of the house: who may include whom, and how long a file may be.

usage: house.py SOURCE-TREE      prints every violation; fails where there is one
       house.py --self-test      plants violations in a tree of its own and fails where one goes unseen
"""

import pathlib
import posixpath
import re
import sys
import tempfile

# A file includes only files of its own floor or of a lower one.
FLOORS = {
    "platform": 1,
    "model": 1,
    "forms": 2,
    "actions": 3,
    "effects": 3,
    "tray": 3,
    "recognition": 4,
    "capture": 5,
    "store": 6,
    "ui": 7,
    "app": 8,
}
# What stands beside the floors, and the folders (or single files) that it may include other than its own.
BESIDE = {
    "desktop": ["platform/"],
    "simulation": ["platform/", "model/"],
    "hooklib": ["platform/hook_contract.h"],
}
# The one file in which the floors meet the real desktop.
JUNCTION = "app/main.cpp"
# These look at everything and nothing looks at them.
ONLOOKERS = ["tests", "bench", "fuzz"]
# Folders that may see Qt, X11 and the operating system. All others make do with the headers below.
OPEN_TO_SYSTEM = ["desktop", "hooklib"]

# The C++20 library without threads and what only threads need, and without the files and processes of the machine.
STANDARD = set(
    """
    algorithm any array bit bitset cassert cctype cerrno cfenv cfloat charconv chrono cinttypes climits clocale cmath
    codecvt compare complex concepts coroutine cstdarg cstddef cstdint cstdio cstdlib cstring ctime cuchar cwchar cwctype
    deque exception expected format forward_list functional initializer_list iomanip ios iosfwd iostream istream iterator
    limits list locale map memory memory_resource new numbers numeric optional ostream queue random ranges ratio regex
    scoped_allocator set source_location span sstream stack stdexcept streambuf string string_view system_error tuple
    type_traits typeindex typeinfo unordered_map unordered_set utility valarray variant vector version
    """.split()
)
MAX_LINES = 500
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.MULTILINE)
BLOCK_COMMENT = re.compile(r"/\*.*?\*/", re.DOTALL)


def sources(tree):
    """Paths of all C++ files of the tree, relative to it; build folders and hidden ones aside."""
    for path in sorted(tree.rglob("*")):
        inside = path.relative_to(tree)
        if path.suffix in {".h", ".hpp", ".cpp", ".cc"} and not inside.parts[0].startswith(("build", ".")):
            yield inside.as_posix()


def folder_of(path):
    return path.split("/")[0] if "/" in path else ""


def may_include(path, other):
    """Whether file `path` of the tree may include file `other` of the tree."""
    mine, theirs = folder_of(path), folder_of(other)
    if mine in ONLOOKERS:
        return True
    if mine == theirs:
        return True
    if mine in BESIDE:
        return any(other == allowed or (allowed.endswith("/") and other.startswith(allowed)) for allowed in BESIDE[mine])
    if theirs == "desktop":
        return path == JUNCTION
    return theirs in FLOORS and FLOORS[theirs] <= FLOORS[mine]


def cycles(includes):
    """Every group of files that include each other, once, as the path that closes."""
    found, done = [], set()
    for start in includes:
        trail, stack = [start], [(start, iter(includes[start]))]
        while stack:
            path, rest = stack[-1]
            other = next(rest, None)
            if other is None:
                done.add(path)
                stack.pop()
                trail.pop()
            elif other in trail:
                found.append(trail[trail.index(other) :] + [other])
            elif other not in done:
                trail.append(other)
                stack.append((other, iter(includes[other])))
    return found


def violations(tree):
    all_sources = list(sources(tree))
    known = set(all_sources)
    includes = {}
    for path in all_sources:
        folder = folder_of(path)
        text = (tree / path).read_text(encoding="utf-8")
        lines = text.count("\n")
        includes[path] = []
        if folder not in [*FLOORS, *BESIDE, *ONLOOKERS]:
            yield f"{path}: lies in no folder that the house knows"
            continue
        if folder not in ONLOOKERS and lines > MAX_LINES:
            yield f"{path}: {lines} lines, more than {MAX_LINES}"
        for bracket, name in INCLUDE.findall(BLOCK_COMMENT.sub("", text)):
            beside = posixpath.normpath(posixpath.join(posixpath.dirname(path), name))
            ours = next((candidate for candidate in (beside, name) if candidate in known), None)
            if ours:
                includes[path].append(ours)
                if not may_include(path, ours):
                    yield f"{path}: may not include {ours}"
            elif folder not in [*OPEN_TO_SYSTEM, *ONLOOKERS] and path != JUNCTION:
                if bracket == '"' or name not in STANDARD:
                    yield f"{path}: may not include <{name}>: only the standard library, and none of its threads"
    for cycle in cycles(includes):
        yield "files include each other: " + " -> ".join(cycle)


# Planted trees: the files, and the start of each violation that must be found, in any order.
PLANTED = [
    (
        {
            "platform/a.h": "#include <vector>\n",
            "forms/b.h": '#include "platform/a.h"\n#include "c.h"\n/*\n#include <QWidget>\n*/\n// #include <X11/Xlib.h>\n',
            "forms/c.h": "",
            "desktop/d.cpp": '#include <QWidget>\n#include <X11/Xlib.h>\n#include <thread>\n#include "platform/a.h"\n',
            "simulation/e.h": '#include "platform/a.h"\n',
            "platform/hook_contract.h": "#include <cstdint>\n",
            "hooklib/f.cpp": '#include <pthread.h>\n#include "platform/hook_contract.h"\n',
            "app/main.cpp": '#include <QApplication>\n#include "desktop/g.h"\n#include "ui/h.h"\n',
            "desktop/g.h": "",
            "ui/h.h": '#include "store/i.h"\n',
            "store/i.h": "\n" * MAX_LINES,
            "tests/ui/j.cpp": '#include <unistd.h>\n#include "ui/h.h"\n#include "simulation/e.h"\n' + "\n" * MAX_LINES,
            "build-x/k.cpp": '#include "nowhere.h"\n',
        },
        [],
    ),
    ({"platform/a.h": '#include "forms/b.h"\n', "forms/b.h": ""}, ["platform/a.h: may not include forms/b.h"]),
    ({"recognition/a.h": '#include "../capture/b.h"\n', "capture/b.h": ""}, ["recognition/a.h: may not include capture/b.h"]),
    ({"store/a.cpp": "#  include <X11/Xlib.h>\n"}, ["store/a.cpp: may not include <X11/Xlib.h>"]),
    ({"ui/a.cpp": '#include "QtWidgets/QWidget"\n'}, ["ui/a.cpp: may not include <QtWidgets/QWidget>"]),
    ({"model/a.h": "#include <unistd.h>\n#include <thread>\n"}, ["model/a.h: may not", "model/a.h: may not"]),
    ({"app/start.cpp": '#include "desktop/a.h"\n', "desktop/a.h": ""}, ["app/start.cpp: may not include desktop/a.h"]),
    ({"app/start.cpp": "#include <QApplication>\n"}, ["app/start.cpp: may not include <QApplication>"]),
    ({"app/main.cpp": '#include "simulation/a.h"\n', "simulation/a.h": ""}, ["app/main.cpp: may not include simulation"]),
    ({"desktop/a.cpp": '#include "model/b.h"\n', "model/b.h": ""}, ["desktop/a.cpp: may not include model/b.h"]),
    ({"simulation/a.cpp": '#include "forms/b.h"\n', "forms/b.h": ""}, ["simulation/a.cpp: may not include forms/b.h"]),
    ({"simulation/a.cpp": "#include <sys/stat.h>\n"}, ["simulation/a.cpp: may not include <sys/stat.h>"]),
    ({"hooklib/a.cpp": '#include "platform/b.h"\n', "platform/b.h": ""}, ["hooklib/a.cpp: may not include platform/b.h"]),
    ({"ui/a.cpp": '#include "tests/b.h"\n', "tests/b.h": ""}, ["ui/a.cpp: may not include tests/b.h"]),
    ({"ui/a.h": '#include "b.h"\n', "ui/b.h": '#include "ui/c.h"\n', "ui/c.h": '#include "a.h"\n'}, ["files include each"]),
    ({"effects/a.cpp": "\n" * (MAX_LINES + 1)}, ["effects/a.cpp: 501 lines"]),
    ({"attic/a.cpp": ""}, ["attic/a.cpp: lies in no folder"]),
]


def self_test():
    failures = 0
    for files, expected in PLANTED:
        with tempfile.TemporaryDirectory() as folder:
            tree = pathlib.Path(folder)
            for path, text in files.items():
                (tree / path).parent.mkdir(parents=True, exist_ok=True)
                (tree / path).write_text(text, encoding="utf-8")
            found = sorted(violations(tree))
        if len(found) != len(expected) or not all(map(str.startswith, found, sorted(expected))):
            failures += 1
            print(f"planted {sorted(files)}\n  expected {sorted(expected)}\n  found    {found}")
    return failures


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    if sys.argv[1] == "--self-test":
        sys.exit(1 if self_test() else 0)
    found = list(violations(pathlib.Path(sys.argv[1]).resolve()))
    print("\n".join(found) or "the house is in order")
    sys.exit(1 if found else 0)


main()
