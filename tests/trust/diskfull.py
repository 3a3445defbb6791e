"""Runs the tool where the disk is soon full: files may not grow, or a small file system is full."""

import contextlib
import ctypes
import os
import resource

import scenes

TITLE = "a disk that is full, and files that may not grow"
SIZES = 64
PAGE = 4096
LENGTH = 50000  # of the texts that make the files of the scenes large
DISK_PAGES = 128
MOST_FREE = 48
DISK_RUNS = 200
NO_FLAGS = 0
DETACH = 2  # MNT_DETACH of umount2()


def sizes_for(context, stage):
    """Sizes of files from none to more than the new ones have, in even steps."""
    largest = max(len(content) for contents in stage.last.values() for content in contents)
    count = context.number(SIZES)
    return [round(1.1 * largest * step / max(1, count - 1)) for step in range(count)]


def check_size(context, case):
    """What the run prints goes to pipes, which have no size."""
    stage, size = case
    folder = context.workplace.empty_folder()
    scenes.prepare(stage, folder)
    run = scenes.run_stage(context, stage, folder, in_pipes=True,
                           limits=[(resource.RLIMIT_FSIZE, size)])
    how = f"files of at most {size} bytes"
    return (scenes.failure_of(context, stage, how, folder, run)
            or unwritten(stage, how, folder, size))


def unwritten(stage, how, folder, size):
    """A target that is small enough and was not written all the same."""
    for name, content in scenes.results(stage, folder).items():
        # Uids are longer than the word that stands for them.
        largest = max(len(whole) + 6 * whole.count(b"clock") for whole in stage.last[name])
        if largest + PAGE < size and content not in stage.last[name]:
            return f"{stage}, {how}: does not write {name}, which is smaller"
    return None


class SmallDisk(contextlib.AbstractContextManager):
    """A small file system on a folder. `is_mounted` is false where the system allows none."""

    def __init__(self, folder, pages):
        self._folder = os.fsencode(folder)
        self._libc = ctypes.CDLL(None, use_errno=True)
        options = f"size={pages * PAGE}".encode()
        self.is_mounted = self._libc.mount(b"tmpfs", self._folder, b"tmpfs", NO_FLAGS, options) == 0

    def __exit__(self, *_):
        if self.is_mounted:
            self._libc.umount2(self._folder, DETACH)


def check_disk(context, case):
    """The folder of the targets has that many free pages."""
    stage, free = case
    folder = context.workplace.empty_folder()
    (folder / "out").mkdir()
    with SmallDisk(folder / "out", DISK_PAGES) as disk:
        if not disk.is_mounted:
            return None
        scenes.prepare(stage, folder)
        fill(folder / "out" / "filler", free)
        run = scenes.run_stage(context, stage, folder)
        (folder / "out" / "filler").unlink()
        return scenes.failure_of(context, stage, f"{free} free pages of {PAGE} bytes", folder, run)


def disks_for(context, stages):
    """Each stage with numbers of free pages from none to more than its targets need."""
    for case in range(0, DISK_RUNS, max(1, round(1 / context.share))):
        turn = case // len(stages)
        yield stages[case % len(stages)], turn * MOST_FREE * len(stages) // DISK_RUNS


def fill(path, free):
    status = os.statvfs(path.parent)
    path.write_bytes(b"f" * max(0, status.f_bfree - free) * PAGE)


def can_mount(context):
    folder = context.workplace.empty_folder()
    with SmallDisk(folder, DISK_PAGES) as disk:
        return disk.is_mounted


def run_stages(context, stages):
    stages = scenes.watched(context, stages)
    sizes = [(stage, size) for stage in stages for size in sizes_for(context, stage)]
    outcome = context.outcome_of(lambda case: check_size(context, case), sizes)
    if not can_mount(context):
        outcome.notes.append("the system mounts no small disk for this user")
    else:
        outcome.add(context.outcome_of(lambda case: check_disk(context, case),
                                       disks_for(context, stages)))
    return outcome


def run(context):
    large = [scenes.enlarged(scene, LENGTH) for scene in scenes.all_scenes()]
    return run_stages(context, scenes.stages_of(large))
