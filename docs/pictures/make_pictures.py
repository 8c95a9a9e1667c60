#!/usr/bin/env python3
"""Makes the pictures of the documents: make_pictures.py [DIRECTORY], by default the one of this file.

The cell's places, tokens, transitions and arcs come from examples/cell.PD, its siphons from the report beside
it; only the positions are chosen here. The tests make the pictures anew and compare them with those kept.
"""

import math
import re
import sys
from pathlib import Path
from xml.sax.saxutils import escape

HERE = Path(__file__).resolve().parent
EXAMPLES = HERE.parent.parent / "examples"

INK, FAINT, FILL, LINE = "#1f2933", "#69737d", "#ffd58a", "#b45f06"
POSITIVE, NEGATIVE, NEW = "#0b6aa2", "#8a8f94", "#b45f06"

STYLE = f"""
text {{ font-family: Helvetica, Arial, sans-serif; font-size: 14px; fill: {INK}; }}
.small {{ font-size: 12px; fill: {FAINT}; }}
.title {{ font-weight: bold; }}
.data {{ font-family: "DejaVu Sans Mono", Menlo, Consolas, monospace; font-size: 11.5px; white-space: pre; }}
"""


class Picture:
    """SVG elements on a white ground, which stays readable on dark pages."""

    def __init__(self, width, height, title):
        self.parts = [
            f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" width="{width}" height="{height}">',
            f"<title>{escape(title)}</title>",
            f"<style>{STYLE}</style>",
            '<defs><marker id="tip" viewBox="0 0 10 10" refX="9" refY="5" markerWidth="8" markerHeight="8" orient="auto">'
            f'<path d="M0 1 L10 5 L0 9 z" fill="{INK}"/></marker></defs>',
            f'<rect width="{width}" height="{height}" rx="6" fill="#ffffff"/>',
        ]

    def add(self, element):
        self.parts.append(element)

    def path(self, points, style, close=False):
        ends = " L".join(f"{x:.1f} {y:.1f}" for x, y in points)
        self.add(f'<path d="M{ends}{" z" if close else ""}" {style}/>')

    def text(self, x, y, words, classes="", anchor="middle", style=""):
        kind = f' class="{classes}"' if classes else ""
        extra = f' style="{style}"' if style else ""
        self.add(f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}"{kind}{extra}>{escape(words)}</text>')

    def write(self, path):
        path.write_text("\n".join(self.parts + ["</svg>", ""]))


def read_net(name):
    """Tokens of each place, and of each transition its input and output places."""
    tokens, transitions, arcs = {}, {}, None
    for line in (EXAMPLES / f"{name}.PD").read_text().splitlines():
        words = line.split()
        if line.startswith("PLACE "):
            tokens[words[1]] = int(words[2])
        elif line.startswith("TRANSITION "):
            arcs = transitions[words[1]] = {"INPARCS": [], "OUTPARCS": [], "INHARCS": []}
        elif arcs is not None and words and words[0] in arcs:
            group = arcs[words[0]]
        elif line.startswith("  ") and arcs is not None:
            group.append(words[1])
    return tokens, transitions


def read_siphons(name):
    report = (EXAMPLES / f"{name}.siphons").read_text()
    return [line.split() for line in re.findall(r"\{ (.*) \}", report)]


PLACE, BAR_X, BAR_Y = 21, 10, 24  # radius; half width and half height of a transition

CELL = {
    "a_waiting": (70, 80), "a_pick": (180, 80), "a_on_robot": (290, 80), "a_load": (400, 80),
    "a_on_mill": (510, 80), "a_done": (620, 80), "robot": (290, 215), "mill": (510, 215),
    "b_done": (180, 350), "b_on_robot": (290, 350), "b_pick": (400, 350), "b_on_mill": (510, 350),
    "b_load": (620, 350), "b_waiting": (730, 350),
}


def border(node, towards, is_place):
    """Where the line from the node's middle leaves its outline."""
    (x, y), (tx, ty) = node, towards
    dx, dy = tx - x, ty - y
    far = math.hypot(dx, dy)
    reach = PLACE if is_place else min(BAR_X * far / abs(dx) if dx else far, BAR_Y * far / abs(dy) if dy else far)
    return x + dx * reach / far, y + dy * reach / far


def draw_cell(path):
    tokens, transitions = read_net("cell")
    siphon = next(s for s in read_siphons("cell") if set(s) == {"robot", "mill", "a_on_mill", "b_on_robot"})
    picture = Picture(800, 470, "The net of examples/cell.PD with its deadlocking siphon filled")
    line = f'fill="none" stroke="{INK}" stroke-width="1.5" marker-end="url(#tip)"'

    def arc(start, end):
        a, b = CELL[start], CELL[end]
        if abs(a[0] - b[0]) > 300:  # the way back of a line runs round the outside
            turn = 26 if a[1] < 215 else 410
            side = -BAR_Y if turn < a[1] else BAR_Y
            radius = -PLACE if turn < a[1] else PLACE
            picture.path([(a[0], a[1] + side), (a[0], turn), (b[0], turn), (b[0], b[1] + radius)], line)
            return
        picture.path([border(a, b, start in tokens), border(b, a, end in tokens)], line)

    for name, arcs in transitions.items():
        for place in arcs["INPARCS"]:
            arc(place, name)
        for place in arcs["OUTPARCS"]:
            arc(name, place)
    for place, count in tokens.items():
        x, y = CELL[place]
        colours = f'fill="{FILL}" stroke="{LINE}" stroke-width="3"' if place in siphon else f'fill="#fff" stroke="{INK}" stroke-width="1.5"'
        picture.add(f'<circle cx="{x}" cy="{y}" r="{PLACE}" {colours}/>')
        for k in range(count):
            picture.add(f'<circle cx="{x + 6 * (2 * k - count + 1)}" cy="{y}" r="4.5" fill="{INK}"/>')
        if place in ("robot", "mill"):
            picture.text(x + 30, y + 5, place, anchor="start")
        else:
            picture.text(x, y - 30 if y > 215 else y + 38, place)
    for name in transitions:
        x, y = CELL[name]
        picture.add(f'<rect x="{x - BAR_X}" y="{y - BAR_Y}" width="{2 * BAR_X}" height="{2 * BAR_Y}" fill="#fff" stroke="{INK}" stroke-width="1.5"/>')
        picture.text(x + 16, y - 29 if y < 215 else y + 40, name, "small", "start")
    picture.add(f'<circle cx="60" cy="441" r="9" fill="{FILL}" stroke="{LINE}" stroke-width="2.5"/>')
    picture.text(78, 446, "a minimal siphon: empty as soon as line a holds the robot and line b the mill, and empty for ever", anchor="start")
    picture.write(path)


def draw_cone(path):
    """The cone |x| + |y| <= z, the constraint x + 3 y >= 0, and what is left."""
    picture = Picture(800, 400, "One constraint cuts a cone: rays on its negative side go, adjacent pairs give new ones")
    rays = {"r1": (1, 0, 1), "r2": (0, 1, 1), "r3": (-1, 0, 1), "r4": (0, -1, 1)}

    def value(ray):
        return ray[0] + 3 * ray[1]

    def combined(positive, negative):
        """The positive combination that the constraint holds with equality, and its name."""
        p, n = rays[positive], rays[negative]
        name = " + ".join(f"{factor if factor > 1 else ''}{ray}" for factor, ray in ((-value(n), positive), (value(p), negative)))
        return name, tuple(-value(n) * a + value(p) * b for a, b in zip(p, n))

    new = dict([combined("r2", "r3"), combined("r1", "r4")])
    cut = list(new.values())
    every = list(rays.items()) + list(new.items())

    def colour_of(name):
        return NEW if name in new else POSITIVE if value(rays[name]) > 0 else NEGATIVE

    def in_space(ray):
        x, y, z = (c / ray[2] for c in ray)
        return 185 + 150 * x + 30 * y, 360 - 235 * z - 62 * y + 26 * x

    def in_section(ray):
        return 580 + 125 * ray[0] / ray[2], 205 - 125 * ray[1] / ray[2]

    def section(where):
        """The outline of the cone, and of what the constraint leaves of it."""
        picture.path([where(r) for r in rays.values()], f'fill="#f3f4f5" stroke="{NEGATIVE}" stroke-width="1.2" stroke-dasharray="5 4"', True)
        kept = [where(cut[1]), where(rays["r1"]), where(rays["r2"]), where(cut[0])]
        picture.path(kept, f'fill="#cfe5f3" stroke="{POSITIVE}" stroke-width="1.8"', True)

    def ends(where):
        picture.path([where(c) for c in cut], f'fill="none" stroke="{NEW}" stroke-width="2"')
        for name, ray in every:
            x, y = where(ray)
            picture.add(f'<circle cx="{x:.1f}" cy="{y:.1f}" r="4.5" fill="{colour_of(name)}"/>')

    def label(where, offsets):
        for name, (dx, dy, anchor, words) in offsets.items():
            x, y = where(dict(every)[name])
            picture.text(x + dx, y + dy, words.replace("-", "\u2212"), "" if name in rays else "small", anchor)

    apex = (185, 360)
    section(in_space)
    picture.path([apex] + [in_space(c) for c in cut], f'fill="{FILL}" fill-opacity="0.75" stroke="none"', True)
    for name, ray in every:
        dashes = ' stroke-dasharray="5 4"' if colour_of(name) == NEGATIVE else ""
        picture.path([apex, in_space(ray)], f'fill="none" stroke="{colour_of(name)}" stroke-width="2.2"{dashes}')
    ends(in_space)
    label(in_space, {"r1": (12, 5, "start", "r1"), "r2": (8, -9, "middle", "r2"), "r3": (-12, 5, "end", "r3"), "r4": (-12, 14, "end", "r4")})
    picture.text(apex[0] + 14, apex[1] + 10, "0", "small")

    section(in_section)
    for a, b in (("r1", "r3"), ("r2", "r4")):
        picture.path([in_section(rays[a]), in_section(rays[b])], f'fill="none" stroke="{FAINT}" stroke-width="1" stroke-dasharray="1.5 4"')
    ends(in_section)
    signs = {name: f"{name}: {value(ray):+d}" for name, ray in rays.items()}
    sums = {name: f"{name} = ({', '.join(str(c) for c in ray)})" for name, ray in new.items()}
    (first, first_words), (second, second_words) = sums.items()
    label(in_section, {
        "r1": (12, 5, "start", signs["r1"]), "r2": (0, -12, "middle", signs["r2"]),
        "r3": (-12, 5, "end", signs["r3"]), "r4": (0, 22, "middle", signs["r4"]),
        first: (-10, -14, "end", first_words), second: (4, 20, "start", second_words)})
    picture.text(587, 252, "x + 3y = 0", "small", "start")

    picture.text(185, 30, "r1 and r2 stay, r3 and r4 go", "title")
    picture.text(580, 30, "cross-section at z = 1, with the values of x + 3y", "title")
    picture.text(580, 385, "dotted: the pairs r1, r3 and r2, r4 are not adjacent and give no ray", "small")
    picture.write(path)


def draw_stages(path):
    """From the files of the cell to its report, a box per stage with the data that leaves it."""
    report = (EXAMPLES / "cell.siphons").read_text().splitlines()
    lines = (EXAMPLES / "cell.PD").read_text().splitlines()
    place = next(line for line in lines if line.startswith("PLACE "))
    a_pick = next(i for i, line in enumerate(lines) if line.startswith("TRANSITION a_pick "))
    head = lines[a_pick].split(" RE ")[0] + " …"
    stages = [
        ("files", "cell.PD, cell.DEFINFO", "examples/",
         [place, head] + lines[a_pick + 1:a_pick + 6]),
        ("net", "load_net", "src/net/load_net.cpp",
         ["8 Place and 6 Transition records,", "texts as they stand in the file:", "", "a_pick  takes  a_waiting, robot", "        gives  a_on_robot"]),
        ("tables", "config_net, read_info", "src/structure/struct_IO.cpp",
         ["everything by number:", "", "places[0]: robot, 1 token", "input row 0 (a_pick): places 0, 2", "output row 0 (a_pick): place 3"]),
        ("system", "Siphons", "src/siphons/siphons.cpp",
         ["a_pick  robot + a_waiting − a_on_robot ≥ 0", "a_load  2mill + 2a_on_robot − robot − a_on_mill ≥ 0",
          "a_done  2a_on_mill − mill − a_waiting ≥ 0", "b_load  mill + b_waiting − b_on_mill ≥ 0",
          "b_pick  2robot + 2b_on_mill − mill − b_on_robot ≥ 0", "b_done  2b_on_robot − robot − b_waiting ≥ 0", "each of the 8 places ≥ 0"]),
        ("rays", "SolveInequationSystem", "src/solver/dual.cpp",
         ["8 rays after 8 constraints, then", "17, 17, 24, 15, 17 and 34; the first:", "", "robot 6, mill 4, a_on_mill 2, b_on_robot 3"]),
        ("supports", "MinimalSupports", "src/siphons/siphons.cpp",
         ["15 different supports, 5 minimal;", "the first:", "", "{ robot mill a_on_mill b_on_robot }"]),
        ("report", "WriteReport", "src/driver/report.cpp", report),
    ]
    wide, high, gap = 374, 146, 20
    picture = Picture(800, 4 * high + 3 * gap + 52, "From the files of the cell to its report")
    style = f'fill="none" stroke="{INK}" stroke-width="1.5" marker-end="url(#tip)"'
    for i, (name, function, file, data) in enumerate(stages):
        row, step = divmod(i, 2)
        column = step if row % 2 == 0 else 1 - step  # to and fro
        x, y = 16 + column * (wide + gap), 16 + row * (high + gap)
        width, height = wide, high
        if i + 1 == len(stages):
            x, width, height = 16, 2 * wide + gap, high + 20
        picture.add(f'<rect x="{x}" y="{y}" width="{width}" height="{height}" rx="5" fill="#f7f9fa" stroke="{INK}" stroke-width="1.2"/>')
        picture.text(x + 12, y + 22, f"{i + 1}  {name}", "title", "start")
        picture.text(x + width - 12, y + 20, function, anchor="end")
        picture.text(x + width - 12, y + 36, file, "small", "end")
        for k, words in enumerate(data):
            indent = len(words) - len(words.lstrip())
            words = words.strip().replace(" ", "\u00a0")
            picture.text(x + 12 + 7 * indent, y + 50 + 14 * k, words, "data", "start")
        if step == 0 and i + 1 < len(stages):
            start, end = (x + wide, x + wide + gap) if column == 0 else (x, x - gap)
            picture.path([(start, y + high / 2), (end, y + high / 2)], style)
        elif step == 1:
            picture.path([(x + wide / 2, y + high), (x + wide / 2, y + high + gap)], style)
    picture.write(path)


def main():
    directory = Path(sys.argv[1]) if len(sys.argv) > 1 else HERE
    draw_cell(directory / "cell.svg")
    draw_cone(directory / "cone.svg")
    draw_stages(directory / "stages.svg")


if __name__ == "__main__":
    main()
