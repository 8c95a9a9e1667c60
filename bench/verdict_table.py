#!/usr/bin/env python3
"""The table of docs/verdict.md: what netkit check says of nets, on what ground, in how much processor time.

    bench/verdict_table.py build/release/netkit examples/*.PD bench/nets/*.PD

Processor time is counted, since a busy machine stretches the other one. A net that takes more than ten
seconds of it counts as undecided. The last line says how many are."""
import json
import os
import resource
import signal
import subprocess
import sys

LIMIT = 10


def limit():
    resource.setrlimit(resource.RLIMIT_CPU, (LIMIT, LIMIT + 1))


def seconds_of_children():
    usage = resource.getrusage(resource.RUSAGE_CHILDREN)
    return usage.ru_utime + usage.ru_stime


def ask(program, net):
    before = seconds_of_children()
    run = subprocess.run([program, "check", "--json", net], capture_output=True, text=True, preexec_fn=limit)
    seconds = seconds_of_children() - before
    if run.returncode == -signal.SIGXCPU:
        return "", "undecided", seconds, "ten seconds are over"
    if run.returncode not in (0, 10, 11):
        return "", "refused", seconds, "`netkit lint` says why"
    answer = json.loads(run.stdout)
    verdict = answer["verdict"]
    if verdict == "deadlock":
        verdict += " after %d" % len(answer["sequence"])
    return answer["counts"]["places"], verdict, seconds, answer["because"]


def main():
    program, nets = sys.argv[1], sys.argv[2:]
    print("| net | places | verdict | seconds | because |\n| --- | ---: | --- | ---: | --- |")
    undecided = 0
    for net in nets:
        places, verdict, seconds, because = ask(program, net)
        undecided += verdict == "undecided"
        name = os.path.splitext(os.path.basename(net))[0]
        print("| %s | %s | %s | %.2f | %s |" % (name, places, verdict, seconds, because), flush=True)
    print("\n%d of %d undecided" % (undecided, len(nets)))


main()
