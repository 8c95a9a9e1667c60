"""Makes the screenshots that the documents show: docs/pictures/cell_page.png and two_robots_page.png.

    screenshots.py NETKIT EXAMPLES DIRECTORY
"""

import os
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "tests", "page"))
from browser import Browser  # noqa: E402

netkit, examples, directory = (os.path.abspath(path) for path in sys.argv[1:4])
with tempfile.TemporaryDirectory() as folder, Browser() as browser:
    page = os.path.join(folder, "net.html")
    for net, places in (("cell", "robot mill a_on_mill b_on_robot"), ("two_robots", "")):
        subprocess.run([netkit, "draw", os.path.join(examples, net + ".PD"), "-o", page], check=True)
        browser.open(page)
        if places:
            browser.type("#search", places)
            browser.click(".row")
        else:
            browser.click("#last")
        browser.screenshot(os.path.join(directory, net + "_page.png"), 900, 600)
