"""What the benchmarks of the command-line tools share: runs that are timed, and figures with bars."""

import os
import subprocess
import sys
import tempfile
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
MINUTES = 5
ROUNDS = 3
SILENT = {"stdin": subprocess.DEVNULL, "stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}


class Bars:
    """Prints figures beside their bars and remembers whether all were met."""

    def __init__(self):
        self.all_met = True

    def at_most(self, what, figure, bar, unit=""):
        self.tell(what, figure, f"at most {bar:g}{unit}", unit, figure <= bar)

    def at_least(self, what, figure, bar, unit=""):
        self.tell(what, figure, f"at least {bar:g}{unit}", unit, figure >= bar)

    def tell(self, what, figure, bar, unit, met):
        self.all_met &= met
        print(f"{what:62} {figure:9.3f}{unit:4} {bar:>16}   {'met' if met else 'MISSED'}")


def usage(command, output=None):
    """CPU seconds and wall seconds of one run."""
    if output is not None:
        Path(output).unlink(missing_ok=True)
    start = time.perf_counter()
    process = subprocess.Popen([str(word) for word in command], **SILENT)
    _, status, used = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode:
        sys.exit(f"{' '.join(map(str, command))}: ended with {process.returncode}")
    return used.ru_utime + used.ru_stime, time.perf_counter() - start


# A process begins with the memory of the one that started it, so a small one has to.
PEAK = """
import resource, subprocess, sys
nothing = subprocess.DEVNULL
status = subprocess.run(sys.argv[1:], stdin=nothing, stdout=nothing, stderr=nothing).returncode
print(resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss)
sys.exit(status)
"""


def peak_memory(command, output=None):
    """In MiB, of one run."""
    if output is not None:
        Path(output).unlink(missing_ok=True)
    done = subprocess.run([sys.executable, "-c", PEAK, *map(str, command)], check=False,
                          capture_output=True, text=True)
    if done.returncode:
        sys.exit(f"{' '.join(map(str, command))}: ended with {done.returncode}")
    return int(done.stdout) / 1024


def in_turns(*runs, which=0):
    """The best CPU seconds of each (command, output), taken in turns."""
    best = [float("inf")] * len(runs)
    for _ in range(ROUNDS):
        for at, (command, output) in enumerate(runs):
            best[at] = min(best[at], usage(command, output)[which])
    return best


def wall_in_turns(*runs):
    """The same in seconds of wall time."""
    return in_turns(*runs, which=1)


def ffmpeg(*words):
    return ["ffmpeg", "-nostdin", "-v", "error", "-y", *words]


def make_music(folder, wav):
    """Some minutes of it: all examples of CD quality, one after the other, again and again."""
    subprocess.run([ROOT / "scripts/make-examples", folder / "pieces"], check=True,
                   stdout=subprocess.DEVNULL)
    pieces = sorted(path for path in (folder / "pieces").rglob("*") if path.suffix in (".wav", ".aiff"))
    raw = b"".join(
        subprocess.run(ffmpeg("-i", f"file:{piece}", "-ar", "44100", "-ac", "2", "-f", "s16le", "-"),
                       check=True, capture_output=True).stdout for piece in pieces)
    whole = (raw * (MINUTES * 60 * 176400 // len(raw) + 1))[:MINUTES * 60 * 176400]
    (folder / "music.raw").write_bytes(whole)
    subprocess.run(ffmpeg("-f", "s16le", "-ar", "44100", "-ac", "2", "-i", folder / "music.raw",
                          "-bitexact", wav), check=True)
    print(f"{MINUTES} minutes of music from {len(pieces)} pieces; seconds as ratios\n")


def run_parts(arguments, doc, bench_class):
    """The main() of a benchmark: BUILD from the arguments, its parts one after the other, and the exit
    status."""
    if len(arguments) > 1 or any(argument.startswith("-") for argument in arguments):
        print(doc.strip(), file=sys.stderr)
        return 2
    build = Path(arguments[0] if arguments else ROOT / "build/bench").resolve()
    with tempfile.TemporaryDirectory(prefix="quav-bench-") as folder:
        bench = bench_class(build, Path(folder))
        for part in bench.parts():
            part()
        return 0 if bench.bars.all_met else 1
