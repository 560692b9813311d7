"""The frei0r plug-in in FFmpeg, against what the command makes of the same frames."""
import ctypes
import os
import pathlib
import tempfile
import unittest

import numpy

import inside

# FFmpeg pads the rows of other widths, of which its frei0r filter does not tell the plug-in.
WIDTH, HEIGHT, FRAMES = 336, 183, 6
ENVIRONMENT = dict(os.environ, FREI0R_PATH=str(inside.BUILD / "lib" / "frei0r-1"))
LOOKS = ["Effect_VSCO_A2", "Effect_QingLiang", "Effect_ChenGuang", "Effect_HuiYi", "Effect_NiGuang",
         "Effect_LengLan", "NewGt_1", "Effect_ManHua", "Effect_NewCaiQian", "Effect_RouGuang"]


class Frei0r(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.folder.cleanup)
        cls.path = pathlib.Path(cls.folder.name)
        cls.frames = numpy.stack([inside.some_picture(WIDTH, HEIGHT, seed) for seed in range(FRAMES)])
        (cls.path / "clip.rgb").write_bytes(cls.frames.tobytes())
        size = ["-f", "rawvideo", "-pix_fmt", "rgb24", "-s", f"{WIDTH}x{HEIGHT}"]
        # Lossless, so that the decoder gives back every byte.
        inside.run("ffmpeg", "-v", "error", *size, "-i", cls.path / "clip.rgb", "-c:v", "ffv1",
                   "-pix_fmt", "bgra", cls.path / "clip.mkv")

    def filtered(self, parameters):
        out = inside.run("ffmpeg", "-v", "error", "-i", self.path / "clip.mkv",
                         "-vf", f"frei0r=tintwerk:{parameters}", "-f", "rawvideo", "-pix_fmt", "rgb24", "-",
                         env=ENVIRONMENT)
        return numpy.frombuffer(out, numpy.uint8).reshape(FRAMES, HEIGHT, WIDTH, 3)

    def by_command(self, look, *options):
        given = self.path / "frames"
        result = self.path / "results" / look
        given.mkdir(exist_ok=True)
        for number, frame in enumerate(self.frames):
            inside.write_picture(given / f"{number}.ppm", frame)
        inside.run(inside.COMMAND, "apply", look, given, "-o", result, *options)
        return numpy.stack([inside.read_picture(result / f"{n}.ppm") for n in range(FRAMES)])

    def test_gives_every_frame_the_bytes_of_the_command(self):
        for look in LOOKS:
            numpy.testing.assert_array_equal(self.filtered(look), self.by_command(look), look)

    def test_takes_title_number_and_strength(self):
        expected = self.by_command("Effect_HuiYi", "--strength", "25")
        library = ctypes.CDLL(str(inside.BUILD / "lib" / "libtintwerk.so"))
        library.tintwerk_look_at.restype = library.tintwerk_find_look.restype = ctypes.c_void_p
        look = library.tintwerk_find_look(b"Effect_HuiYi")
        number = next(n for n in range(library.tintwerk_look_count()) if library.tintwerk_look_at(n) == look)
        for look in ["Faded memory", "faded-memory", number]:
            numpy.testing.assert_array_equal(self.filtered(f"{look}|0.25"), expected)
        numpy.testing.assert_array_equal(self.filtered("Faded memory|0"), self.frames)

    def test_frames_of_an_unknown_look_pass_as_they_are(self):
        for look in ["no such look", "9999", "-1"]:
            numpy.testing.assert_array_equal(self.filtered(look), self.frames)

    def test_grain_stands_still(self):
        still = numpy.broadcast_to(self.frames[:1], self.frames.shape)
        (self.path / "still.rgb").write_bytes(still.tobytes())
        out = inside.run("ffmpeg", "-v", "error", "-f", "rawvideo", "-pix_fmt", "rgb24", "-s", f"{WIDTH}x{HEIGHT}",
                         "-i", self.path / "still.rgb", "-vf", "frei0r=tintwerk:NewLOMO_3", "-f", "rawvideo",
                         "-pix_fmt", "rgb24", "-", env=ENVIRONMENT)
        frames = numpy.frombuffer(out, numpy.uint8).reshape(self.frames.shape)
        self.assertTrue((frames == frames[:1]).all())
        self.assertTrue((frames[0] != still[0]).any())


if __name__ == "__main__":
    unittest.main()
