"""What the reference of the process file shows beside the program's own table of arguments: lines to
begin with, values that are tried, and processes for the pictures of effects."""

# Lines that are accepted; together those of a command have all of its arguments.
EXAMPLES = {
    "settings": ["settings -version 4 -N 600 -angle 30 -use_nm -heights -legend"],
    "location": ["location -x 0 -y 1.5 -dx 4 -dy 2"],
    "gds": ["gds -cell LINES"],
    "deposition": [
        "deposition -name Oxide -type oxide -thickness 500 -sc 0.5 -color 200 200 255 100 -alpha 0.5",
        "deposition -name Oxide -type oxide -thickness 500 -sc 0.5 -scolor navy"],
    "coating": [
        "coating -name Glass -type glass -thickness 500 -dop 0.5 -color 214 230 244 100 -alpha 0.5",
        "coating -name Glass -type glass -thickness 500 -scolor navy"],
    "photo": ["photo -name Gate -mask_id 66/20,81 -type 1 -res 0.1 -taper 85 -thickness 700 "
              "-bias -0.02 -shift 0.1 0.05"],
    "etch": ["etch -name Gate -targets film -depth 300 -iso 0.1 -resist 0.5"],
    "release": ["release -targets film -name HF"],
    "strip": ["strip -name Gate"],
    "polish": ["polish -name CMP -stop film -over 20", "polish -name CMP -stop film -above 200",
               "polish -name CMP -level 640"],
    "implant": [
        "implant -name NWell -type nsilicon -targets film -depth 600 -color 158 196 160 100 -alpha 0.5",
        "implant -name NWell -type nsilicon -targets film -depth 600 -scolor navy"],
}

# Values of an argument: those at its limits that are accepted, and those that are refused. "" is a
# value that is missing. That a needed argument is left out is tried without being listed.
WORDS = (["a"], ["", "-x"])
POSITIVE = (["1", "1e-3", "1e6"], ["0", "-1", "x", ""])
NOT_NEGATIVE = (["0", "1e6"], ["-1", "x", ""])
SHARE = (["0.0", "1.0"], ["-0.1", "1.1", "x", ""])
COLOR = (["0 0 0 0", "255 255 255 100"], ["256 0 0 0", "0 0 0 101", "1 2 3", "a 2 3 4", ""])
NAMED_COLOR = (["navy"], ["nocolor", ""])
TARGETS = (["film", "film film"], ["nofilm"])
LENGTH = (["-10", "0", "1e3"], ["x", ""])
SIZE = (["0.001", "1e3"], ["0", "-1", "x", ""])
VALUES = {
    ("settings", "-version"): (["4"], ["3", "x", ""]),
    ("settings", "-N"): (["200", "2000"], ["199", "2001", "x", ""]),
    ("settings", "-angle"): (["0", "90"], ["91", "x", ""]),
    ("location", "-x"): LENGTH, ("location", "-y"): LENGTH,
    ("location", "-dx"): SIZE, ("location", "-dy"): SIZE,
    ("gds", "-cell"): WORDS,
    ("photo", "-mask_id"): (["0", "65535", "1/2", "1,2/3"], ["65536", "1/", "1.2", "x", ""]),
    ("photo", "-type"): (["0", "1"], ["2", "x", ""]),
    ("photo", "-res"): (["0", "0.0", "5"], ["-1", "x", ""]),
    ("photo", "-taper"): (["1", "89", "90"], ["8.5", "x", ""]),
    ("photo", "-bias"): (["-1", "0", "1"], ["x", ""]),
    ("photo", "-shift"): (["-1 1"], ["1", "x", ""]),
    ("deposition", "-sc"): (["0.0", "0.1", "1.0"], ["1.1", "x", ""]),
    ("coating", "-dop"): SHARE,
    ("etch", "-iso"): (["0.0", "5.0"], ["-0.1", "5.1", "x", ""]),
    ("etch", "-resist"): SHARE,
    ("polish", "-stop"): TARGETS, ("polish", "-over"): NOT_NEGATIVE,
    ("polish", "-above"): NOT_NEGATIVE, ("polish", "-level"): NOT_NEGATIVE,
}
for _command in ("deposition", "coating", "implant"):
    VALUES[_command, "-color"], VALUES[_command, "-scolor"] = COLOR, NAMED_COLOR
    VALUES[_command, "-alpha"], VALUES[_command, "-type"] = SHARE, WORDS
for _command in ("deposition", "coating", "photo"):
    VALUES[_command, "-thickness"] = POSITIVE
for _command in ("deposition", "coating", "photo", "etch", "release", "strip", "polish", "implant"):
    VALUES[_command, "-name"] = WORDS
for _command in ("etch", "implant"):
    VALUES[_command, "-depth"] = NOT_NEGATIVE
for _command in ("etch", "release", "implant"):
    VALUES[_command, "-targets"] = TARGETS

# Lines of which the last one is refused for what stood before it, or for what it holds in all.
SEQUENCES = [
    ("deposition", "-name", ["deposition -name A1 -type a -thickness 1 -color 0 0 0 0",
                             "deposition -name A1 -type a -thickness 1 -color 0 0 0 0"]),
    ("coating", "-name", ["coating -name A2 -type a -thickness 1 -scolor navy",
                          "coating -name A2 -type a -thickness 1 -scolor navy"]),
    ("implant", "-name", ["implant -name A3 -type a -targets film -depth 1 -scolor navy",
                          "implant -name A3 -type a -targets film -depth 1 -scolor navy"]),
    ("etch", "-name", ["etch -name A4 -targets film -depth 1 -iso 0",
                       "etch -name A4 -targets film -depth 1 -iso 0"]),
    ("release", "-name", ["release -name A5 -targets film", "release -name A5 -targets film"]),
    ("polish", "-name", ["polish -name A6 -level 1", "polish -name A6 -level 1"]),
    ("strip", "-name", ["photo -name P -mask_id 1 -type 0 -res 0 -thickness 1", "strip -name A7",
                        "photo -name P -mask_id 1 -type 0 -res 0 -thickness 1", "strip -name A7"]),
    ("photo", "", ["photo -name P -mask_id 1 -type 0 -res 0 -thickness 1",
                   "photo -name P -mask_id 1 -type 0 -res 0 -thickness 1"]),
    ("strip", "", ["strip -name A9", "strip -name A8"]),
    ("deposition", "-sc", ["deposition -name A11 -type a -thickness 1 -scolor navy -sc 0.5"]),
    ("polish", "-stop", ["polish -name A12 -stop film -level 3"]),
    ("polish", "-over", ["polish -name A13 -stop film -over 3 -above 3"]),
    ("polish", "-above", ["polish -name A14 -level 3 -above 3"]),
    ("release", "", ["release"]),
    ("etch", "-targets", ["etch -name A20 -depth 1 -iso 0 -targets"]),
    ("release", "-targets", ["release -name A21 -targets"]),
    ("implant", "-targets", ["implant -name A22 -type a -depth 1 -color 0 0 0 0 -targets"]),
    ("polish", "-stop", ["polish -name A23 -stop"]),
    ("deposition", "-color", ["deposition -name A24 -type a -thickness 1 -color 1 2"]),
    ("coating", "-color", ["coating -name A25 -type a -thickness 1 -color 1 2"]),
    ("photo", "-type", ["photo -name A26 -mask_id 1 -res 0 -thickness 1 -type"]),
    ("photo", "-taper", ["photo -name A27 -mask_id 1 -type 0 -res 0 -thickness 1 -taper"]),
    ("etch", "", ["etch -name A15 -targets film -depth 1 -iso 0 -dose 3"]),
    ("settings", "", ["settings -version 4", "settings -version 4"]),
    ("location", "", ["location -x 0 -y 0 -dx 1 -dy 1", "location -x 0 -y 0 -dx 1 -dy 1"]),
    ("gds", "", ["gds -cell A", "gds -cell A"]),
]

# Whole files that are refused.
FILES = [
    ("A command that there is not", "settings -version 4\ndeposit\nlocation -x 0 -y 0 -dx 1 -dy 1\n"
     "gds -cell LINES\n"),
    ("Another command in front of settings", "gds -cell LINES\nsettings -version 4\n"
     "location -x 0 -y 0 -dx 1 -dy 1\n"),
    ("One of the three is missing", "settings -version 4\n"),
]

# Texts of the reader that no line can bring about by itself, each with the reason.
UNREACHABLE = {
    "%s": "other rooms' texts, of variables",
    "Invalid -thickness argument: Thickness cannot be negative.":
        "what is not above 0 is told of before",
}

STEPS = """deposition -name Base -type base -thickness 300 -sc 1.0 -color 214 186 150 100
photo -name Base -mask_id 10 -type 1 -res 0.05 -thickness 500 -taper 89
etch -name Base -targets base -depth 320 -iso 0.0
strip -name Base
"""
FLAT = "deposition -name Base -type base -thickness 300 -sc 1.0 -color 214 186 150 100\n"
FILM = "deposition -name Film -type film -thickness 200 -sc {} -color 74 130 196 100\n"
RESIST = "photo -name Lines -mask_id 10 -type {} -res {} -thickness 400 {}\n"
ETCH = FLAT + RESIST.format(1, 0.05, "-taper 88")
GLASS = "coating -name Glass -type glass -thickness {} -dop {} -color 170 200 230 100\n"
CMP = STEPS + GLASS.format(600, 1.0)

# (command, argument): pictures, each with its caption, its steps and options of zelmo-batch
EFFECTS = {
    ("settings", "-angle"): [("-angle 10", STEPS, "--angle 10"), ("-angle 60", STEPS, "--angle 60")],
    ("settings", "-N"): [("-N 200", STEPS, "--columns 200 --window 0.9,0,0.8,0.5"),
                         ("-N 1000", STEPS, "--columns 1000 --window 0.9,0,0.8,0.5")],
    ("location", "-y"): [("-y 0", STEPS + FILM.format(1.0), ""),
                         ("-y 1.2", STEPS + FILM.format(1.0), "--window 0.2,1.2,3.2,1")],
    ("deposition", "-thickness"): [
        ("-thickness 100", STEPS + FILM.format(1.0).replace("200", "100", 1), ""),
        ("-thickness 200", STEPS + FILM.format(1.0), "")],
    ("deposition", "-sc"): [("-sc 0.1", STEPS + FILM.format(0.1), ""),
                            ("-sc 0.5", STEPS + FILM.format(0.5), ""),
                            ("-sc 1.0", STEPS + FILM.format(1.0), "")],
    ("deposition", "-alpha"): [
        ("-alpha 0.3", STEPS + FILM.format(1.0).strip() + " -alpha 0.3\n", ""),
        ("-alpha 1.0", STEPS + FILM.format(1.0), "")],
    ("coating", "-thickness"): [("-thickness 100", STEPS + GLASS.format(100, 1.0), ""),
                                ("-thickness 400", STEPS + GLASS.format(400, 1.0), "")],
    ("coating", "-dop"): [("-dop 0.0", STEPS + GLASS.format(200, 0.0), ""),
                          ("-dop 0.3", STEPS + GLASS.format(200, 0.3), ""),
                          ("-dop 1.0", STEPS + GLASS.format(200, 1.0), "")],
    ("photo", "-type"): [("-type 0 (clear)", FLAT + RESIST.format(0, 0.05, "-taper 88"), ""),
                         ("-type 1 (dark)", FLAT + RESIST.format(1, 0.05, "-taper 88"), "")],
    ("photo", "-res"): [("-res 0.0", FLAT + RESIST.format(1, 0.0, "-taper 88"), "--angle 60"),
                        ("-res 0.2", FLAT + RESIST.format(1, 0.2, "-taper 88"), "--angle 60"),
                        ("-res 0.5", FLAT + RESIST.format(1, 0.5, "-taper 88"), "--angle 60")],
    ("photo", "-taper"): [("-taper 30", FLAT + RESIST.format(1, 0.05, "-taper 30"), ""),
                          ("-taper 60", FLAT + RESIST.format(1, 0.05, "-taper 60"), ""),
                          ("-taper 90", FLAT + RESIST.format(1, 0.05, "-taper 90"), "")],
    ("photo", "-bias"): [("-bias -0.1", FLAT + RESIST.format(1, 0.05, "-taper 88 -bias -0.1"), ""),
                         ("-bias 0.1", FLAT + RESIST.format(1, 0.05, "-taper 88 -bias 0.1"), "")],
    ("photo", "-shift"): [
        ("-shift 0 0", FLAT + RESIST.format(1, 0.05, "-taper 88"), ""),
        ("-shift 0.4 -0.5", FLAT + RESIST.format(1, 0.05, "-taper 88 -shift 0.4 -0.5"), "")],
    ("etch", "-depth"): [("-depth 100", ETCH + "etch -name E -targets base -depth 100 -iso 0\n", ""),
                         ("-depth 250", ETCH + "etch -name E -targets base -depth 250 -iso 0\n", "")],
    ("etch", "-iso"): [("-iso 0.0", ETCH + "etch -name E -targets base -depth 150 -iso 0.0\n", ""),
                       ("-iso 0.5", ETCH + "etch -name E -targets base -depth 150 -iso 0.5\n", ""),
                       ("-iso 1.0", ETCH + "etch -name E -targets base -depth 150 -iso 1.0\n", "")],
    ("etch", "-resist"): [
        ("-resist 0.0", ETCH + "etch -name E -targets base -depth 250 -iso 0 -resist 0.0\n", ""),
        ("-resist 1.0", ETCH + "etch -name E -targets base -depth 250 -iso 0 -resist 1.0\n", "")],
    ("release", "-targets"): [
        ("before", STEPS + FILM.format(1.0) + GLASS.format(200, 1.0), ""),
        ("-targets film", STEPS + FILM.format(1.0) + GLASS.format(200, 1.0) +
         "release -name R -targets film\n", "")],
    ("strip", "-name"): [("before", ETCH + "etch -name E -targets base -depth 200 -iso 0\n", ""),
                         ("after", ETCH + "etch -name E -targets base -depth 200 -iso 0\n"
                          "strip -name S\n", "")],
    ("polish", "-stop"): [("before", CMP, ""),
                          ("-stop base", CMP + "polish -name C -stop base\n", "")],
    ("polish", "-over"): [("-stop base -over 100", CMP + "polish -name C -stop base -over 100\n", "")],
    ("polish", "-above"): [
        ("-stop base -above 100", CMP + "polish -name C -stop base -above 100\n", "")],
    ("polish", "-level"): [("-level 200", CMP + "polish -name C -level 200\n", "")],
    ("implant", "-depth"): [
        (f"-depth {depth}", ETCH + "implant -name N -type n -targets base "
         f"-depth {depth} -color 38 150 140 100\nstrip -name S\n", "") for depth in (50, 150)],
}
