#!/usr/bin/env python3
"""Times whole workloads in one run: the program, the programs of others, and the measured bounds.

    scripts/bench --beside FOLDER [--only W1,W3] [--peers gsl,limit] [--runs 7]

FOLDER holds `workloads/` with macros W1.kvs and so on, and `run_peers.sh`, which runs the others and writes
`results.json`. It is copied into the build folder. The time of a fit is read from verbose output. The time of an
evaluation is the difference of two macros. Neither contains the start of the program. The shortest run is used, as for
the bounds."""
import argparse
import json
import os
import re
import resource
import shutil
import subprocess
import sys
import time

FITS = ["W1", "W2_300", "W2_1000", "W2_2500", "W3", "W3s", "W4"]
EVALUATIONS = {"W3e": ("W3e0", 20), "W3se": ("W3se0", 20), "W5": ("W5_0", 5)}
PYTHON_PEERS = ("scipy", "lmfit", "numpy")


class Workloads:
    def __init__(self, program, folder, runs):
        self.program, self.folder, self.runs = program, folder, runs

    def run(self, macro, threads):
        """Elapsed seconds, processor seconds and verbose output of one run, on as many cores as threads."""
        cores = "1" if threads == 1 else "0-%d" % (threads - 1)
        before, began = resource.getrusage(resource.RUSAGE_CHILDREN), time.perf_counter()
        done = subprocess.run(["taskset", "-c", cores, self.program, "--headless", "--verbose", "--threads", str(threads),
                               macro + ".kvs"], cwd=self.folder, stderr=subprocess.PIPE, text=True, check=True)
        elapsed, after = time.perf_counter() - began, resource.getrusage(resource.RUSAGE_CHILDREN)
        return elapsed, after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime, done.stderr

    def fit(self, macro, threads):
        """Seconds of all fits of the macro together."""
        def seconds(told):
            return sum(float(s) for s in re.findall(r": Fit: .*, (\S+) s$", told, re.MULTILINE))
        return min(seconds(self.run(macro, threads)[2]) for _ in range(self.runs))

    def evaluation(self, macro, threads):
        """Seconds of one evaluation. The macro is repeated ten times, which makes the rest of it negligible. On one
        core the processor time is used, because the rest waits for the disk."""
        base, times = EVALUATIONS[macro]
        with open(os.path.join(self.folder, macro + ".kvs")) as file:
            text = re.sub(r"(?:^VarDielFunc.*\n)+", lambda found: 10 * found.group(0), file.read(), flags=re.MULTILINE)
        with open(os.path.join(self.folder, "repeated.kvs"), "w") as file:
            file.write(text)
        column = 1 if threads == 1 else 0
        least = [min(self.run(name, threads)[column] for _ in range(self.runs)) for name in ("repeated", base)]
        return (least[0] - least[1]) / (10 * times)

    def files(self):
        """Processor seconds of W4 without its fits, and of an empty macro."""
        return min(self.run("W4_0", 1)[1] for _ in range(self.runs))


def least_of(rows, wanted):
    """Least time of the programs that reach the same result: some fail, or do not converge in so few steps."""
    done = [row for row in rows if "wall" in row]
    best = min((row["chi2"] for row in done), default=0)
    return min((row["wall"] for row in done if wanted(row["peer"]) and row["chi2"] < 1.01 * best), default=None)


def is_python(peer):
    return peer.startswith(PYTHON_PEERS)


def is_other(peer):
    return not is_python(peer) and not peer.startswith("limit")


def ratio(a, b):
    return "%.2f" % (a / b) if a and b else "-"


def ms(seconds):
    return "%.3g" % (1e3 * seconds) if seconds else "-"


def line(macro, one, two, rows):
    bound = least_of(rows, lambda peer: peer == "limit-1core")
    bound_two = least_of(rows, lambda peer: peer == "limit-2core")
    other, python = least_of(rows, is_other), least_of(rows, is_python)
    cells = [macro, ms(one), ms(bound), ratio(one, bound), ratio(other, bound), ratio(python, bound), ms(two),
             ratio(one, two), ratio(bound, bound_two)]
    return "| " + " | ".join(cells) + " |"


def others(options, macro):
    """Times of the others for a workload; their own tables are in tables.md of the copy."""
    results = os.path.join(options.copy, "results.json")
    if os.path.exists(results):
        os.remove(results)  # from an earlier run
    subprocess.run([os.path.join(options.copy, "run_peers.sh"), "--only", macro, "--peers", options.peers, "--runs",
                    str(options.runs)], check=True, stdout=subprocess.DEVNULL)
    with open(results) as file:
        return [row for row in json.load(file) if row["workload"] == macro]


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program")
    parser.add_argument("folder")
    parser.add_argument("copy", help="where the folder is copied to")
    parser.add_argument("--only", default=",".join(FITS + list(EVALUATIONS)))
    parser.add_argument("--peers", default="", help="beginnings of the names of the others that are to run; all")
    parser.add_argument("--runs", type=int, default=7)
    options = parser.parse_args()
    shutil.copytree(options.folder, options.copy, dirs_exist_ok=True)
    subprocess.run(["chmod", "-R", "u+w", options.copy], check=True)
    workloads = Workloads(os.path.abspath(options.program), os.path.join(options.copy, "workloads"), options.runs)
    print("| workload | one core, ms | bound, ms | of the bound | best other | best Python | two threads, ms | faster | "
          "bound faster |\n|---|---|---|---|---|---|---|---|---|")
    for macro in options.only.split(","):
        rows = others(options, macro)  # at nearly the same time: the speed of a shared machine varies
        measure = workloads.fit if macro in FITS else workloads.evaluation
        print(line(macro, measure(macro, 1), measure(macro, 2), rows), flush=True)
    if "W4" in options.only.split(","):
        print("\nW4 without its fits: %s ms" % ms(workloads.files()))


if __name__ == "__main__":
    sys.exit(main())
