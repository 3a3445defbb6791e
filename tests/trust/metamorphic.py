"""What must make no difference to the outputs: a second update, the order of inputs, and the
surroundings of a run, such as locale and time zone. Inputs are never changed."""

import concurrent.futures
import os
import pathlib
import re
import subprocess

import mutants
import runs
import samples
import structure as s

TITLE = "the same again, in any order and any surroundings"
CLOCK = 1_000_000_000
# Of the full number of runs, which is about 300.
UPDATED_AGAIN = 60
MEETINGS = 12
LIBRARY = "kestrix_surroundings.so"
# Overriding what the modes of files say, which an owner may not, but root may.
OVERRIDES = "-dac_override,-dac_read_search,-fowner"
CHANGING = re.compile(rb'<fileUID v="{[-0-9a-f]{36}}"/>|<lastModif v="[-0-9T:]+"/>')
PICTURE = samples.PROJECT / "examples/old/bitmaps/slate.png"


def fixed(context, **more):
    """An environment with the clock and the number of cores fixed."""
    return {"LD_PRELOAD": str(context.release / "tests/trust" / LIBRARY), "TRUST_TIME": str(CLOCK),
            **more}


def start(context, arguments, folder, environment):
    return runs.run_process(context.release, arguments, folder, environment)


def contents(folder):
    """What is in the files of a folder, by their names."""
    return {str(path.relative_to(folder)): path.read_bytes() for path in sorted(folder.rglob("*"))
            if path.is_file()}


def write(folder, files):
    for name, content in files.items():
        path = folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)
        os.utime(path, (CLOCK, CLOCK))


# A second update of what was updated in its place.


def update_in_place(context, folder, name):
    arguments = ["update", name, "--output-path", "{inputPath}", "--output-name", "{inputName}"]
    return start(context, arguments, folder, fixed(context))


def check_again(context, case):
    """An update, a second and a third one of a sample or a mutant give the same bytes."""
    seed = context.seeds[case % len(context.seeds)]
    random = context.random(seed, f"again-{case}")
    sample = random.choice([one for one in mutants.pool() if one.kind == "obl"])
    files, _ = mutants.files_of(random, sample)
    folder = context.workplace.empty_folder()
    write(folder, {**files, samples.COMPANION: samples.companion()})
    former = None
    for number in range(3):
        run = update_in_place(context, folder, "a.obl")
        if (broken := runs.broken_bound(run)) is not None:
            return f"update in place {broken}\n  {run}"
        if run.code == 1 and number == 0:
            return None
        if run.code == 1:
            return f"what update has written cannot be updated, {seed}-{case}\n  {run}"
        now = contents(folder)
        if former is not None and now != former:
            write(folder, files)
            kept = context.keep(f"again-{seed}-{case}", folder)
            return f"update number {number + 1} changes what the one before has written; see {kept}"
        former = now
    return None


# Surroundings. A scenario makes files and arguments for a folder, which has a folder `out` in it.


def library():
    """Packages that depend on each other, in two folders, and a picture."""
    many = {f"many/p{k}.obl": s.package(s.graph("g", 1), s.dependency(
        f"p{(k + 1) % 12}.obl", 50 + (k + 1) % 12) + s.dependency("?himself", 50 + k)).encode()
            for k in range(12)}
    return {"a.obl": samples.everything(), "b.obl": samples.companion(),
            "p.png": PICTURE.read_bytes(), "c.oblasm": s.assembly(), "c.xml": one_description(),
            "d.oblar": s.stored_archive(s.archived_assemblies([one_description()] * 2)),
            "old.obl": old_package(), **many}


def one_description():
    return s.description(s.described_graph(
        "pkg://parts/g", '<input identifier="i" uid="1" type="0" default="1.5"/>',
        '<output identifier="o" uid="2"/>')).encode()


def old_package():
    path = samples.PROJECT / "tests/golden/chains/1.0.1.3000/input.obl"
    return re.sub(rb'<filename v="[^"]*"', b'<filename v="b.obl"', path.read_bytes())


SCENARIOS = {
    "update": ["update", "a.obl"],
    "update of all": ["update", "a.obl", "old.obl", "many/p3.obl"],
    "update of an old package": ["update", "old.obl"],
    "update of an assembly": ["update", "c.oblasm"],
    "update of an archive": ["update", "d.oblar"],
    "freezing": ["graph-parameters-editor", "a.obl", "--switch-to-constant", "size@0.25",
                 "--set-default-value", "count@3"],
    "specialization": ["specialization", "a.obl", "--connect-image", "mask@path@p.png@level@0.5"],
    "specialization of an assembly": ["specialization", "c.oblasm", "--hide-parameters"],
}
PRESETS = ["--presets-path", "presets"]
ENVIRONMENTS = [
    *({"QT_HASH_SEED": str(seed)} for seed in (0, 1, 12345)),
    *({"TZ": zone} for zone in ("UTC", "Asia/Tokyo", "XXX+12:34")),
    *({"TRUST_CORES": str(cores)} for cores in (1, 2, 8)),
    *({"LC_ALL": name} for name in ("C", "C.UTF-8", "de_DE.UTF-8", "tr_TR.UTF-8")),
    {"LANG": "", "HOME": "/nonexistent", "TMPDIR": "/nonexistent"},
]


def make_locales(context):
    """Locales with a decimal comma, and with other capital letters, if they can be made."""
    folder = context.folder / "locales"
    folder.mkdir(exist_ok=True)
    for name in ("de_DE", "tr_TR"):
        subprocess.run(["localedef", "-i", name, "-f", "UTF-8", folder / f"{name}.UTF-8"],
                       check=False, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    return {"LOCPATH": str(folder)}


def place(context):
    folder = context.workplace.empty_folder()
    write(folder, library())
    (folder / "out").mkdir()
    (folder / "presets").mkdir()
    return folder


def outputs(folder):
    """The same of what a run has written. A new package has a random fileUID, and a new resource
    the time of its file as the clocks of its zone show it."""
    return {name: CHANGING.sub(b"", content) for name, content in contents(folder / "out").items()}


def usual_arguments(scenario):
    return [*SCENARIOS[scenario], *PRESETS, "--output-path", "out"]


def usual_run(context, scenario):
    folder = place(context)
    arguments = usual_arguments(scenario)
    run = start(context, arguments, folder, fixed(context))
    return run, outputs(folder)


def compared(context, scenario, folder, run, expected):
    """What is not as in the usual run, or None. The inputs are what they were."""
    inputs = library()
    if run.code != 0:
        return f"{scenario}: fails\n  {run}"
    if outputs(folder) != expected[1]:
        return f"{scenario}: other bytes; see {context.keep(scenario, folder)}\n  {run}"
    now = {name: content for name, content in contents(folder).items() if name[:4] != "out/"}
    if now != inputs:
        differ = sorted(name for name in {*now, *inputs} if now.get(name) != inputs.get(name))
        return f"{scenario}: changes {differ}\n  {run}"
    return None


def check_environment(context, scenario, environment, expected):
    folder = place(context)
    arguments = usual_arguments(scenario)
    run = start(context, arguments, folder, fixed(context, **environment))
    broken = compared(context, scenario, folder, run, expected)
    return None if broken is None else f"{environment}: {broken}"


def is_file_name(word):
    return re.fullmatch(r"[\w/]+\.(obl|oblasm|oblar)", word) is not None


def check_folder(context, scenario, expected):
    """Two other current folders, with the inputs named from there."""
    for way in ("presets/..", "/"):
        folder = place(context)
        known = folder if way == "/" else pathlib.Path("..", folder.name)
        words = [str(known / word) if is_file_name(word) else
                 word.replace("@path@", f"@path@{known}/") for word in SCENARIOS[scenario]]
        run = start(context, [*words, "--presets-path", str(known / "presets"), "--output-path",
                              str(known / "out")], folder / way, fixed(context))
        if (broken := compared(context, scenario, folder, run, expected)) is not None:
            return f"in {way}: {broken}"
    return None


def without_powers(context, arguments, folder):
    """A run that has to do what the modes of files say, as all but those of root have."""
    if os.geteuid() != 0:
        return start(context, arguments, folder, fixed(context))
    tool = str(context.release / "kestrix")
    powers = ["--bounding-set", OVERRIDES, "--inh-caps", OVERRIDES]
    return runs.run_process(pathlib.Path("/usr/bin"), [*powers, tool, *arguments], folder,
                            fixed(context), executable="setpriv")


def check_read_only(context, scenario, expected):
    """Inputs that cannot be written, in folders that take no new file."""
    folder = place(context)
    closed = [folder, folder / "many", folder / "presets"]
    for name in library():
        (folder / name).chmod(0o444)
    for one in closed:
        one.chmod(0o555)
    run = without_powers(context, usual_arguments(scenario), folder)
    for one in closed:
        one.chmod(0o755)
    broken = compared(context, scenario, folder, run, expected)
    return None if broken is None else f"read-only: {broken}"


# Orders of inputs.


def check_order(context, number):
    """All packages of the library, in an order by chance. Their uids are in the files."""
    names = [f"many/p{k}.obl" for k in range(12)] + ["a.obl", "b.obl"]
    context.random(context.seeds[-1], f"order-{number}").shuffle(names)
    folder = place(context)
    arguments = ["update", *names, *PRESETS, "--output-path", "out"]
    run = start(context, arguments, folder, fixed(context))
    if run.code != 0:
        return f"update of all in another order fails\n  {run}"
    return outputs(folder)


# Two runs at the same time.


def check_meeting(context, number):
    """Two runs into one target: it is whole, and from one of them."""
    folder = context.workplace.empty_folder()
    graphs = 1 + 400 * (number % 5)
    write(folder, {f"{side}/p.obl": s.package(s.graph(side * 50, 1) * graphs).encode()
                   for side in "ab"})
    for name in ("one", "other", "both"):
        (folder / name).mkdir()

    def update(side, target):
        return start(context, ["update", f"{side}/p.obl", "--output-path", target], folder,
                     fixed(context))

    update("a", "one")
    update("b", "other")
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        made = [pool.submit(update, side, "both") for side in "ab"]
        ended = [one.result() for one in made]
    wanted = [contents(folder / name) for name in ("one", "other")]
    if any(run.code != 0 for run in ended) or len(wanted[0]) != 1:
        return "two runs into one target: one fails\n  " + "\n  ".join(map(str, ended))
    if contents(folder / "both") not in wanted:
        kept = context.keep(f"meeting-{number}", folder)
        return f"two runs into one target leave neither's result; see {kept}"
    return None


def some(context, cases):
    """A share of the cases, at least one."""
    every = max(1, round(1 / min(context.share, 1)))
    return list(cases)[::every]


def run(context):
    expected = {scenario: usual_run(context, scenario) for scenario in SCENARIOS}
    failures = [f"{scenario}: {run} writes nothing" for scenario, (run, written)
                in expected.items() if not written]
    locales = make_locales(context)
    surroundings = [(scenario, {**locales, **environment}) for environment in ENVIRONMENTS
                    for scenario in SCENARIOS]
    outcomes = [
        context.outcome_of(lambda case: check_again(context, case),
                           range(context.number(UPDATED_AGAIN))),
        context.outcome_of(lambda case: check_environment(context, *case, expected[case[0]]),
                           some(context, surroundings)),
        context.outcome_of(lambda one: check_folder(context, one, expected[one]),
                           some(context, SCENARIOS)),
        context.outcome_of(lambda one: check_read_only(context, one, expected[one]),
                           some(context, SCENARIOS)),
        context.outcome_of(lambda number: check_meeting(context, number),
                           range(context.number(MEETINGS)))]
    orders = [check_order(context, number) for number in range(max(2, context.number(6)))]
    failures += [one for one in orders if isinstance(one, str)]
    if len({tuple(sorted(one.items())) for one in orders if isinstance(one, dict)}) > 1:
        failures.append("the order of inputs changes what update writes")
    made = len(expected) + len(orders) + outcomes[0].runs * 2 + sum(one.runs for one in outcomes)
    return type(outcomes[0])(made, failures + [text for one in outcomes for text in one.failures])
