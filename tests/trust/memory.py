"""Refuses the tool memory: each allocation by itself, and all beyond a limit of address space.

Longer runs refuse all allocations from one on as well, and pairs of allocations by chance."""

import resource

import scenes

TITLE = "memory that is refused: each allocation, address space"
ALLOCATIONS = 6000
STEPS = 40
PAIRS = 2000
MIB = 1 << 20
ENOUGH = 1024 * MIB


def archive():
    content = (scenes.PROJECT / "examples/assemblies/metal_filters.oblar").read_bytes()
    return scenes.Scene("update of an archive", {"in/metal.oblar": content},
                        ["update", "in/metal.oblar", "--output-path", "out"],
                        ["out/metal_updated.obl"])


def check_allocation(context, case):
    stage, plan = case
    folder = context.workplace.empty_folder()
    scenes.prepare(stage, folder)
    run = scenes.run_stage(context, stage, folder, plan)
    return scenes.failure_of(context, stage, f"FAULTS={plan}", folder, run)


def run_within(context, stage, folder, amount, workers=1, arguments=None):
    scenes.prepare(stage, folder)
    return scenes.run_stage(context, stage, folder, workers=workers, arguments=arguments,
                            limits=[(resource.RLIMIT_AS, amount)])


def least_for(context, stage, workers, arguments=None):
    """The least address space in MiB with which a run succeeds."""
    low, high = 0, ENOUGH // MIB
    while high - low > 1:
        middle = (low + high) // 2
        run = run_within(context, stage, context.workplace.empty_folder(), middle * MIB, workers,
                         arguments)
        low, high = (low, middle) if run.code == 0 else (middle, high)
    return high


def limits_for(context, stage, workers):
    """From where the tool can be loaded and print its help to where it can do all."""
    least = least_for(context, stage, workers, ["--help"]) * MIB
    enough = least_for(context, stage, workers) * MIB + MIB
    count = context.number(STEPS)
    for step in range(count):
        yield stage, workers, round(least + (enough - least) * step / max(1, count - 1))


def check_limit(context, case):
    stage, workers, amount = case
    folder = context.workplace.empty_folder()
    run = run_within(context, stage, folder, amount, workers)
    how = f"{amount} bytes of address space, {workers} workers"
    return scenes.failure_of(context, stage, how, folder, run)


def allocations(context, stages):
    """A share of the allocations of each stage, evenly spread over all of them."""
    each = context.number(ALLOCATIONS) // len(stages)
    for stage in stages:
        step = max(1, -(-stage.counts["alloc"] // max(1, each)))
        for number in range(1, stage.counts["alloc"] + 1, step):
            yield stage, f"alloc:{number}"


def allocations_for_good(stages):
    for stage in stages:
        for number in range(1, stage.counts["alloc"] + 1):
            yield stage, f"alloc:{number}+"


def pairs_of_allocations(context, stages):
    """Pairs of allocations by chance: the second one meets the tool while it handles the first."""
    for case in range(context.number(PAIRS)):
        stage = stages[case % len(stages)]
        random = context.random(context.seeds[case % len(context.seeds)], f"memory-{case}")
        first = random.randint(1, stage.counts["alloc"])
        yield stage, f"alloc:{first},alloc:{first + random.choice([1, 1, 2, 5, 20, 100, 500])}"


def plans(context, stages):
    yield from allocations(context, stages)
    if context.share > 1:
        yield from allocations_for_good(stages)
        yield from pairs_of_allocations(context, stages)


def run_stages(context, stages):
    stages = scenes.watched(context, stages)
    outcome = context.outcome_of(lambda case: check_allocation(context, case),
                                 plans(context, stages))
    limits = [case for stage in stages for workers in (1, 2)
              for case in limits_for(context, stage, workers)]
    outcome.add(context.outcome_of(lambda case: check_limit(context, case), limits))
    return outcome


def run(context):
    wanted = [*scenes.all_scenes(), archive()]
    if context.share > 1:
        wanted.append(scenes.medium_update())
    return run_stages(context, [scenes.stage_with_former(scene) for scene in wanted])
