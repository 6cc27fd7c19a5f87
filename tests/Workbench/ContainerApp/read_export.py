#!/usr/bin/env python3
"""read_export.py READER FILE  reads an exported file as somebody else's program does, and prints what it finds as
JSON. Whatever is not as the format wants it ends in an exception and no output."""

import json
import subprocess
import sys
import xml.etree.ElementTree as ElementTree
from fractions import Fraction


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def well_formed(path):
    run("xmllint", "--noout", path)
    return ElementTree.parse(path).getroot()


def whole(fraction):
    if fraction.denominator != 1:
        raise ValueError(f"{fraction} is not on the grid of frames")
    return fraction.numerator


def fcpxml(path):
    root = well_formed(path)
    if open(path, encoding="utf-8").read().splitlines()[1] != "<!DOCTYPE fcpxml>":
        raise ValueError("no document type")
    sequence, = root.findall("./event/project/sequence")
    gap, = sequence.findall("./spine/gap")
    media, = root.findall("./resources/format[@id='" + sequence.get("format") + "']")

    def time(text):
        if not text.endswith("s"):
            raise ValueError(f"{text} is no time")
        return Fraction(text[:-1])

    frame = time(media.get("frameDuration"))
    return {
        "version": root.get("version"),
        "frameDuration": media.get("frameDuration"),
        "name": root.find("./event/project").get("name"),
        "tcFormat": sequence.get("tcFormat"),
        "first": whole(time(sequence.get("tcStart")) / frame),
        "offset": whole(time(gap.get("offset")) / frame),
        "length": whole(time(gap.get("duration")) / frame),
        "sequenceLength": whole(time(sequence.get("duration")) / frame),
        "markers": [{
            "frame": whole((time(marker.get("start")) - time(gap.get("start"))) / frame),
            "frames": whole(time(marker.get("duration")) / frame),
            "start": marker.get("start"),
            "value": marker.get("value"),
            "note": marker.get("note"),
            "completed": marker.get("completed"),
        } for marker in gap.findall("./marker")],
    }


print(json.dumps({"fcpxml": fcpxml}[sys.argv[1]](sys.argv[2])))
