"""The check of the rooms finds what it is there for: each test plants one fault in a small house."""
import os
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../scripts"))
import rooms  # noqa: E402

TABLE = [
    rooms.Room("ground", ["ground"], []),
    rooms.Room("records", ["middle/records.h"], ["ground"]),
    rooms.Room("side", ["side"], ["ground", "records"]),
    rooms.Room("middle", ["middle"], ["ground", "records"]),
    rooms.Room("roof", ["roof"], ["ground", "records", "side", "middle"]),
]
LIBRARIES = [("GL/*", ["roof"]), ("*[./]*", [])]
HOUSE = {
    "ground/text.h": "#include <string>\n",
    "ground/text.cpp": '#include "ground/text.h"\n',
    "ground/CMakeLists.txt": "zelmo_library(ground SOURCES text.cpp LINK zelmo_fmt)\n",
    "middle/records.h": '#include "ground/text.h"\n',
    "middle/stack.h": '#include "middle/records.h"\n',
    "middle/stack.cpp": '#include "middle/stack.h"\n',
    "middle/CMakeLists.txt": "zelmo_library(middle\n    SOURCES stack.cpp\n    LINK ground)\n",
    "side/reader.h": '#include "middle/records.h"\n',
    "side/reader.cpp": '#include "side/reader.h"\n',
    "side/CMakeLists.txt": "zelmo_library(side SOURCES reader.cpp LINK ground)\n",
    "roof/picture.cpp": '#include <GL/glew.h>\n#include "middle/stack.h"\n#include "side/reader.h"\n',
    "roof/CMakeLists.txt": "add_executable(roof picture.cpp)\n"
                           "target_link_libraries(roof PRIVATE middle side)\n",
    "tests/all_test.cpp": '#include "roof/picture.cpp"\n#include <anything.h>\n',
    "tests/CMakeLists.txt": "add_library(test_support STATIC all_test.cpp)\n",
    "build/left/over.cpp": '#include "roof/nothing.h"\n',
}


def check(changes):
    """The faults of the house after some of its files were written anew."""
    with tempfile.TemporaryDirectory() as root:
        for path, text in {**HOUSE, **changes}.items():
            os.makedirs(os.path.dirname(os.path.join(root, path)), exist_ok=True)
            with open(os.path.join(root, path), "w", encoding="utf-8") as file:
                file.write(text)
        return rooms.check(root, TABLE, LIBRARIES)[0]


class TheCheckOfTheRooms(unittest.TestCase):
    def expect(self, changes, *faults):
        self.assertEqual(check(changes), list(faults))

    def test_passes_a_house_whose_arrows_point_downwards(self):
        self.expect({})

    def test_finds_an_arrow_upwards(self):
        self.expect({"ground/text.cpp": '\n#  include "middle/stack.h"\n'},
                    "ground/text.cpp:2: ground includes middle, which stands above it")

    def test_finds_an_arrow_to_a_room_below_that_is_not_to_be_known(self):
        self.expect({"middle/stack.cpp": '#include "side/reader.h"\n'},
                    "middle/stack.cpp:1: middle includes side, which it is not to know")

    def test_lets_only_the_records_of_a_room_be_known(self):
        self.expect({"side/reader.h": '#include "middle/stack.h"\n'},
                    "side/reader.h:1: side includes middle, which stands above it")

    def test_finds_a_file_and_an_include_of_no_room(self):
        self.expect({"cellar/wine.h": "", "roof/picture.cpp": '#include "cellar/wine.h"\n'},
                    "cellar/wine.h: belongs to no room; a new room needs a row in the table",
                    'roof/picture.cpp:1: roof includes "cellar/wine.h", which belongs to no room')

    def test_finds_an_include_of_tests(self):
        self.expect({"roof/picture.cpp": '#include "tests/all_test.cpp"\n',
                     "tests/all_test.cpp": ""},
                    'roof/picture.cpp:1: roof includes "tests/all_test.cpp", '
                    "which belongs to no room")

    def test_finds_an_include_of_a_file_that_is_not_there(self):
        self.expect({"roof/picture.cpp": '#include "middle/gone.h"\n'},
                    'roof/picture.cpp:1: "middle/gone.h" is not there')

    def test_finds_a_circle_within_a_room(self):
        self.expect({"middle/stack.h": '#include "layer.h"\n',
                     "middle/layer.h": '#include "middle/stack.h"\n'},
                    "a circle of includes: "
                    "middle/layer.h -> middle/stack.h -> middle/layer.h")

    def test_finds_a_library_that_a_room_is_not_to_include(self):
        self.expect({"middle/stack.cpp": "#include <GL/glew.h>\n#include <unistd.h>\n"},
                    "middle/stack.cpp:1: middle is not to include <GL/glew.h>",
                    "middle/stack.cpp:2: middle is not to include <unistd.h>")

    def test_finds_an_include_that_it_cannot_read(self):
        self.expect({"middle/stack.cpp": "#include /* which? */ <string>\n"},
                    "middle/stack.cpp:1: an include that cannot be read")

    def test_finds_a_link_upwards(self):
        self.expect({"ground/CMakeLists.txt": "zelmo_library(ground\n    SOURCES text.cpp\n"
                                              "    LINK zelmo_fmt middle)\n"},
                    "ground/CMakeLists.txt: ground links middle: "
                    "ground includes middle, which stands above it")

    def test_finds_a_link_to_tests(self):
        self.expect({"roof/CMakeLists.txt": "add_executable(roof picture.cpp)\n"
                                            "target_link_libraries(roof PRIVATE test_support)\n"},
                    "roof/CMakeLists.txt: roof links test_support, which belongs to no room")

    def test_finds_a_row_that_knows_a_row_below_it(self):
        table = [rooms.Room("ground", ["ground"], ["roof"]), rooms.Room("roof", ["roof"], [])]
        self.assertEqual(list(rooms.table_faults(table)),
                         ["the table: ground knows roof, which does not stand above it"])

    def test_draws_all_arrows(self):
        arrows = {("roof", "ground"): 2}
        self.assertIn("roof       0 files  -> ground 2",
                      rooms.picture(TABLE, arrows, dict.fromkeys([r.name for r in TABLE], 0)))
        self.assertIn('"roof" -> "ground" [label="2"];',
                      rooms.dot(TABLE, arrows, dict.fromkeys([r.name for r in TABLE], 0)))


if __name__ == "__main__":
    unittest.main()
