"""Batches of quav-cli that are attacked, and the judgement of what is left of them."""

import json
import os
import select
import shutil
import signal
import subprocess
import time
from collections import Counter
from dataclasses import dataclass
from pathlib import Path

from sound import Sound, Unclear, make, of_output, samples, sound

# Long enough for a loaded machine; a run that takes longer hangs.
PATIENCE = 120
SHAPES = ((2, 16, 44100), (1, 24, 48000), (2, 16, 96000))
# What turns what into what: arguments, kind of the sources, kind of the outputs.
MODES = {
    "encode": (("encode", "--to", "flac"), ".wav", ".flac"),
    "encode-aiff": (("encode", "--to", "flac"), ".aiff", ".flac"),
    "recode": (("encode", "--to", "flac"), ".flac", ".flac"),
    "decode": (("decode", "--to", "wav"), ".flac", ".wav"),
    "decode-aiff": (("decode", "--to", "aiff"), ".flac", ".aiff"),
}


@dataclass
class Truth:
    """What is known about the sound of a source: all of it, or at least its samples undamaged."""

    sound: Sound | None
    samples: bytes

    def is_in(self, other):
        """A source that tells its sound unclearly is whole where no sample is lost."""
        return isinstance(other, Sound) and (other == self.sound or other.samples == self.samples)


class Score:
    """The faults of one kind of attack."""

    KINDS = ("lost", "torn", "lied", "left")
    MOST_WORDS = 6

    def __init__(self, name):
        self.name, self.rounds, self.sources = name, 0, 0
        self.faults, self.words = dict.fromkeys(self.KINDS, 0), []

    def blame(self, kind, what):
        self.faults[kind] += 1
        self.words.append(f"{kind}: {what}")

    def tell(self):
        counts = "   ".join(f"{kind} {count:4}" for kind, count in self.faults.items())
        print(f"{self.name:10} rounds {self.rounds:4}   sources {self.sources:6}   {counts}", flush=True)
        words = Counter(self.words)
        for one in list(words)[:self.MOST_WORDS]:
            print(f"    {words[one]} × {one}")
        if len(words) > self.MOST_WORDS:
            print(f"    and {len(words) - self.MOST_WORDS} others")
        return not any(self.faults.values())


class Run:
    """One run of quav-cli that has ended: what it told of each source."""

    def __init__(self, status, said, complained):
        self.status, self.complained = status, complained
        self.events = {}
        for line in said.splitlines():
            try:
                event = json.loads(line)
            except ValueError:
                continue  # the last line of a killed run
            if event.get("event") == "finished" and "source" in event:
                self.events[event["source"]] = event

    def claims_done(self, source):
        """Whether it says that all went well with a source."""
        event = self.events.get(str(source))
        return event is not None and event["status"] == "done" and not event["warnings"]

    def tells_of(self, source):
        """Whether it says that something was wrong with a source."""
        event = self.events.get(str(source))
        if event is not None:
            return not self.claims_done(source)
        return any(source.name in line and not line.startswith("done:")
                   for line in self.complained.splitlines())

    def first_reason(self):
        failed = [event.get("error") for event in self.events.values() if event["status"] != "done"]
        return failed[0] if failed else self.complained.strip().split("\n")[-1]

    def reason(self, source):
        event = self.events.get(str(source), {})
        return " ".join([event.get("error", ""), *event.get("warnings", [])])


class Batch:
    """Sources in a folder, and the command that turns them into outputs in another and deletes them."""

    def __init__(self, cli, folder, mode, tools):
        self.cli, self.folder, self.mode = cli, folder, mode
        self.words, self.kind, self.made = MODES[mode]
        self.input, self.output, self.tools = folder / "in", folder / "out", tools
        self.truths = {}
        for place in (self.input, self.output, folder / "config"):
            place.mkdir(parents=True)

    def add(self, count, frames, first=0):
        for number in range(first, first + count):
            shape = SHAPES[number % len(SHAPES)]
            data = samples(frames, shape[0], shape[1], number)
            path = self.input / f"d1t{number:03} ä.{self.kind[1:]}"
            make(path, *shape, data)
            whole = sound(*shape, data)
            self.truths[path] = Truth(whole, whole.samples)
        return self

    def output_of(self, source):
        return self.output / (source.stem + self.made)

    def put_earlier_outputs(self):
        """Files of another sound where the outputs will be."""
        for number, source in enumerate(self.truths):
            make(self.output_of(source), 2, 16, 22050, samples(4000, 2, 16, 900 + number))

    def copy(self, folder):
        """The same batch, untouched, in another folder."""
        twin = Batch.__new__(Batch)
        twin.__dict__.update(self.__dict__)
        shutil.copytree(self.folder, folder)
        twin.folder, twin.input, twin.output = folder, folder / "in", folder / "out"
        twin.truths = {twin.input / path.name: truth for path, truth in self.truths.items()}
        return twin

    def start(self, *more):
        environment = {**os.environ, "LC_ALL": "C.UTF-8", "XDG_CONFIG_HOME": str(self.folder / "config"),
                       "XDG_DATA_HOME": str(self.folder / "config"), "QUAV_TOOLS_DIR": str(self.tools)}
        with (self.folder / "said").open("ab") as said, (self.folder / "complained").open("ab") as words:
            return subprocess.Popen(
                [self.cli, *self.words, "--json", "--yes", "--delete-originals", "--output", self.output,
                 *more, self.input], stdin=subprocess.DEVNULL, stdout=said, stderr=words, env=environment)

    def finish(self, process):
        try:
            status = process.wait(PATIENCE)
        except subprocess.TimeoutExpired:
            process.kill()
            status = process.wait()
        texts = [self.folder / name for name in ("said", "complained")]
        run = Run(status, *(text.read_text(errors="replace") for text in texts))
        for text in texts:
            text.unlink()
        return run

    def run(self, *more):
        return self.finish(self.start(*more))


def sound_of(path):
    """The sound of an output, None where there is none, or why it is unclear."""
    if not path.exists():
        return None
    try:
        return of_output(path)
    except Unclear as why:
        return why


def judge(batch, runs, score, pool, others=()):
    """Compares what is left of a batch with what its runs told. `others` may also be there."""
    score.rounds += 1
    score.sources += len(batch.truths)
    for run in runs:
        if run.status < 0:
            what = "hung" if run.status == -signal.SIGKILL else "crashed"
            score.blame("left", f"{batch.mode}: the program {what}")
    sounds = dict(zip(batch.truths, pool.map(sound_of, map(batch.output_of, batch.truths))))
    for source, truth in batch.truths.items():
        judge_source(batch, runs, score, source, truth, sounds[source])
    judge_leftovers(batch, score, others)


def judge_source(batch, runs, score, source, truth, output):
    name, state = f"{batch.mode}, {source.name}", "another" if output else "missing"
    is_right = truth.is_in(output)
    if isinstance(output, Unclear):
        score.blame("torn", f"{name}: the output is there, but {output}")
    is_claimed = any(run.claims_done(source) for run in runs)
    if is_claimed and not is_right:
        score.blame("lied", f"{name}: done, but the output is {state}")
    if not source.exists():
        if not is_right:
            score.blame("lost", f"{name}: the source is gone, the output is {state}")
    elif not any(run.tells_of(source) for run in runs):
        score.blame("lied", f"{name}: the source is still there, and nobody says why")


def judge_leftovers(batch, score, others=()):
    expected = {*batch.truths, *map(batch.output_of, batch.truths), *others}
    for place in (batch.input, batch.output):
        for path in place.iterdir():
            if path not in expected:
                score.blame("left", f"{batch.mode}: {path.relative_to(batch.folder)}")


def tools_at_work(folder):
    """The processes that live and whose arguments name a file in a folder."""
    found, name = [], os.fsencode(f"{folder}/")
    for entry in Path("/proc").iterdir():
        if entry.name.isdigit() and int(entry.name) != os.getpid():
            try:
                if name in (entry / "cmdline").read_bytes():
                    found.append(int(entry.name))
            except OSError:
                pass
    return found


def become_quiet(folder, seconds):
    """Waits until no process works in a folder; whether that came in time. Those that are left then
    are ended, so that the next round can begin."""
    end, in_time = time.monotonic() + seconds, True
    while working := tools_at_work(folder):
        for process in working:
            in_time &= has_ended(process, end - time.monotonic())
    return in_time


def has_ended(process, seconds):
    """Whether a process ended by itself; if not, it is ended."""
    try:
        watch = os.pidfd_open(process)
    except ProcessLookupError:
        return True
    try:
        ended, _, _ = select.select([watch], [], [], max(0.0, seconds))
        if not ended:
            signal.pidfd_send_signal(watch, signal.SIGKILL)
            select.select([watch], [], [])
        return bool(ended)
    finally:
        os.close(watch)
