#!/usr/bin/python3
"""The clip maker, and how the tour tells one frame from its neighbours."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

TOOLS = pathlib.Path(__file__).resolve().parents[3] / "tools"
sys.path.insert(0, str(TOOLS))

from touring import pictures  # noqa: E402


class Clip(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory(prefix="zelvix-clip.")
        cls.path = pathlib.Path(cls.folder.name) / "clip.mp4"
        subprocess.run([TOOLS / "make-clip", cls.path], check=True)
        cls.film = pictures.Film(cls.path)

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def shot(self, frame, size):
        """A picture of a screen that shows the frame, scaled, off the corner."""
        path = pathlib.Path(self.folder.name) / "shot.png"
        subprocess.run(["ffmpeg", "-nostdin", "-v", "error", "-y", "-i", self.path, "-vf",
                        f"select=eq(n\\,{frame}),scale={size[0]}:{size[1]},pad=iw+300:ih+200:50:40:gray",
                        "-frames:v", "1", path], check=True)
        return pictures.grain_of(path, (50, 40, *size))

    def test_has_the_rate_length_and_shape_that_were_asked_for(self):
        self.assertEqual((self.film.numerator, self.film.denominator), (30000, 1001))
        self.assertEqual(self.film.frames, 120)
        self.assertAlmostEqual(self.film.aspect, 16 / 9)

    def test_has_a_tone(self):
        facts = subprocess.run(["ffprobe", "-v", "error", "-select_streams", "a", "-show_entries", "stream=codec_name",
                                "-of", "csv=p=0", self.path], check=True, capture_output=True).stdout
        self.assertEqual(facts.strip(), b"aac")

    def test_takes_another_size_and_rate(self):
        path = pathlib.Path(self.folder.name) / "small.mp4"
        subprocess.run([TOOLS / "make-clip", path, "1", "320x180", "25"], check=True)
        film = pictures.Film(path)
        self.assertEqual((film.frames, film.rate), (25, 25))
        self.assertEqual([pictures.read_bars(grain) for grain in film.grains(0, 24).values()], list(range(25)))

    def test_leaves_nothing_but_the_clip(self):
        self.assertEqual([path.name for path in self.path.parent.glob(".make-clip*")], [])

    def test_tells_each_frame_by_its_bars(self):
        grains = self.film.grains(0, 119)
        self.assertEqual({number: pictures.read_bars(grain) for number, grain in grains.items()},
                         {number: number for number in range(120)})

    def test_finds_no_bars_in_another_picture(self):
        self.assertIsNone(pictures.read_bars(bytes(pictures.GRAIN[0] * pictures.GRAIN[1])))
        self.assertIsNone(pictures.read_bars(bytes(range(160)) * 90))

    def test_tells_a_frame_from_its_neighbours_by_likeness(self):
        for frame in [2, 30, 61, 117]:
            matches = pictures.best_match(self.shot(frame, (812, 457)), self.film.grains(frame - 2, frame + 2))
            self.assertEqual(matches[0][1], frame)
            self.assertGreater(matches[0][0], matches[1][0] + 0.01)

    def test_clips_the_neighbours_to_the_film(self):
        self.assertEqual(list(self.film.grains(-2, 2)), [0, 1, 2])
        self.assertEqual(list(self.film.grains(117, 121)), [117, 118, 119])

    def test_knows_the_frame_at_a_time(self):
        for frame in range(120):
            self.assertEqual(self.film.frame_at(frame * 1001 / 30000), frame)

    def test_says_why_a_file_is_no_film(self):
        with self.assertRaises(pictures.NoFilm):
            pictures.Film(TOOLS / "make-clip")


class Likeness(unittest.TestCase):
    def test_does_not_mind_other_tones(self):
        one = bytes(range(0, 200))
        self.assertAlmostEqual(pictures.likeness(one, bytes(value // 2 + 30 for value in one)), 1, places=2)

    def test_knows_flat_pictures(self):
        self.assertEqual(pictures.likeness(b"\x05" * 9, b"\x05" * 9), 1)
        self.assertEqual(pictures.likeness(b"\x05" * 9, b"\x06" * 9), 0)
        self.assertEqual(pictures.likeness(b"\x05" * 9, bytes(range(9))), 0)


class Fitting(unittest.TestCase):
    def test_centres_the_picture_in_its_area(self):
        self.assertEqual(pictures.fitted(2, (10, 20, 400, 400)), (10, 120, 400, 200))
        self.assertEqual(pictures.fitted(0.5, (10, 20, 400, 400)), (110, 20, 200, 400))


if __name__ == "__main__":
    unittest.main()
