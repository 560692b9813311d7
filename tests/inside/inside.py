"""What the tests in this folder share. Each is a program of its own; `./dev inside` runs them all."""
import pathlib
import re
import subprocess
import sys

import numpy

SOURCE = pathlib.Path(__file__).resolve().parents[2]
BUILD = SOURCE / "build" / "release"
RESOURCES = BUILD / "share" / "tintwerk"
COMMAND = BUILD / "bin" / "tintwerk"


def run(*arguments, **options):
    """Runs a program, and shows what it says if it fails."""
    done = subprocess.run([str(a) for a in arguments], capture_output=True, **options)
    if done.returncode != 0:
        sys.stderr.write(done.stderr.decode(errors="replace"))
        raise RuntimeError(f"{arguments[0]} gives {done.returncode}")
    return done.stdout


def write_picture(path, colours):
    """Writes an array of (height, width, 3) as a PPM."""
    height, width, _ = colours.shape
    path.write_bytes(b"P6\n%d %d\n255\n" % (width, height) + colours.tobytes())


def read_picture(path):
    content = path.read_bytes()
    header = re.match(rb"P6\s(?:#.*\n)*(\d+) (\d+)\s255\s", content)
    width, height = int(header[1]), int(header[2])
    return numpy.frombuffer(content, numpy.uint8, 3 * width * height, header.end()).reshape(height, width, 3)


def some_picture(width, height, seed=1):
    """Smooth colours with a little noise."""
    y, x = numpy.mgrid[0:height, 0:width]
    waves = numpy.stack([128 + 100 * numpy.sin(x / (9 + seed) + c + seed) * numpy.cos(y / (13 + c))
                         for c in range(3)], axis=2)
    noise = numpy.random.default_rng(seed).integers(-20, 21, waves.shape)
    return numpy.clip(waves + noise, 0, 255).astype(numpy.uint8)
