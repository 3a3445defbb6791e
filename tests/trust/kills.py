"""Kills the tool at each call that it makes to the file system, and at random moments."""

import signal
import time

import scenes

TITLE = "killed: before and behind each call, at random moments"
RANDOM_MOMENTS = 200


def calls_of(stage):
    for number in range(1, stage.counts["any"] + 1):
        for deed in ("KILL", "KILLED"):
            yield stage, f"any:{number}:{deed}"


def further_run_broken(context, stage, folder):
    """What is wrong with a run behind one that was killed."""
    run = scenes.run_stage(context, stage, folder)
    if run.code != 0:
        return f"a further run fails: {run}"
    for name, content in scenes.results(stage, folder).items():
        if content not in stage.last[name] | stage.again[name]:
            return f"a further run does not write {name}"
    return None


def check(context, stage, how, folder, run, number):
    """The text of a failure, or None. `number` is that of the signal which was to end the run."""
    if run.signal not in (0, number):
        found = f"is ended by signal {run.signal}"
    else:
        found = (scenes.broken_by_kill(stage, folder, run)
                 or further_run_broken(context, stage, folder))
    if found is None:
        return None
    kept = context.keep(f"{stage}-{how}", folder)
    return f"{stage}, {how}: {found}; see {kept}"


def check_call(context, case):
    stage, plan = case
    folder = context.workplace.empty_folder()
    scenes.prepare(stage, folder)
    run = scenes.run_stage(context, stage, folder, plan)
    if run.signal != signal.SIGKILL:
        return f"{stage}, FAULTS={plan}: the run is not killed: {run}"
    return check(context, stage, f"FAULTS={plan}", folder, run, signal.SIGKILL)


def usual_time(context, stage):
    """Seconds of the clock that a whole run takes now, with all that starting it takes."""
    folder = context.workplace.empty_folder()
    scenes.prepare(stage, folder)
    begin = time.monotonic()
    scenes.run_stage(context, stage, folder, workers=2)
    return time.monotonic() - begin


def check_moment(context, case):
    """A timer ends the process, so that nobody has to wake up in time for it."""
    stage, seconds = case
    folder = context.workplace.empty_folder()
    scenes.prepare(stage, folder)
    run = scenes.run_stage(context, stage, folder, workers=2,
                           before_start=lambda: signal.setitimer(signal.ITIMER_REAL, seconds))
    return check(context, stage, f"after {seconds:.4f} s", folder, run, signal.SIGALRM)


def moments(context, stages):
    times = {str(stage): usual_time(context, stage) for stage in stages}
    for case in range(context.number(RANDOM_MOMENTS)):
        stage = stages[case % len(stages)]
        random = context.random(context.seeds[case % len(context.seeds)], f"kill-{case}")
        yield stage, random.uniform(0.0005, times[str(stage)])


def killed_at_sync(context, stage, number, deed):
    folder = context.workplace.empty_folder()
    scenes.prepare(stage, folder)
    scenes.run_stage(context, stage, folder, f"sync:{number}:{deed}")
    return folder


def check_power(context, stage):
    """A cut of the power loses all that is not synced: the new bytes, and the new name.

    So the new file is whole before the first sync, and gets its name behind that. The last sync is
    that of the folder, and the name is there before."""
    name = stage.scene.targets[0]
    folder = killed_at_sync(context, stage, 1, "KILL")
    waiting = [scenes.result(path) for path in scenes.leftovers(stage, folder).values()]
    if scenes.result(folder / name) in stage.last[name]:
        return f"{stage}: {name} has its new bytes before they are synced"
    if not stage.last[name].intersection(waiting):
        return f"{stage}: not all bytes of {name} are written before they are synced"
    folder = killed_at_sync(context, stage, stage.counts["sync"], "KILLED")
    if scenes.result(folder / name) not in stage.last[name]:
        return f"{stage}: {name} gets its new bytes behind the last sync"
    return None


def can_lose_power(stage):
    """What is written into a target itself, or to several, has no such order."""
    return len(stage.scene.targets) == 1 and not stage.is_in_place


def run_stages(context, stages, timed=()):
    """Random moments are those of the `timed` stages, or of all if there are none."""
    stages = scenes.watched(context, stages)
    timed = scenes.watched(context, timed)
    calls = [call for stage in stages for call in calls_of(stage)]
    step = max(1, round(1 / context.share))
    outcome = context.outcome_of(lambda case: check_call(context, case), calls[::step])
    outcome.add(context.outcome_of(lambda case: check_moment(context, case),
                                   moments(context, timed or stages)))
    outcome.add(context.outcome_of(lambda stage: check_power(context, stage),
                                   filter(can_lose_power, stages)))
    return outcome


def run(context):
    in_place = scenes.stage_in_place(context, scenes.update_of_one())
    timed = scenes.stages_of([scenes.large_update()] if context.share > 1 else [])
    return run_stages(context, [*scenes.stages_of(scenes.all_scenes()), in_place], timed)
