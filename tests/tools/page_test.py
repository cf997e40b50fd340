# SPDX-License-Identifier: MIT
"""The report as a page, in a browser."""
import os
import re
import shutil
import struct
import subprocess
import tempfile
import unittest
import zlib

REPORT = [os.environ["VEXA_SIM"], "run", "--", os.environ["VEXACTL"], "report"]
BROWSER = ["chromium", "--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
           "--disable-background-networking", "--disable-component-update", "--disable-sync", "--hide-scrollbars"]


def brightness(png):
    """The mean of the first pixels of the lines, where nothing is written."""
    data, at, packed = png, 8, b""
    while at < len(data):
        size, kind = struct.unpack_from(">I4s", data, at)
        if kind == b"IHDR":
            width, height, _, colours = struct.unpack_from(">IIBB", data, at + 8)
        if kind == b"IDAT":
            packed += data[at + 8 : at + 8 + size]
        at += size + 12
    pixel = 4 if colours == 6 else 3
    lines, step = zlib.decompress(packed), 1 + width * pixel
    # left of the first pixel there is nothing, so that filters 0, 1 and 2 are enough
    value, values = 0, []
    for line in range(height):
        kind, first = lines[line * step], lines[line * step + 1]
        value = (value + first) % 256 if kind in (2, 4) else (value // 2 + first) % 256 if kind == 3 else first
        values.append(value)
    return sum(values) / height


@unittest.skipUnless(shutil.which("chromium"), "there is no chromium")
class Page(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        self.addCleanup(folder.cleanup)
        self.folder, self.page = folder.name, folder.name + "/report.html"
        with open(self.page, "wb") as page:
            subprocess.run(REPORT + ["--html", "-"], stdout=page, check=True)

    def browse(self, *options):
        command = BROWSER + ["--user-data-dir=" + self.folder + "/browser", *options, "file://" + self.page]
        return subprocess.run(command, capture_output=True, check=True, timeout=50).stdout.decode()

    def test_shows_the_device_light_and_dark(self):
        shown = self.browse("--dump-dom")
        for part in ("<h1>Report of ap-lobby</h1>", "<td>Jay 5 Long Range</td>", '<section id="memory">',
                     "in use</text><rect", "Harbour Street"):
            self.assertIn(part, shown)
        def bars(section):
            plot = shown.partition(f'<section id="{section}">')[2].partition("</svg>")[0]
            found = re.findall(r'>([^<]+)</text>.*?width="([\d.]+)" height="14"></rect><text[^>]*>(\d+)</text>', plot)
            return [(label, float(width), int(value)) for label, width, value in found]
        clients, channels = bars("clients"), bars("networks_heard")
        self.assertTrue(50 < len(clients) <= 60)
        for label, width, score in clients:
            self.assertAlmostEqual(width, 3.6 * score, 1, label)
        self.assertIn("5220 MHz", [label for label, _, _ in channels])
        self.assertEqual(sum(count for _, _, count in channels), 40)
        self.assertEqual(max(width for _, width, _ in channels), 360)
        for elsewhere in ("<script", "src=", "href=", "http:", "https:"):
            self.assertNotIn(elsewhere, shown)
        for scheme, low, high in ((0, 0, 80), (1, 180, 255)): # dark, light
            picture = f"{self.folder}/{scheme}.png"
            self.browse("--screenshot=" + picture, f"--blink-settings=preferredColorScheme={scheme}")
            with open(picture, "rb") as file:
                self.assertTrue(low < brightness(file.read()) <= high, scheme)


if __name__ == "__main__":
    unittest.main()
