"""Frames a second of looks in FFmpeg through the frei0r plug-in, beside FFmpeg's own lut3d with the cube of the first.

Every run reads the same raw frames and throws the results away; reading alone is the first row. One thread, then one
for each processor. The best of some runs, taken in turns, so that other work on the machine slows all rows alike.
"""
import os
import pathlib
import re
import subprocess
import sys
import tempfile

BUILD = pathlib.Path(__file__).resolve().parents[1] / "build" / "release"
LOOKS = ["Effect_VSCO_A2", "Effect_ChenGuang", "Effect_QingLiang", "Effect_JiuRiXi", "Effect_HuiYi", "Effect_LEAK_1",
         "NewGt_1", "Effect_NiGuang", "Effect_LengLan", "Effect_Bali"]
CLIP = 8  # different frames, which are read again and again
RUNS = 4


def seconds(clip, size, frames, chain, threads):
    environment = dict(os.environ, FREI0R_PATH=str(BUILD / "lib" / "frei0r-1"), OMP_NUM_THREADS=str(threads))
    command = ["ffmpeg", "-v", "info", "-benchmark", "-filter_threads", str(threads), "-stream_loop", str(frames // CLIP - 1), "-f", "rawvideo", "-pix_fmt",
               "bgra", "-s", size, "-i", str(clip), *(["-vf", chain] if chain else []), "-f", "null", "-"]
    told = subprocess.run(command, env=environment, capture_output=True, text=True, check=True).stderr
    if "tintwerk:" in told:
        raise RuntimeError(told)
    return float(re.search(r"rtime=([\d.]+)s", told)[1])


def main():
    with tempfile.TemporaryDirectory(dir="/dev/shm" if os.path.isdir("/dev/shm") else None) as folder:
        folder = pathlib.Path(folder)
        cube = folder / "look.cube"
        subprocess.run([BUILD / "bin" / "tintwerk", "cube", "export", LOOKS[0], "-o", cube], check=True)
        chains = [("reading alone", ""), ("lut3d, tetrahedral", f"lut3d={cube}"),
                  ("lut3d, trilinear", f"lut3d={cube}:interp=trilinear")]
        chains += [(look, f"frei0r=tintwerk:{look}") for look in sys.argv[1:] or LOOKS]
        threads = sorted({1, os.cpu_count()})
        columns = []
        for size, frames in (("1280x720", 160), ("1920x1080", 80)):
            clip = folder / f"{size}.bgra"
            subprocess.run(["ffmpeg", "-v", "error", "-f", "lavfi", "-i", f"testsrc2=size={size}", "-frames:v", str(CLIP),
                            "-vf", "noise=alls=8", "-f", "rawvideo", "-pix_fmt", "bgra", clip], check=True)
            columns += [(clip, size, frames, count) for count in threads]
        best = {}
        for clip, size, frames, count in columns:
            for _ in range(RUNS):
                for name, chain in chains:
                    rate = frames / seconds(clip, size, frames, chain, count)
                    best[name, size, count] = max(rate, best.get((name, size, count), 0))
        print(f"{'frames a second':24}" + "".join(f"{size + ' x' + str(count):>14}" for _, size, _, count in columns))
        for name, _ in chains:
            print(f"{name:24}" + "".join(f"{best[name, size, count]:14.0f}" for _, size, _, count in columns))


if __name__ == "__main__":
    main()
