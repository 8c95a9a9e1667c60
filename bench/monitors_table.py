#!/usr/bin/env python3
"""What keeps a net from blocking at which price: `netkit monitors` beside the method of the literature.

    bench/monitors_table.py build/release/netkit examples/*.PD bench/nets/*.PD

prints a row for each net. The method of the literature adds, in one step, a monitor for
every minimal siphon that no marked trap controls: it keeps in the siphon one token more than there can be
when all its places are short (in an ordinary net one token). What the monitors of both leave of a net is
counted here, by a listing of all markings that shares nothing with netkit; where netkit has counted, too,
both must agree. A net is worth keeping at a marking from which it can go on for ever.
"""
import json
import pathlib
import subprocess
import sys
import tempfile
import time
import xml.etree.ElementTree as ElementTree

MOST_MARKINGS = 100_000
MOST_SIPHONS = 100_000
MOST_MONITORS = 1000  # with more the listing takes hours
SECONDS = 60


class Net:
    """An ordinary or weighted net: the tokens by place, and by transition what it takes and gives by place."""

    def __init__(self, tokens, takes, gives):
        self.tokens, self.takes, self.gives = tokens, takes, gives

    def with_monitors(self, sums):
        """The net with a place for each pair of weights by place and the least value of their sum."""
        net = Net(list(self.tokens), [dict(t) for t in self.takes], [dict(t) for t in self.gives])
        for weights, least in sums:
            place = len(net.tokens)
            net.tokens.append(sum(w * self.tokens[p] for p, w in weights.items()) - least)
            for t, (takes, gives) in enumerate(zip(self.takes, self.gives)):
                effect = sum(w * (gives.get(p, 0) - takes.get(p, 0)) for p, w in weights.items())
                if effect < 0:
                    net.takes[t][place] = -effect
                elif effect > 0:
                    net.gives[t][place] = effect
        return net

    def graph(self):
        """All markings with the numbers of those that follow each, or None where they are too many."""
        first = tuple(self.tokens)
        numbers, markings, follow = {first: 0}, [first], []
        for marking in markings:
            if len(markings) > MOST_MARKINGS:
                return None
            after = []
            for takes, gives in zip(self.takes, self.gives):
                if all(marking[p] >= w for p, w in takes.items()):
                    reached = list(marking)
                    for p, w in takes.items():
                        reached[p] -= w
                    for p, w in gives.items():
                        reached[p] += w
                    reached = tuple(reached)
                    if reached not in numbers:
                        numbers[reached] = len(markings)
                        markings.append(reached)
                    after.append(numbers[reached])
            follow.append(after)
        return markings, follow

    def greatest_trap(self, places):
        """The greatest trap among the places."""
        trap = set(places)
        while True:
            lost = {p for takes, gives in zip(self.takes, self.gives)
                    if not trap & set(gives) for p in trap & set(takes)}
            if not lost:
                return trap
            trap -= lost


def run(netkit, *arguments):
    return subprocess.run([netkit, *arguments], capture_output=True, text=True, check=False).stdout


def read(netkit, path):
    """The net and its place names; None where it has more than weighted arcs."""
    name = "{http://www.pnml.org/version-2009/grammar/pnml}"
    with tempfile.TemporaryDirectory() as directory:
        pnml = str(pathlib.Path(directory) / "net.pnml")
        run(netkit, "convert", path, "-o", pnml)
        root = ElementTree.parse(pnml).getroot()
    places, transitions = list(root.iter(name + "place")), list(root.iter(name + "transition"))
    text = lambda element, child: element.findtext(f"{name}{child}/{name}text")
    tokens = [int(text(p, "initialMarking") or 0) for p in places]
    place = {p.get("id"): i for i, p in enumerate(places)}
    transition = {t.get("id"): i for i, t in enumerate(transitions)}
    net = Net(tokens, [{} for _ in transitions], [{} for _ in transitions])
    tool = [t.find(name + "toolspecific") for t in transitions]
    if len({t.get("priority") + t.get("kind") for t in tool if t.get("kind") == "IMM"} | {""}) > 1 or any(
            t.get("function") for t in tool):
        return None
    for arc in root.iter(name + "arc"):
        if arc.get("type") or arc.find(name + "toolspecific") is not None:
            return None
        weight, ends = int(text(arc, "inscription") or 1), (arc.get("source"), arc.get("target"))
        if ends[0] in place:
            net.takes[transition[ends[1]]][place[ends[0]]] = weight
        else:
            net.gives[transition[ends[0]]][place[ends[1]]] = weight
    return net, [text(p, "name") for p in places]


def worth_keeping(markings, follow):
    """The markings from which the net can go on for ever."""
    before, ways = [[] for _ in markings], [len(after) for after in follow]
    for number, after in enumerate(follow):
        for reached in after:
            before[reached].append(number)
    out = [number for number, count in enumerate(ways) if count == 0]
    lost = set(out)
    for number in out:
        for earlier in before[number]:
            ways[earlier] -= 1
            if ways[earlier] == 0:
                lost.add(earlier)
                out.append(earlier)
    return {marking for number, marking in enumerate(markings) if number not in lost}


def by_siphons(netkit, path, net, names):
    """The sums that the method of the literature keeps, or None where a siphon cannot be kept so."""
    answer = json.loads(run(netkit, "siphons", path, "--json", "--max", str(MOST_SIPHONS), "--timeout", str(SECONDS)))
    number = {name: i for i, name in enumerate(names)}
    sums = []
    for siphon in answer["siphons"]:
        places = {number[name] for name in siphon["places"]}
        if any(net.tokens[p] for p in net.greatest_trap(places)):
            continue
        most = {p: max((takes.get(p, 0) for takes in net.takes), default=0) for p in places}
        least = 1 + sum(w - 1 for w in most.values() if w > 0)
        if sum(net.tokens[p] for p in places) < least:
            return None
        sums.append(({p: 1 for p in places}, least))
    return sums


def outcome(net, sums, good):
    """What the net with monitors does, in words, and how many of the good markings it reaches."""
    if len(sums) > MOST_MONITORS:
        return "not listed", None
    graph = net.with_monitors(sums).graph()
    if graph is None or good is None:
        return "not listed", None
    markings, follow = graph
    kept = {marking[:len(net.tokens)] for marking in markings} & good
    return ("blocks" if any(not after for after in follow) else "deadlock-free"), len(kept)


def share(kept, good):
    return "-" if kept is None or not good else f"{kept:,} of {len(good):,}"


def row(netkit, path):
    read_net = read(netkit, path)
    if read_net is None:
        return None
    net, names = read_net
    start = time.monotonic()
    answer = json.loads(run(netkit, "monitors", path, "--json", "--timeout", str(SECONDS)))
    seconds = time.monotonic() - start
    number = {name: i for i, name in enumerate(names)}
    sums = [({number[p]: w for p, w in monitor["keeps"]["weights"].items()}, monitor["keeps"]["least"])
            for monitor in answer["monitors"]]
    graph = net.graph()
    good = None if graph is None else worth_keeping(*graph)
    found, kept = outcome(net, sums, good)
    said = answer["verdict"]
    if found == "blocks" and said == "deadlock-free" or found == "deadlock-free" and said == "deadlock":
        sys.exit(f"{path}: netkit says {said}, the listing {found}")
    if kept is not None and answer["kept_markings"] not in (None, {"before": len(good), "kept": kept}):
        sys.exit(f"{path}: netkit counts {answer['markings']}, the listing {kept} of {len(good)}")
    siphons = by_siphons(netkit, path, net, names)
    other, other_kept = ("a siphon has too few tokens", None) if siphons is None else outcome(net, siphons, good)
    return (pathlib.Path(path).stem, said, len(sums), f"{seconds:.2f} s", share(kept, good), other,
            "-" if siphons is None else len(siphons), share(other_kept, good))


def main():
    netkit, *nets = sys.argv[1:]
    print("| net | netkit | monitors | time | kept | one per siphon | monitors | kept |")
    print("| --- | --- | ---: | ---: | ---: | --- | ---: | ---: |")
    for path in nets:
        cells = row(netkit, path)
        if cells is not None:
            print("| " + " | ".join(str(cell) for cell in cells) + " |", flush=True)


if __name__ == "__main__":
    main()
