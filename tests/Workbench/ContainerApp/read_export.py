#!/usr/bin/env python3
"""read_export.py READER FILE [RATE FORM]  reads an exported file as somebody else's program does, and prints what it finds as
JSON. Whatever is not as the format wants it ends in an exception and no output."""

import csv
import html
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree
from fractions import Fraction


def run(*command, environment=None):
    return subprocess.run(command, check=True, capture_output=True, text=True, timeout=60,
                          env=os.environ | (environment or {})).stdout


def well_formed(path):
    run("xmllint", "--noout", path)
    return ElementTree.parse(path).getroot()


def whole(fraction):
    if fraction.denominator != 1:
        raise ValueError(f"{fraction} is not on the grid of frames")
    return fraction.numerator


def fcpxml(path, folder):
    del folder
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


# What no test needs, and what takes melt longer to load than to work.
LEFT_OUT = ":".join(f"libmlt{name}" for name in (
    "decklink", "frei0r", "glaxnimate", "jackrack", "movit", "opencv", "qt", "rtaudio", "sdl", "sdl2", "sox", "xine"))


def melt(*arguments):
    return run("melt", *arguments, environment={"MLT_XML_DEEP": "1", "MLT_REPOSITORY_DENY": LEFT_OUT})


def of_mlt(document, folder, time_format):
    """What MLT makes of a project: the project as it writes it again, with times in another form."""
    source, target = folder / "in.mlt", folder / "out.mlt"
    source.write_text(document, encoding="utf-8")
    melt(str(source), "-consumer", f"xml:{target}", f"time_format={time_format}", "store=shotcut")
    return well_formed(target)


def by_mlt(times, rate, time_format, folder):
    """Times of any kind in another form, as MLT converts them."""
    entries = "".join(f'<entry producer="black" in="{time}" out="{time}"/>' for time in times)
    project = of_mlt(
        f'<mlt LC_NUMERIC="C"><profile width="64" height="36" sample_aspect_num="1" sample_aspect_den="1" '
        f'display_aspect_num="16" display_aspect_den="9" frame_rate_num="{rate.numerator}" '
        f'frame_rate_den="{rate.denominator}"/>'
        f'<producer id="black" in="0" out="2147483640"><property name="length">2147483641</property>'
        f'<property name="resource">0</property><property name="mlt_service">color</property></producer>'
        f'<playlist id="times">{entries}</playlist><tractor id="all"><track producer="times"/></tractor></mlt>',
        folder, time_format)
    entries = project.findall("./playlist[@id='times']/entry")
    if len(entries) != len(times):
        raise ValueError("MLT has not read every time")
    return [entry.get("in") for entry in entries]


def properties_of(element):
    return {child.get("name"): child.text or "" for child in element.findall("./property")}


def opened(path, folder):
    """A project as MLT has opened it."""
    project = of_mlt(pathlib.Path(path).read_text(encoding="utf-8"), folder, "frames")
    profile = project.find("./profile")
    timeline, = [each for each in project.findall("./tractor") if properties_of(each).get("shotcut") == "1"]
    markers = timeline.findall("./properties[@name='shotcut:markers']/properties")
    return {"rate": profile.get("frame_rate_num") + "/" + profile.get("frame_rate_den"),
            "length": int(timeline.get("out")) + 1, "markers": [properties_of(each) for each in markers]}


def shotcut(path, folder):
    """The same with the times of the markers in frames."""
    project = opened(path, folder)
    times = [marker[key] for marker in project["markers"] for key in ("start", "end")]
    frames = iter(by_mlt(times, Fraction(project["rate"]), "frames", folder))
    for marker in project["markers"]:
        marker["start"], marker["end"] = int(next(frames)), int(next(frames))
    return project


def decoded(path, folder):
    """How many pictures MLT renders, and how fast."""
    source, target = folder / "decoded.mlt", folder / "decoded.mov"
    source.write_bytes(pathlib.Path(path).read_bytes())
    melt(str(source), "-consumer", f"avformat:{target}", "vcodec=mpeg4", "an=1", "real_time=-1")
    stream, = json.loads(run("ffprobe", "-v", "error", "-count_frames", "-show_streams", "-of", "json",
                             str(target)))["streams"]
    return {"frames": int(stream["nb_read_frames"]), "rate": stream["r_frame_rate"]}


def kdenlive(path, folder):
    del folder
    return json.loads(pathlib.Path(path).read_text(encoding="utf-8"))


def table(path, folder):
    del folder
    csv.field_size_limit(1_000_000)
    with open(path, encoding="utf-8-sig", newline="") as file:
        return list(csv.DictReader(file, strict=True))


EVENT = re.compile(r"(\d{3})  AX       V     C        (\S{11}) (\S{11}) (\S{11}) (\S{11})")
MARKER = re.compile(r" ([^|]*) \|C:(\w+) \|M:([^|]*) \|D:(\d+)")
LOCATOR = re.compile(r"\* LOC: (\S{11}) ([A-Z]+) (.*)")


def edl(path, folder):
    text = pathlib.Path(path).read_bytes().decode("ascii")
    if text.count("\n") != text.count("\r\n") or text.count("\r") != text.count("\n"):
        raise ValueError("a line does not end in CRLF")
    title, mode, blank, *lines = text.removesuffix("\r\n").split("\r\n")
    if blank or len(lines) % 3:
        raise ValueError("the list is not made of events of three lines")
    events = []
    for number, (event, marker, locator) in enumerate(zip(*[iter(lines)] * 3), 1):
        place, begin, end, record, record_end = EVENT.fullmatch(event).groups()
        note, colour, name, frames = MARKER.fullmatch(marker).groups()
        label, locator_colour, locator_name = LOCATOR.fullmatch(locator).groups()
        if (int(place), record, record_end, label, locator_name) != (number, begin, end, begin, name):
            raise ValueError(f"event {number} contradicts itself")
        events.append({"label": begin, "end": end, "note": note, "colour": colour, "name": name,
                       "frames": int(frames), "locator": locator_colour})
    return {"title": title.removeprefix("TITLE: "), "mode": mode.removeprefix("FCM: "), "events": events}


def labels(path, folder):
    """The labels of a list of frames, at the rate and of the kind of the command line."""
    frames = json.loads(pathlib.Path(path).read_text())
    return by_mlt(frames, Fraction(sys.argv[3]), sys.argv[4], folder)


def webvtt(path, folder):
    packets = json.loads(run("ffprobe", "-v", "error", "-f", "webvtt", "-show_packets", "-of", "json",
                             path))["packets"]
    # Decoded, the texts would be those of another format: the muxer copies them as they are.
    run("ffmpeg", "-v", "error", "-f", "webvtt", "-i", path, "-c", "copy", "-f", "webvtt", str(folder / "x.vtt"))
    blocks = (folder / "x.vtt").read_text(encoding="utf-8").split("\n\n")[1:]
    texts = [html.unescape(block.split("\n", 1)[1].rstrip("\n")) for block in blocks if block.strip()]
    return {"cues": [[packet["pts"], packet["pts"] + packet["duration"]] for packet in packets], "texts": texts}


def chapters(path, folder):
    """The chapters of the file itself, and those of a film that they were muxed into without coding anything."""
    def probed(file):
        return json.loads(run("ffprobe", "-v", "error", "-show_chapters", "-of", "json", file))["chapters"]

    film, with_chapters = str(folder / "film.mkv"), str(folder / "with.mkv")
    run("ffmpeg", "-v", "error", "-f", "lavfi", "-i", "color=s=64x36:d=0.2", film)
    run("ffmpeg", "-v", "error", "-i", film, "-f", "ffmetadata", "-i", path, "-map", "0", "-map_metadata", "1",
        "-map_chapters", "1", "-codec", "copy", with_chapters)
    return {"own": [{"base": each["time_base"], "start": each["start"], "end": each["end"],
                     "title": each.get("tags", {}).get("title")} for each in probed(path)],
            "muxed": [{"nanoseconds": each["start"], "base": each["time_base"],
                       "title": each.get("tags", {}).get("title")} for each in probed(with_chapters)]}


READERS = {reader.__name__: reader
           for reader in (table, fcpxml, opened, shotcut, decoded, kdenlive, edl, labels, webvtt, chapters)}
with tempfile.TemporaryDirectory() as temporary:
    print(json.dumps(READERS[sys.argv[1]](sys.argv[2], pathlib.Path(temporary))))
