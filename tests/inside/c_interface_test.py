"""The C interface called from Python, against what the command makes of the same pictures."""
import concurrent.futures
import ctypes
import json
import os
import pathlib
import re
import sys
import tempfile
import unittest

import numpy

import inside

BGRA, RGBA = 0, 1
OK, STOPPED, BAD_STRENGTH, UNKNOWN_LOOK = 0, 1, 6, 7
LOOKS = ["Effect_HuiYi", "Effect_VSCO_A2", "quxian_7", "Effect_LengLan", "Effect_SuMiao", "paper"]

library = ctypes.CDLL(str(inside.BUILD / "lib" / "libtintwerk.so"))
Progress = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_float, ctypes.c_void_p)


class Category(ctypes.Structure):
    _fields_ = [("id", ctypes.c_char_p), ("title", ctypes.c_char_p)]


class Look(ctypes.Structure):
    _fields_ = [("name", ctypes.c_char_p), ("title", ctypes.c_char_p),
                ("category", ctypes.POINTER(Category)), ("description", ctypes.c_char_p),
                ("draws_random_numbers", ctypes.c_int)]


size, pointer, string = ctypes.c_ssize_t, ctypes.c_void_p, ctypes.c_char_p
library.tintwerk_look_at.restype = ctypes.POINTER(Look)
library.tintwerk_apply.argtypes = [string, pointer, ctypes.c_int, ctypes.c_int, size, ctypes.c_int,
                                   ctypes.c_double, string, Progress, pointer]
library.tintwerk_prepare.argtypes = [string, ctypes.c_int, ctypes.c_int, string,
                                     ctypes.POINTER(pointer)]
library.tintwerk_prepared_apply.argtypes = [pointer, pointer, size, ctypes.c_int, ctypes.c_double,
                                            Progress, pointer]
library.tintwerk_prepared_free.argtypes = [pointer]


def apply(look, picture, order=RGBA, strength=1.0, progress=Progress()):
    height, width, _ = picture.shape
    return library.tintwerk_apply(look.encode(), picture.ctypes.data, width, height,
                                  picture.strides[0], order, strength, None, progress, None)


class CInterface(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.colours = inside.some_picture(97, 61)
        alpha = numpy.arange(97 * 61, dtype=numpy.uint8).reshape(61, 97, 1)
        self.picture = numpy.concatenate([self.colours, alpha], axis=2)

    def by_command(self, look, *options):
        folder = pathlib.Path(self.folder.name)
        inside.write_picture(folder / "in.ppm", self.colours)
        inside.run(inside.COMMAND, "apply", look, folder / "in.ppm", "-o", folder / "out.ppm", *options)
        return inside.read_picture(folder / "out.ppm")

    def test_the_list_is_that_of_the_command(self):
        told = json.loads(inside.run(inside.COMMAND, "list", "--json"))
        told = {look["name"]: look for look in told}
        self.assertEqual(len(told), library.tintwerk_look_count())
        for number in range(library.tintwerk_look_count()):
            look = library.tintwerk_look_at(number).contents
            other = told[look.name.decode()]
            self.assertEqual(look.title.decode(), other["title"])
            self.assertEqual(look.description.decode(), other["description"])

    def test_gives_the_pixels_of_the_command(self):
        for look in LOOKS:
            for strength in (1.0, 0.3):
                expected = self.by_command(look, "--strength", f"{100 * strength:g}")
                result = self.picture.copy()
                self.assertEqual(apply(look, result, RGBA, strength), OK)
                numpy.testing.assert_array_equal(result[:, :, :3], expected, look)
                numpy.testing.assert_array_equal(result[:, :, 3], self.picture[:, :, 3], look)

    def test_works_on_a_part_of_an_array_in_either_order(self):
        expected = self.by_command("Effect_HuiYi")
        for order, channels in ((RGBA, [0, 1, 2, 3]), (BGRA, [2, 1, 0, 3])):
            whole = numpy.full((70, 120, 4), 77, numpy.uint8)
            part = whole[5:66, 11:108]
            part[:] = self.picture[:, :, channels]
            self.assertEqual(apply("Effect_HuiYi", part, order), OK)
            numpy.testing.assert_array_equal(part[:, :, channels][:, :, :3], expected)
            part[:] = 77
            self.assertTrue((whole == 77).all())

    def test_prepared_looks_serve_many_threads(self):
        for look in LOOKS:
            expected = self.picture.copy()
            self.assertEqual(apply(look, expected), OK)
            prepared = pointer()
            self.assertEqual(library.tintwerk_prepare(look.encode(), 97, 61, None, prepared), OK)

            def work(_):
                result = self.picture.copy()
                error = library.tintwerk_prepared_apply(prepared, result.ctypes.data, 4 * 97, RGBA, 1,
                                                        Progress(), None)
                return error == OK and (result == expected).all()

            with concurrent.futures.ThreadPoolExecutor(4) as pool:
                self.assertTrue(all(pool.map(work, range(24))), look)
            library.tintwerk_prepared_free(prepared)

    def test_progress_is_heard_and_stops(self):
        heard = []
        result = self.picture.copy()
        hear = Progress(lambda position, _: heard.append(position) or len(heard) < 3)
        self.assertEqual(apply("quxian_7", result, progress=hear), STOPPED)
        self.assertEqual(len(heard), 3)
        numpy.testing.assert_array_equal(result, self.picture)
        self.assertEqual(apply("no such look", result), UNKNOWN_LOOK)
        self.assertEqual(apply("paper", result, strength=float("nan")), BAD_STRENGTH)

    def test_the_examples_of_the_documentation_work(self):
        page = (inside.SOURCE / "docs" / "c.md").read_text()
        libraries = str(inside.BUILD / "lib")
        environment = dict(os.environ, LD_LIBRARY_PATH=libraries)
        blocks = {language: re.search(rf"```{language}\n(.*?)```", page, re.S)[1] for language in ("c", "python")}
        check = "\np = numpy.full((9, 9, 4), 128, numpy.uint8)\napply('80S', p[:, 2:])\n" \
                "assert (p[:, :2] == 128).all() and (p[:, 2:, :3] != 128).any()\n"
        inside.run(sys.executable, "-c", blocks["python"] + check, env=environment)
        source = pathlib.Path(self.folder.name) / "example.c"
        source.write_text(blocks["c"])
        inside.run("cc", "-std=c99", "-Wall", "-Wextra", "-Werror", source, "-I", inside.SOURCE / "include",
                   "-L", libraries, "-ltintwerk", "-o", source.with_suffix(""))
        shown = inside.run(source.with_suffix(""), env=environment).decode()
        self.assertEqual(len(shown.splitlines()), library.tintwerk_look_count())


if __name__ == "__main__":
    unittest.main()
