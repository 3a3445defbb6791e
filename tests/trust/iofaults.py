"""Lets each call of the tool to the file system fail, once and for good."""

import os
import pathlib

import scenes

TITLE = "calls of the system that fail, once and for good"
ERRORS = ["ENOSPC", "EIO", "EDQUOT", "EACCES"]
SHORT_CALLS = ["read", "write"]
RUNS = 2500
# Words of calls that read, write and move files; each of them fails in each way.
MOVING = ["open", "read", "write", "sync", "close", "rename", "link", "mode", "owner", "trunc",
          "remove"]
# Words of calls that ask, or print; a share of them fails.
ASKING = ["stat", "access", "place", "seek", "extra", "flush", "control"]


def stages_of(context, scene):
    """The ways that a save takes, each of which makes calls that the others do not make."""
    new, former = scenes.usual_stages(scene)
    linking = scenes.Stage(scene, "names that cannot be exchanged", has_former=True,
                           plan="rename:1:EINVAL")
    stages = [new, former, linking, scenes.stage_in_place(context, scene)]
    if os.geteuid() == 0:
        stages.append(scenes.Stage(scene, "former targets of another owner", has_former=True,
                                   owner=1))
    return stages


def plans(stage, word):
    # No system interrupts calls for good: whoever calls again until it is made would never end.
    faults = [(error, lasting) for error in ERRORS for lasting in ("", "+")] + [("EINTR", "")]
    if word in SHORT_CALLS:
        faults += [("SHORT", ""), ("SHORT", "+")]
    for number in range(1, stage.counts[word] + 1):
        for error, lasting in faults:
            yield stage, word, f"{word}:{number}{lasting}:{error}"


def check(context, case, workers=1):
    stage, word, plan = case
    folder = context.workplace.empty_folder()
    scenes.prepare(stage, folder)
    run = scenes.run_stage(context, stage, folder, plan, workers)
    found = scenes.broken_promise(stage, folder, run, may_leave=word == "remove")
    if found is None:
        return None
    kept = context.keep(f"{stage}-{plan}", folder)
    plans_of_run = ",".join(filter(None, [stage.plan, plan]))
    return f"{stage}, FAULTS={plans_of_run}: {found}; see {kept}\n{run}"


def several(cases):
    """Those in which the tool has work for two threads, and in which no certain call must fail."""
    return [case for case in cases
            if len(case[0].scene.targets) > 1 and not case[0].is_in_place]


def share_of(context, cases, number):
    """As many of the cases, the same ones for the same seeds."""
    wanted = min(len(cases), context.number(number))
    return context.random(context.seeds[-1], "iofaults").sample(cases, wanted)


def run_stages(context, stages):
    stages = scenes.watched(context, stages)
    moving = [case for stage in stages for word in MOVING for case in plans(stage, word)]
    asking = [case for stage in stages for word in ASKING for case in plans(stage, word)]
    cases = share_of(context, moving, len(moving)) + share_of(context, asking, RUNS // 5)
    outcome = context.outcome_of(lambda case: check(context, case), cases)
    outcome.add(context.outcome_of(lambda case: check(context, case, workers=2),
                                   share_of(context, several(moving), RUNS // 5)))
    return outcome


def run(context):
    return run_stages(context, [stage for scene in scenes.all_scenes()
                                for stage in stages_of(context, scene)])
