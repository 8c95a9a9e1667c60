"""The page that `netkit draw NET -o FILE.html` writes, in a real browser.

    page_test.py NETKIT EXAMPLES

A test opens a page, acts as a person would, and looks at the resulting document.
"""

import json
import os
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from browser import Browser  # noqa: E402

ARROW_DOWN, END, ESCAPE = "\ue015", "\ue010", "\ue00c"

# The names of the nodes of a class, in the picture.
NAMES = """return [...document.querySelectorAll('svg.net .' + arguments[0])]
    .map((node) => node.querySelector('.name').textContent).sort()"""
TOKENS = """return Object.fromEntries([...document.querySelectorAll('svg.net .marked')].map((node) =>
    [node.querySelector('.name').textContent, node.querySelector('title').textContent.split(': ')[1]]))"""


def net_text(places, transitions):
    """A .PD file of places {name: tokens} and transitions {name: (inputs, outputs)}."""
    lines = ["NET_TYPE: GSPN", f"PLACES: {len(places)}", f"TRANSITIONS: {len(transitions)}"]
    lines += [f"PLACE {name} {tokens} 0 0 0 0" for name, tokens in places.items()]
    for name, groups in transitions.items():
        lines.append(f"TRANSITION {name} 1.0 SS EXP RE 0 0 0 0 0 0 0 0")
        for word, arcs in zip(("INPARCS", "OUTPARCS", "INHARCS"), (*groups, ())):
            lines.append(f"{word} {len(arcs)}")
            lines += [f"  1 {place} 0" for place in arcs]
    return "\n".join(lines) + "\n"


class Page(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.browser.complaints()

    def tearDown(self):
        self.assertEqual(self.browser.complaints(), [])

    def draw(self, net, *options):
        page = os.path.join(self.folder, "net.html")
        subprocess.run([NETKIT, "draw", net, "-o", page, *options], check=True)
        self.browser.open(page)

    def draw_text(self, text, *options):
        path = os.path.join(self.folder, "net.PD")
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        self.draw(path, *options)

    def names(self, selector):
        return self.browser.run(NAMES, selector)

    def shown_rows(self):
        return self.browser.run("return [...document.querySelectorAll('.row')].map((row) => row.innerText)")


class Cell(Page):
    def setUp(self):
        super().setUp()
        self.draw(os.path.join(EXAMPLES, "cell.PD"))

    def test_a_chosen_siphon_is_filled_and_its_drains_are_marked(self):
        self.assertEqual(self.browser.text("#count"), "5 minimal siphons")
        self.assertEqual(self.names("siphon"), [])
        rows = self.shown_rows()
        at = next(i for i, row in enumerate(rows) if row.startswith("robot mill a_on_mill b_on_robot"))
        self.assertIn("4 places, 2 tokens, may run dry", rows[at])
        self.browser.click(f"#row{at}")
        self.assertEqual(self.names("siphon"), ["a_on_mill", "b_on_robot", "mill", "robot"])
        self.assertEqual(self.names("drains"), ["a_pick", "b_load"])
        self.assertEqual(self.browser.run("return document.querySelector('[aria-selected=true]').id"), f"row{at}")

    def test_the_list_works_with_the_keyboard(self):
        self.browser.type("#list", ARROW_DOWN + ARROW_DOWN)
        self.assertTrue(self.browser.text("#detail").startswith("No. 2 "))
        self.browser.type("#list", END)
        self.assertTrue(self.browser.text("#detail").startswith("No. 5 "))
        self.browser.type("#list", ESCAPE)
        self.assertEqual(self.names("siphon"), [])

    def test_search_and_status_filter_the_list(self):
        self.browser.type("#search", "A_on_mill b_on_ROBOT")
        self.assertEqual(self.browser.text("#count"), "1 of 5 minimal siphons")
        self.assertEqual(self.names("found"), ["a_on_mill", "b_on_robot"])
        self.browser.type("#search", "\ue003" * 20)
        self.browser.run("""const status = document.getElementById('status');
            status.value = 'may run dry'; status.dispatchEvent(new Event('change'))""")
        self.assertEqual(self.browser.text("#count"), "1 of 5 minimal siphons")

    def test_the_deadlock_is_played_to_its_end(self):
        self.assertTrue(self.browser.text("#verdict").startswith("Deadlock: after 2 firings"))
        self.assertEqual(self.browser.text("#step"), "Step 0 of 2: initial marking")
        self.browser.click("#next")
        self.assertEqual(len(self.names("fires")), 1)
        self.browser.click("#first")
        self.browser.click("#play")
        self.browser.wait("return document.getElementById('last').disabled")
        self.assertTrue(self.browser.text("#step").endswith("now no transition can fire"))
        self.assertEqual(self.browser.run(TOKENS), {
            "a_on_robot": "1 token", "a_waiting": "1 token", "b_on_mill": "1 token", "b_waiting": "1 token"})
        self.assertEqual(self.browser.run("return document.querySelectorAll('.moving').length"), 0)

    def test_the_policy_keeps_other_scripts_out(self):
        self.browser.run("""const script = document.createElement('script');
            script.textContent = 'window.intruder = true'; document.body.append(script)""")
        self.assertIsNone(self.browser.run("return window.intruder"))
        self.assertEqual(len(self.browser.complaints()), 1)


class Names(Page):
    def test_names_are_text_never_markup(self):
        image, closing, quoted = "<img/src=x/onerror=alert(1)>", "</script><b>x</b>", "\"'&amp;<!--"
        self.draw_text(net_text({image: 1, closing: 0, quoted: 0}, {
            "<svg/onload=alert(2)>": ([image], [closing]), "back": ([closing], [image, quoted])}), "--places", image)
        self.assertEqual(self.browser.run("return document.querySelectorAll('img, b, svg svg, script').length"), 2)
        self.assertEqual(self.names("place"), sorted([image, closing, quoted]))
        self.assertEqual(self.names("siphon"), [image])
        self.browser.type("#list", ARROW_DOWN)
        self.assertIn(image, self.browser.text("#detail"))


class Large(Page):
    def test_tokens_are_exact(self):
        # 2^53 + 1 is the first whole number that a script's plain numbers cannot hold.
        path = os.path.join(self.folder, "net.pnml")
        place = '<place id="{0}"><initialMarking><text>{1}</text></initialMarking></place>'.format
        arc = '<arc id="from_{0}" source="{0}" target="open"/>'.format
        with open(path, "w", encoding="utf-8") as file:
            file.write('<pnml><net id="n" type="http://www.pnml.org/version-2009/grammar/ptnet"><page id="g">' +
                       place("many", 2**53 + 2) + place("key", 1) + '<transition id="open"/>' + arc("many") +
                       arc("key") + "</page></net></pnml>")
        self.draw(path)
        self.browser.click("#last")
        self.assertEqual(self.browser.run(TOKENS), {"many": f"{2**53 + 1} tokens"})

    def test_many_places_and_many_siphons(self):
        # A chain of 250 pairs of places: 2^13 minimal siphons in its first part, a long cycle in the rest.
        pairs = 13
        places, transitions = {}, {}
        for i in range(pairs):
            places |= {f"a{i}": 1, f"b{i}": 1}
            after = (i + 1) % pairs
            transitions[f"t{i}"] = ([f"a{i}", f"b{i}"], [f"a{after}", f"b{after}"])
        for i in range(500 - 2 * pairs):
            places[f"c{i}"] = int(i == 0)
            transitions[f"u{i}"] = ([f"c{i}"], [f"c{(i + 1) % (500 - 2 * pairs)}"])
        self.draw_text(net_text(places, transitions))
        self.assertEqual(self.browser.run("return document.querySelectorAll('.place').length"), 500)
        self.assertEqual(self.browser.text("#count"), "8193 minimal siphons")
        self.assertLess(len(self.shown_rows()), 60)
        self.browser.type("#list", END)
        self.assertTrue(self.browser.text("#detail").startswith("No. 8193 "))
        self.assertEqual(len(self.names("siphon")), 500 - 2 * pairs)


if __name__ == "__main__":
    NETKIT, EXAMPLES = (os.path.abspath(path) for path in sys.argv[1:3])
    with Browser() as browser:
        Page.browser = browser
        unittest.main(argv=sys.argv[:1])
