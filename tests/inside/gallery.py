"""Looks at a gallery in a browser. gallery.py TINTWERK [FOLDER]: the command, and where to keep screenshots."""
import json
import pathlib
import shlex
import subprocess
import sys
import tempfile
import time

from webdriver import Browser, Pixels

tintwerk = pathlib.Path(sys.argv[1]).resolve()
kept = pathlib.Path(sys.argv[2]).resolve() if len(sys.argv) > 2 else None
looks = json.loads(subprocess.check_output([tintwerk, "list", "--json"]))
slugs = ["".join(c if c.isalnum() else "-" for c in look["title"].lower()) for look in looks]
END_KEY, HOME, LEFT, RIGHT, ESCAPE = "\ue010", "\ue011", "\ue012", "\ue014", "\ue00c"


def apply(look, photo, result, *options):
    subprocess.check_call([tintwerk, "apply", look, photo, "-o", result.with_suffix(".ppm"), *options])
    return Pixels(result.with_suffix(".ppm").read_bytes())


class Shown:
    """What stands in the frame of the large view, in blocks of a grid."""
    SIDE = 12

    def __init__(self, browser):
        browser.run("await document.getElementById('after').decode?.().catch(() => 0);"
                    "await new Promise(done => setTimeout(done, 250));")
        box = browser.run("const {left, top, width, height} = document.getElementById('frame').getBoundingClientRect();"
                          "return [left, top, width, height];")
        self.blocks = self.of(Pixels(browser.screenshot()), box)

    @classmethod
    def of(cls, pixels, box=None):
        left, top, width, height = box or (0, 0, pixels.width, pixels.height)
        edge = [[round(start + size * i / cls.SIDE) for i in range(cls.SIDE + 1)]
                for start, size in ((left, width), (top, height))]
        return [[pixels.mean(edge[0][x], edge[1][y], edge[0][x + 1], edge[1][y + 1]) for x in range(cls.SIDE)]
                for y in range(cls.SIDE)]

    def distance(self, pixels, columns=range(SIDE)):
        """The mean difference in levels. The first row and the middle hold labels and the divider's knob."""
        blocks = self.of(pixels)
        rows = [y for y in range(1, self.SIDE) if y not in (5, 6)]
        return sum(abs(a - b) for y in rows for x in columns for a, b in zip(self.blocks[y][x], blocks[y][x])) / \
            (3 * len(rows) * len(columns))


def opens_while_the_command_works(browser, photo, folder):
    work = subprocess.Popen([tintwerk, "gallery", photo, "-o", folder, "--jobs", "1"])
    while not (folder / "index.html").exists():
        assert work.poll() is None
        time.sleep(0.01)
    browser.open(f"file://{folder}/index.html")
    painted = "return document.querySelectorAll('.open img[src]').length"
    first = browser.run(painted)
    assert first < len(looks), "the command was done before the browser could look"
    assert work.wait() == 0
    browser.until(painted, len(looks))
    # Every small picture loads, each in the place of its look.
    broken = browser.run("""
      const broken = [];
      for (const card of document.querySelectorAll('.card')) {
        const image = card.querySelector('img');
        image.loading = 'eager';
        await image.decode().catch(() => broken.push(image.src));
      }
      return broken;""")
    assert broken == [], broken
    titles = browser.run("return [...document.querySelectorAll('.open strong')].map(one => one.textContent)")
    assert titles == [look["title"] for look in looks]


def search_and_favourites(browser, url):
    shown = "return [...document.querySelectorAll('.card:not([hidden]) strong')].map(one => one.textContent)"
    browser.keys("/")
    browser.keys(*"film shadow")
    expected = [look["title"] for look in looks if all(
        word in f"{look['title']} {look['description']} {look['category']}".lower() for word in ("film", "shadow"))]
    assert 0 < len(expected) < 30 and browser.run(shown) == expected, browser.run(shown)
    assert f"{len(expected)} of {len(looks)} looks" in browser.run("return document.getElementById('state').textContent")
    browser.run("search.value = 'no such look'; search.dispatchEvent(new Event('input'))")
    assert browser.run(shown) == []
    browser.run("search.value = ''; search.dispatchEvent(new Event('input'));"
                "for (const i of [3, 40]) document.querySelectorAll('.heart-button')[i].click()")
    browser.open(url)
    browser.run("document.getElementById('only-favourites').click()")
    assert browser.run(shown) == [looks[3]["title"], looks[40]["title"]]
    browser.run("document.getElementById('only-favourites').click()")
    assert len(browser.run(shown)) == len(looks)


def large_view(browser, photo, folder):
    index = next(i for i, look in enumerate(looks) if look["category"] == "Warm")
    before = apply(slugs[index], photo, folder / "before", "--strength", "0")
    after = apply(slugs[index], photo, folder / "look")
    half = apply(slugs[index], photo, folder / "half", "--strength", "40")
    browser.run("document.querySelectorAll('.open')[args[0]].focus()", index)
    browser.keys("\ue007")
    active = "return document.activeElement.id || document.activeElement.querySelector('strong')?.textContent"
    browser.until(active, "divider")

    # The divider by keys: at one end the look alone, at the other the photo; by mouse and finger half and half.
    browser.keys(HOME)
    assert Shown(browser).distance(after) < 2 < 8 < Shown(browser).distance(before)
    browser.keys(END_KEY)
    assert Shown(browser).distance(before) < 2
    browser.keys(*[LEFT] * 5)
    assert browser.run("return divider.getAttribute('aria-valuenow')") == "90"
    box = browser.run("const {left, top, width, height} = document.getElementById('frame').getBoundingClientRect();"
                      "return [left, top, width, height];")
    for kind, share in (("mouse", 0.75), ("touch", 0.25)):
        y = box[1] + box[3] / 3
        browser.drag([(box[0] + box[2] / 2, y), (box[0] + box[2] * 0.6, y), (box[0] + box[2] * share, y)], kind)
        shown, edge = Shown(browser), round(share * Shown.SIDE)
        assert shown.distance(before, range(edge - 1)) < 2, kind
        assert shown.distance(after, range(edge + 1, Shown.SIDE)) < 2, kind

    # The strength in the browser is that of the command, and the line to copy tells it.
    browser.keys(HOME)
    browser.run("strength.value = 40; strength.dispatchEvent(new Event('input'))")
    shown = Shown(browser)
    assert shown.distance(half) < 2 < shown.distance(after), (shown.distance(half), shown.distance(after))
    line = browser.run("return command.value")
    words = shlex.split(line)
    assert words[0] == "tintwerk" and words[3] == str(photo), line
    subprocess.check_call([tintwerk, *words[1:]])
    assert Shown.of(Pixels(pathlib.Path(words[5]).read_bytes())) == Shown.of(half)

    # On to other looks, and back to the card of the last.
    for key in "nnp":
        browser.keys(key)
    browser.until("return document.getElementById('title').textContent", looks[index + 1]["title"])
    browser.run("strength.value = 100; strength.dispatchEvent(new Event('input'))")
    assert Shown(browser).distance(apply(slugs[index + 1], photo, folder / "next")) < 2
    browser.keys(ESCAPE)
    browser.until("return document.getElementById('view').open", False)
    assert browser.run(active) == looks[index + 1]["title"]
    browser.keys(RIGHT)
    assert browser.run(active) == looks[index + 2]["title"]


def every_picture_is_its_look(browser, photo, folder):
    """Of some looks from all categories; those that draw random numbers come out alike at this size of blocks."""
    for slug in slugs[::12]:
        browser.open(f"file://{folder}/index.html#{slug}")
        browser.run("document.getElementById('divider').focus()")
        browser.keys(HOME)
        expected = apply(slug, photo, folder / "look")
        assert Shown(browser).distance(expected) < 3, slug


def screenshots(browser, url, slug):
    for name, size, scheme in (("desktop", (1280, 900), "light"), ("desktop-dark", (1280, 900), "dark"),
                               ("phone", (360, 740), "light"), ("phone-dark", (360, 740), "dark")):
        browser.size(*size, phone=size[0] < 500)
        browser.scheme(scheme)
        for page, place in (("", ""), ("-view", f"#{slug}")):
            browser.open("about:blank")
            browser.open(url + place)
            time.sleep(1)
            width = browser.run("return document.documentElement.scrollWidth")
            assert width <= size[0], f"{name}{page} is {width} pixels wide"
            if kept:
                (kept / f"{name}{page}.png").write_bytes(browser.screenshot())


def works_without_a_store(browser, url):
    browser.debug("Page.addScriptToEvaluateOnNewDocument", source=
                  "Object.defineProperty(window, 'localStorage', {get() { throw new Error('denied'); }})")
    browser.open("about:blank")
    browser.open(url)
    browser.run("document.querySelector('.heart-button').click()")
    assert browser.run("return document.getElementById('favourite-count').textContent") == "1"


with tempfile.TemporaryDirectory() as name, Browser() as browser:
    folder = pathlib.Path(name)
    photo = folder / "a photo & <more>.png"
    subprocess.check_call([tintwerk, "scene", "-o", photo, "--width", "480", "--height", "320"])
    url = f"file://{folder}/gallery/index.html"
    opens_while_the_command_works(browser, photo, folder / "gallery")
    search_and_favourites(browser, url)
    large_view(browser, photo, folder)
    every_picture_is_its_look(browser, photo, folder / "gallery")
    screenshots(browser, url, slugs[40])
    works_without_a_store(browser, url)

    messages = [entry["message"] for entry in browser.log("browser")]
    assert messages == [], messages
    events = [json.loads(entry["message"])["message"] for entry in browser.log("performance")]
    asked = {event["params"]["request"]["url"] for event in events if event["method"] == "Network.requestWillBeSent"
             and event["params"]["documentURL"].startswith("file:")}
    assert len(asked) > len(looks)
    strange = [one for one in asked if not one.startswith(("file://", "data:"))]
    assert strange == [], strange
print("the gallery holds what it promises")
