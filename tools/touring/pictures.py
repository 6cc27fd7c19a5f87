"""Which frame of a film is on a picture of the screen, told by the picture alone."""

import json
import math
import subprocess

GRAIN = (160, 90)  # what pictures are compared at
BITS = 10  # of the bars that tools/make-clip draws


class NoFilm(Exception):
    """The file is no video; the text says why."""


class Film:
    """A video file, as other tools than ours read it."""

    def __init__(self, path):
        self.path, self.name = str(path), path.name
        command = ["ffprobe", "-v", "error", "-count_packets", "-select_streams", "v:0", "-of", "json",
                   "-show_entries", "stream=r_frame_rate,nb_read_packets,width,height,sample_aspect_ratio",
                   self.path]
        result = subprocess.run(command, capture_output=True, check=False, timeout=120)
        facts = json.loads(result.stdout or "{}")
        if not facts.get("streams"):
            raise NoFilm((result.stderr.decode(errors="replace").strip() or "it holds no video").splitlines()[-1])
        stream = facts["streams"][0]
        self.numerator, self.denominator = (int(part) for part in stream["r_frame_rate"].split("/"))
        self.frames = int(stream["nb_read_packets"])
        shape = stream.get("sample_aspect_ratio", "1:1").replace("0:1", "1:1").split(":")
        self.aspect = stream["width"] * int(shape[0]) / (stream["height"] * int(shape[1]))

    @property
    def rate(self):
        return self.numerator / self.denominator

    @property
    def seconds(self):
        return self.frames / self.rate

    def frame_at(self, seconds):
        return int(seconds * self.rate + 1e-3)

    def grains(self, first, last):
        """The frames from `first` to `last` as rows of grey bytes, by their numbers."""
        first, last = max(first, 0), min(last, self.frames - 1)
        select = f"select=between(n\\,{first}\\,{last}),scale={GRAIN[0]}:{GRAIN[1]}:flags=area,format=gray"
        command = ["ffmpeg", "-nostdin", "-v", "error", "-i", self.path, "-map", "0:v:0", "-vf", select,
                   "-fps_mode", "passthrough", "-f", "rawvideo", "-"]
        data = subprocess.run(command, capture_output=True, check=True, timeout=300).stdout
        size = GRAIN[0] * GRAIN[1]
        return {first + index: data[index * size:(index + 1) * size] for index in range(len(data) // size)}


def grain_of(picture, area):
    """A part of a picture file, x, y, width and height, as rows of grey bytes."""
    x, y, width, height = (round(value) for value in area)
    command = ["convert", str(picture), "-crop", f"{width}x{height}+{x}+{y}", "+repage", "-filter", "Box",
               "-resize", f"{GRAIN[0]}x{GRAIN[1]}!", "-colorspace", "gray", "-depth", "8", "gray:-"]
    return subprocess.run(command, capture_output=True, check=True, timeout=60).stdout


def likeness(one, other):
    """The correlation of two rows of grey bytes: 1 for the same picture, also when a player shows it in other tones."""
    count = len(one)
    mean, other_mean = sum(one) / count, sum(other) / count
    deviation = math.sqrt(sum((a - mean) ** 2 for a in one) * sum((b - other_mean) ** 2 for b in other))
    if deviation == 0:
        return 1.0 if mean == other_mean else 0.0
    return sum((a - mean) * (b - other_mean) for a, b in zip(one, other)) / deviation


def best_match(grain, frames):
    """The frames in the order of their likeness, the most alike first: pairs of likeness and number."""
    return sorted(((likeness(grain, frame), number) for number, frame in frames.items()), reverse=True)


def fitted(aspect, area):
    """Where a picture of that shape lies in an area that it fills as far as it can."""
    x, y, width, height = area
    if width / height > aspect:
        inner = height * aspect
        return x + (width - inner) / 2, y, inner, height
    inner = width / aspect
    return x, y + (height - inner) / 2, width, inner


def read_bars(grain):
    """The frame number in the bars of a clip of ours; None when the picture has no such bars."""
    row = GRAIN[1] - GRAIN[1] // 24 - 1
    cell = GRAIN[0] / (BITS + 2)
    levels = [grain[row * GRAIN[0] + int((index + 0.5) * cell)] for index in range(BITS + 2)]
    if levels[0] < 200 or levels[-1] > 55 or any(55 <= level <= 200 for level in levels):
        return None
    return int("".join("1" if level > 200 else "0" for level in levels[1:-1]), 2)
