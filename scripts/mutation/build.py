"""A copy of the sources with a build of its own, in which one source at a time is exchanged."""

import json
import re
import shlex
import shutil
import subprocess
from pathlib import Path

# A change in one of these libraries is linked alone: they are shared in this build.
SHARED = ("orv", "ksx", "kestrixcli", "ksxkit")
EXECUTABLES = ("orv_tests", "ksx_tests", "imageformats_tests", "kestrix_tests", "kit_tests")


class BuildError(Exception):
    pass


def output_of(command, **options):
    return subprocess.run(command, check=True, text=True, stdout=subprocess.PIPE, **options).stdout


def linker():
    """Returns the option for the fastest linker that is there; the one of g++ is slow."""
    fast = next((name for name in ("mold", "lld", "gold") if shutil.which(f"ld.{name}")), None)
    return [f"-fuse-ld={fast}"] if fast else []


class Build:
    def __init__(self, root, folder):
        self.root = Path(root)
        self.folder = Path(folder)
        self.tree = self.folder / "tree"
        self.binaries = self.folder / "build"
        self._clean = ""
        self._compile = {}
        self._link = {}

    def prepare(self, revision, jobs):
        """Brings tree and build to a revision. Raises BuildError when it does not build."""
        # Said in the checkout, whose HEAD is not that of the tree.
        self._check_out(output_of(["git", "rev-parse", revision], cwd=self.root).strip())
        for left in self.folder.glob("work-*"):  # by a run that was stopped
            shutil.rmtree(left)
        self._share_libraries()
        self._clean = self._changes()
        self._configure()
        self.build(jobs)
        database = json.loads((self.binaries / "compile_commands.json").read_text())
        self._compile = {entry["file"]: shlex.split(entry["command"]) for entry in database}
        for library in SHARED:
            steps = output_of(["ninja", "-C", self.binaries, "-t", "commands", f"lib{library}.so"])
            self._link[library] = shlex.split(steps.splitlines()[-1])

    def build(self, jobs):
        command = ["ninja", "-C", self.binaries, f"-j{jobs}", *EXECUTABLES, "kestrix"]
        with open(self.folder / "build.log", "w") as log:
            if subprocess.run(command, stdout=log, stderr=log).returncode != 0:
                raise BuildError(f"does not build, see {log.name}")

    def sources(self):
        return output_of(["git", "ls-files", "*.cpp"], cwd=self.tree).splitlines()

    def read(self, path):
        return (self.tree / path).read_text()

    def library_of(self, path):
        """Returns the shared library that the source is linked into, or None."""
        command = self._compile.get(str(self.tree / path))
        if command is None:
            return None
        target = re.match(r"CMakeFiles/(\w+)\.dir/", command[command.index("-o") + 1])
        return target[1] if target and target[1] in SHARED else None

    def build_beside(self, path, text, place):
        """Makes the library of a source with other text in the folder `place`, and nothing else.

        Returns false when the text does not compile."""
        source = self.tree / path
        place.mkdir(parents=True, exist_ok=True)
        changed = place / source.name
        changed.write_text(text)
        made = str(place / "changed.o")
        command = list(self._compile[str(source)])
        old = command[command.index("-o") + 1]
        if not self._run(self._compile_command(command, source, changed, made)):
            return False
        library = self.library_of(path)
        command = [made if word == old else word for word in self._link[library]]
        command[command.index("-o") + 1] = str(place / f"lib{library}.so")
        # The command is one of a shell, and begins and ends with a colon. What is missing shall be
        # missed here, and not when a test is started.
        return self._run([word for word in command if word not in (":", "&&")] + ["-Wl,-z,defs"])

    def has_same_code(self, path, text, place):
        """Says whether optimising makes the same code of a source and of another text for it."""
        codes = []
        for words in (self.read(path), text):
            changed = place / Path(path).name
            changed.write_text(words)
            command = list(self._compile[str(self.tree / path)])
            made = place / "code.o"
            command = self._compile_command(command, self.tree / path, changed, str(made))
            if not self._run([*command, "-O2"]):
                return False
            codes.append(made.read_bytes())
        return codes[0] == codes[1]

    def exchange(self, path, text):
        (self.tree / path).write_text(text)

    def restore(self):
        """Takes back what a test or an exchange has changed in the tree."""
        if self._changes() == self._clean:
            return
        output_of(["git", "checkout", "--quiet", "--force", "HEAD", "."], cwd=self.tree)
        output_of(["git", "clean", "-fdq"], cwd=self.tree)
        self._share_libraries()

    def _check_out(self, revision):
        if (self.tree / ".git").exists():
            output_of(["git", "checkout", "--quiet", "--force", "--detach", revision], cwd=self.tree)
            output_of(["git", "clean", "-fdq"], cwd=self.tree)
            return
        self.folder.mkdir(parents=True, exist_ok=True)
        output_of(["git", "worktree", "prune"], cwd=self.root)
        add = ["git", "worktree", "add", "--quiet", "--detach", str(self.tree), revision]
        output_of(add, cwd=self.root)

    def _share_libraries(self):
        top = self.tree / "CMakeLists.txt"
        names = "|".join(SHARED)
        text = re.sub(rf"add_library\(({names}) STATIC\)", r"add_library(\1 SHARED)", top.read_text())
        top.write_text(text)

    def _changes(self):
        return output_of(["git", "status", "--porcelain"], cwd=self.tree)

    def _configure(self):
        fast = " ".join(linker())
        command = [
            "cmake", "-S", self.tree, "-B", self.binaries, "-G", "Ninja",
            "-DCMAKE_BUILD_TYPE=Release",
            "-DCMAKE_CXX_FLAGS_RELEASE=-O1 -DNDEBUG",
            "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON",
            "-DKESTRIX_BENCHMARKS=OFF",
            # A change may leave something unused, which is no reason not to try it.
            "-DKESTRIX_WERROR=OFF",
            f"-DCMAKE_EXE_LINKER_FLAGS={fast} -Wl,--enable-new-dtags",
            f"-DCMAKE_SHARED_LINKER_FLAGS={fast} -Wl,--enable-new-dtags",
            f"-DCMAKE_MODULE_LINKER_FLAGS={fast} -Wl,--enable-new-dtags",
        ]  # fmt: skip
        with open(self.folder / "configure.log", "w") as log:
            if subprocess.run(command, stdout=log, stderr=log).returncode != 0:
                raise BuildError(f"cannot be configured, see {log.name}")

    @staticmethod
    def _compile_command(command, source, changed, made):
        # The cache of the compiler is no help for a text that is compiled once.
        names = [Path(word).name for word in command]
        if "ccache" in names:
            command = command[names.index("ccache") + 1 :]
        command[command.index("-o") + 1] = made
        command[command.index("-c") + 1] = str(changed)
        return [*command, "-iquote", str(source.parent), "-O0", "-w"]

    def _run(self, command):
        quiet = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
        return subprocess.run(command, cwd=self.binaries, **quiet).returncode == 0
