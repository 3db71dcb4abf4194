"""A `flac` that waits to be told before it works, or before it ends."""

import os
import select
import shutil
import subprocess
import sys

PATIENCE = 120

SCRIPT = """#!/bin/sh
case $* in
*--version*) exec {flac} "$@" ;;
esac
{work_first}
status=$?
echo begun >{begun}
read -r word <{gate}
{work_last}
"""


class StandIn:
    """A tools folder with it. `moment` is when it waits: "before" or "after" the work."""

    def __init__(self, folder, moment):
        self.moment, self.tools = moment, folder
        folder.mkdir()
        flac = shutil.which("flac")
        self.begun, self.gate = folder / "begun", folder / "gate"
        for pipe in (self.begun, self.gate):
            os.mkfifo(pipe)
        is_after = moment == "after"
        script = folder / "flac"
        script.write_text(SCRIPT.format(
            flac=flac, begun=self.begun, gate=self.gate,
            work_first=f'{flac} "$@"' if is_after else ":",
            work_last='exit "$status"' if is_after else f'exec {flac} "$@"'))
        script.chmod(0o755)
        (folder / "metaflac").symlink_to(shutil.which("metaflac"))
        # Open both ways, so that neither side waits for the other to open.
        self.ends = [os.open(pipe, os.O_RDWR) for pipe in (self.begun, self.gate)]

    def __enter__(self):
        return self

    def __exit__(self, *_):
        for end in self.ends:
            os.close(end)

    def wait_until_begun(self, process):
        """Returns when the stand-in waits, or when the program has ended without it."""
        watch = os.pidfd_open(process.pid)
        try:
            ready, _, _ = select.select([self.ends[0], watch], [], [], PATIENCE)
            if not ready:
                sys.exit(f"attack: {self.tools}/flac was never started")
        finally:
            os.close(watch)

    def let_go(self):
        """Now and for every later run."""
        os.write(self.ends[1], b"go\n" * 100)
