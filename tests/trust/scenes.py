"""Small runs of the tool that a part disturbs, and what they may leave behind.

A scene is a command with its inputs. A stage is a scene with what stands at the places of its
targets. Whatever happens to a run, broken_promise() says which promise its traces break."""

import dataclasses
import itertools
import os
import pathlib
import re
import threading

import runs

PROJECT = pathlib.Path(__file__).resolve().parents[2]
FORMER = b"the former result"
FIXED_TIME = 1500000000  # of all inputs: packages note the time of their pictures
NOT_SAVED = b"Error! Cannot saved: "
# Of a failure that ends the whole run, whichever packages are not written yet.
ENDING_LINES = [b"Error! Out of memory", b"Error! Current folder not found"]
KEPT_AS = b"Error! The former file is kept as: "


@dataclasses.dataclass
class Scene:
    """`targets` are the files that the command writes.

    `before_last` are commands that give what a target holds for a moment, where two packages go to
    one name. `otherwise` is a command that gives what it may hold as well, if a line says so that
    begins with `said`."""

    name: str
    inputs: dict
    arguments: list
    targets: list
    former: bytes = FORMER
    before_last: tuple = ()
    otherwise: tuple = ()
    said: bytes = b""


@dataclasses.dataclass
class Stage:
    """`plan` are faults of each run, which lead the tool another way.

    The rest is made by watch(): the numbers of the calls of a run that is left alone; for each
    target the contents that it may have in the end, behind a further run, and meanwhile. All of
    them are as canonical() has them."""

    scene: Scene
    name: str
    has_former: bool = False
    mode: int = 0o644  # of the former files
    owner: int = -1  # of the former files; -1 for the user
    plan: str = ""
    is_in_place: bool = False  # the tool writes into the former file
    counts: dict = dataclasses.field(default_factory=dict)
    last: dict = dataclasses.field(default_factory=dict)
    again: dict = dataclasses.field(default_factory=dict)
    complete: dict = dataclasses.field(default_factory=dict)
    otherwise: dict = dataclasses.field(default_factory=dict)

    def __str__(self):
        return f"{self.scene.name}, {self.name}"


def package(identifier, version, content="", more=""):
    return (f'<?xml version="1.0" encoding="UTF-8"?><package><packageType v="Kestrix"/>'
            f'<identifier v="{identifier}"/><formatVersion v="{version}"/>'
            f'<updaterVersion v="{version}"/><platform v="1"/><author v=""/><fileUID v="file"/>'
            f'<versionUID v="0"/><configurations><name v=""/><uid v="0"/><configuration/>'
            f'</configurations><dependencies>{more}</dependencies><content>{content}</content>'
            f'</package>').encode()


def small_filter():
    """A graph with an image, a number and an output."""
    inputs = ('<paraminput><identifier v="in"/><uid v="2"/><type><value v="1"/></type>'
              '<defaultWidget><name v=""/><options/></defaultWidget></paraminput>'
              '<paraminput><identifier v="gap"/><uid v="3"/>'
              '<attributes><label v="Gap"/></attributes><type><value v="256"/></type>'
              '<defaultValue><constantValueFloat1><value v="0.5"/></constantValueFloat1>'
              '</defaultValue><defaultWidget><name v="slider"/><options/></defaultWidget>'
              '</paraminput>')
    graph = (f'<graph><identifier v="planks"/><uid v="1"/><paraminputs>{inputs}</paraminputs>'
             '<graphOutputs><graphoutput><identifier v="color"/><uid v="4"/></graphoutput>'
             '</graphOutputs><compNodes/><baseParameters/><content/><root/></graph>')
    return package("wood", "1.1.0.7049", graph)


def old_package():
    """An old package without dependencies."""
    text = (PROJECT / "tests/golden/chains/1.0.1.3000/input.obl").read_bytes()
    return re.sub(rb"<dependencies>.*</dependencies>", b"<dependencies/>", text, flags=re.DOTALL)


def update_of_one():
    return Scene("update", {"in/roof.obl": old_package()},
                 ["update", "in/roof.obl", "--output-path", "out"], ["out/roof_updated.obl"])


def update_of_sample(name, path):
    text = (PROJECT / path).read_bytes()
    alone = re.sub(rb"<dependencies>.*</dependencies>", b"<dependencies/>", text, flags=re.DOTALL)
    return Scene(f"update of {len(alone) // 1000} kB", {f"in/{name}.obl": alone},
                 ["update", f"in/{name}.obl", "--output-path", "out"], [f"out/{name}_updated.obl"])


def medium_update():
    return update_of_sample("grain", "examples/old/grain.obl")


def large_update():
    return update_of_sample("city", "examples/large/city_facade.obl")


def editor():
    return Scene("graph-parameters-editor", {"in/wood.obl": small_filter()},
                 ["graph-parameters-editor", "in/wood.obl", "--output-path", "out",
                  "--switch-to-constant", "gap@0.25"], ["out/wood_edited.obl"])


def specialization():
    picture = (PROJECT / "tests/data/pictures/png-netpbm.png").read_bytes()
    arguments = ["specialization", "in/wood.obl", "--output-path", "out", "--connect-image",
                 "in@path@in/oak.png"]
    return Scene("specialization", {"in/wood.obl": small_filter(), "in/oak.png": picture},
                 [*arguments, "--output-merge"], ["out/wood_specialized.obl"],
                 package("former", "1.1.0.7049"), otherwise=arguments,
                 said=b"Warning! Output file not found and cannot be merged")


def update_with_dependencies():
    """Of the two packages that go to one name the second one is written last."""
    golden = PROJECT / "tests/golden/chains"
    arguments = ["--output-path", "out", "--presets-path", "in/presets"]
    return Scene("update with dependencies, two to one name",
                 {"in/plain/roof.obl": old_package(),
                  "in/deep/roof.obl": (golden / "1.0.1.3000/input.obl").read_bytes(),
                  "in/tools.obl": (golden / "tools.obl").read_bytes(),
                  "in/presets/shelf.obl": (golden / "presets/shelf.obl").read_bytes()},
                 ["update", "in/plain/roof.obl", "in/deep/roof.obl", *arguments],
                 ["out/roof_updated.obl", "out/tools_updated.obl", "out/shelf_updated.obl"],
                 before_last=(["update", "in/plain/roof.obl", *arguments],))


def all_scenes():
    return [update_of_one(), editor(), specialization(), update_with_dependencies()]


def enlarged(scene, size):
    """The scene with longer texts in its inputs, which go into its targets."""
    def enlarge(content):
        return re.sub(rb'(<author v="|<label v="Gap)', rb"\1" + b"x" * size, content)
    inputs = {name: enlarge(content) if name.endswith(".obl") else content
              for name, content in scene.inputs.items()}
    return dataclasses.replace(scene, inputs=inputs)


def canonical(content):
    """The bytes without uids that come from the clock: they may or may not be equal by chance."""
    return re.sub(rb"\{[-0-9a-f]{36}\}|\b[0-9]{9,10}\b", b"clock", content)


def files_below(folder):
    return {str(path.relative_to(folder)): path for path in folder.rglob("*") if path.is_file()}


def prepare(stage, folder):
    """Makes the folder of a case, which is empty before."""
    for name in ("out", "tmp"):
        (folder / name).mkdir(exist_ok=True)
    former = {name: stage.scene.former for name in stage.scene.targets if stage.has_former}
    for name, content in {**stage.scene.inputs, **former}.items():
        path = folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)
        os.utime(path, (FIXED_TIME, FIXED_TIME))
    for name in former:
        os.chmod(folder / name, stage.mode)
        os.chown(folder / name, stage.owner, stage.owner)


def preloaded(context):
    return context.release / "tests/support/kestrix_faults.so"


def stay_on_one_core():
    """Leaves the process one core, on which the tool has no worker threads."""
    cores = sorted(os.sched_getaffinity(0))
    os.sched_setaffinity(0, {cores[threading.get_native_id() % len(cores)]})


def run_stage(context, stage, folder, faults="", workers=1, arguments=None, environment=None,
              **options):
    """Runs the scene in its folder. Without faults the library of faults isn't there either."""
    plan = ",".join(filter(None, [stage.plan, faults]))
    surroundings = {"TMPDIR": str(folder / "tmp"), **(environment or {})}
    if plan or "FAULT_COUNTS" in surroundings:
        surroundings |= {"LD_PRELOAD": str(preloaded(context)), "FAULTS": plan}
    before_start = options.pop("before_start", None)

    def start():
        if workers == 1:
            stay_on_one_core()
        if before_start is not None:
            before_start()

    return runs.run_process(context.release, arguments or stage.scene.arguments, folder,
                            surroundings, before_start=start, **options)


def counts_in(path):
    return {word: int(number) for word, number in map(str.split, path.read_text().splitlines())}


def result(path):
    """None for a missing file."""
    return canonical(path.read_bytes()) if path.exists() else None


def results(stage, folder):
    return {name: result(folder / name) for name in stage.scene.targets}


def equals(content):
    """All that may stand for the content.

    The time or the checksum of a picture is left out where the system does not give it."""
    if content is None:
        return set()
    without_time = re.sub(rb'(<lastModif v=")[^"]*', rb"\1", content)
    return {content, without_time, re.sub(rb'(<checksum v=")[0-9a-f]*', rb"\g<1>0", content)}


def results_alone(context, stage, arguments, environment=None):
    """Returns what targets hold behind a run that is left alone, and its folder."""
    folder = context.workplace.empty_folder()
    prepare(stage, folder)
    run = run_stage(context, stage, folder, arguments=arguments, environment=environment)
    if run.code != 0:
        raise RuntimeError(f"{stage}: {run}")
    return {name: equals(content) for name, content in results(stage, folder).items()}, folder


def watch(context, stage):
    """Notes what runs do that are left alone. Returns the stage."""
    counts = context.folder / "counts"
    scene = stage.scene
    meanwhile = [results_alone(context, stage, arguments)[0] for arguments in scene.before_last]
    if scene.otherwise:
        stage.otherwise, _ = results_alone(context, stage, scene.otherwise)
    stage.last, folder = results_alone(context, stage, scene.arguments,
                                       {"FAULT_COUNTS": str(counts)})
    stage.counts = counts_in(counts)
    stage.complete = {name: set.union(*(found[name] for found in (*meanwhile, stage.last)))
                      for name in scene.targets}
    run_stage(context, stage, folder)
    stage.again = {name: equals(content) for name, content in results(stage, folder).items()}
    return stage


def watched(context, stages):
    return [watch(context, stage) for stage in stages]


def stage_with_former(scene):
    return Stage(scene, "former targets", has_former=True, mode=0o604)


def usual_stages(scene):
    return [Stage(scene, "new targets"), stage_with_former(scene)]


def stages_of(scenes):
    return list(itertools.chain.from_iterable(map(usual_stages, scenes)))


def stage_in_place(context, scene):
    """The folder of the target takes no new file, so that the tool writes into the former one.

    The last file that a run opens is the new one beside its target."""
    opened = watch(context, stage_with_former(scene)).counts["open"]
    return Stage(scene, "in place", has_former=True, plan=f"open:{opened}:EACCES", is_in_place=True)


def inputs_changed(stage, folder):
    for name, content in stage.scene.inputs.items():
        path = folder / name
        if not path.is_file() or path.read_bytes() != content:
            return f"changes its input {name}"
        if path.stat().st_mtime != FIXED_TIME:
            return f"writes to its input {name}"
    return None


def kept_copies(run):
    return [line[len(KEPT_AS):] for line in run.err.splitlines() if line.startswith(KEPT_AS)]


def final_contents(stage, name, run):
    if stage.otherwise and stage.scene.said in run.err:
        return stage.last[name] | stage.otherwise[name]
    return stage.last[name]


def target_broken(stage, folder, name, run, copies):
    """`copies` are contents of files that a run in place may have left instead of the target."""
    path = folder / name
    if not path.exists():
        return f"loses {name}" if stage.has_former else None
    content = path.read_bytes()
    if stage.has_former and content == stage.scene.former:
        return None
    if canonical(content) in stage.complete[name] | final_contents(stage, name, run):
        return None
    if stage.is_in_place and stage.scene.former in copies:
        return None
    return f"leaves {len(content)} bytes at {name}, neither the former nor the new ones"


def leftovers(stage, folder):
    known = {*stage.scene.inputs, *stage.scene.targets}
    return {name: path for name, path in files_below(folder).items() if name not in known}


def unsaved(stage, folder, run):
    """A target that is not complete although no line says so."""
    is_ended = any(line in run.err.splitlines() for line in ENDING_LINES)
    if b"Packages Saved:" not in run.out or is_ended:
        return None
    for name in stage.scene.targets:
        path = folder / name
        is_named = NOT_SAVED + os.fsencode(path) in run.err
        if not is_named and result(path) not in final_contents(stage, name, run):
            return f"does not write {name}, and does not say so"
    return None


def broken_by_kill(stage, folder, run):
    """The promise that a killed run breaks, or None."""
    copies = [path.read_bytes() for path in leftovers(stage, folder).values()]
    broken = (target_broken(stage, folder, name, run, copies) for name in stage.scene.targets)
    return inputs_changed(stage, folder) or next(filter(None, broken), None)


def broken_promise(stage, folder, run, may_leave=False):
    """The promise that a run with a fault breaks, or None.

    `may_leave` is for runs in which the system refuses to remove a file."""
    left = leftovers(stage, folder)
    named = [os.path.relpath(os.fsdecode(copy), folder) for copy in kept_copies(run)]
    copies = [left[name].read_bytes() for name in named if name in left]
    broken = (target_broken(stage, folder, name, run, copies) for name in stage.scene.targets)
    found = (runs.broken_bound(run) or inputs_changed(stage, folder)
             or next(filter(None, broken), None))
    if found is not None:
        return found
    unnamed = sorted(set(left) - set(named))
    if unnamed and not may_leave:
        return f"leaves {' '.join(unnamed)}"
    if run.code == 0 and any(content not in final_contents(stage, name, run)
                             for name, content in results(stage, folder).items()):
        return "ends with 0 and has not written all"
    return unsaved(stage, folder, run)


def failure_of(context, stage, how, folder, run):
    """The text of a failure if the run breaks a promise, or None. `how` says what disturbed it."""
    found = broken_promise(stage, folder, run)
    if found is None:
        return None
    kept = context.keep(f"{stage}-{how}", folder)
    return f"{stage}, {how}: {found}; see {kept}\n{run}"
