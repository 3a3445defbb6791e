#!/usr/bin/env python3
"""Completes command lines in the shells that are installed, by the scripts that the build made."""

import os
import pathlib
import pty
import shutil
import subprocess
import sys
import tempfile
import unittest

SCRIPTS = pathlib.Path(sys.argv[1]).resolve() / "completion"


def in_bash(line, folder):
    """The completions of the last word of a line, which is split as readline splits it."""
    words = line.replace("=", " = ").split(" ")
    tool = words[0]
    program = (f"source '{SCRIPTS}/{tool}.bash'; COMP_WORDS=({' '.join(map(repr, words))}); "
               f"COMP_CWORD=$((${{#COMP_WORDS[@]}} - 1)); _{tool}; "
               "printf '%s\\n' \"${COMPREPLY[@]}\"")
    return subprocess.run(["bash", "--norc", "-c", program], cwd=folder, text=True, check=True,
                          capture_output=True).stdout.split()


def in_fish(line, folder):
    program = f"source '{SCRIPTS}/{line.split()[0]}.fish'; complete -C '{line}'"
    result = subprocess.run(["fish", "--no-config", "-c", program], cwd=folder, text=True,
                            check=True, capture_output=True,
                            env={"HOME": str(folder), "PATH": os.environ["PATH"]})
    return [completion.split("\t")[0] for completion in result.stdout.splitlines()]


ZSH_SETUP = """
mkdir functions
cp '{scripts}/{tool}.zsh' functions/_{tool}
fpath=($PWD/functions $fpath)
autoload -Uz compinit
compinit -u -D
report() {{ print -r -- "$BUFFER" > line; exit }}
zle -N report
bindkey '^X' report
bindkey '^I' expand-or-complete
print READY
"""


def in_zsh(line, folder):
    """The line behind the tabulator: zsh completes as far as all possibilities agree."""
    (folder / "setup").write_text(ZSH_SETUP.format(scripts=SCRIPTS, tool=line.split()[0]))
    child, terminal = pty.fork()
    if child == 0:
        os.chdir(folder)
        os.execvpe("zsh", ["zsh", "-f", "-i"], {**os.environ, "TERM": "dumb", "HOME": str(folder)})
    os.write(terminal, b". ./setup\r")
    shown = b""
    while b"READY\r" not in shown:
        shown += os.read(terminal, 4096)
    os.write(terminal, line.encode() + b"\t\x18")
    try:
        while os.read(terminal, 4096):
            pass
    except OSError:  # the shell has ended
        pass
    os.waitpid(child, 0)
    return (folder / "line").read_text().strip()


class Completion(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="kestrix-completion-")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        for name in ["wood.obl", "stone.oblar", "rust.oblasm", "notes.txt"]:
            (self.folder / name).touch()
        (self.folder / "presets").mkdir()

    def needs(self, shell):
        if shutil.which(shell) is None:
            self.skipTest(f"{shell} is not installed")

    def test_bash_completes_commands(self):
        self.assertEqual(in_bash("kestrix ", self.folder),
                         ["update", "specialization", "graph-parameters-editor"])

    def test_bash_completes_options_of_the_command(self):
        self.assertEqual(in_bash("kestrix update --p", self.folder), ["--presets-path"])
        self.assertEqual(in_bash("kestrix update --connect", self.folder), [])

    def test_bash_completes_ksx(self):
        self.assertEqual(in_bash("ksx --v", self.folder), ["--version"])
        self.assertEqual(in_bash("ksx inf", self.folder), ["info"])
        self.assertEqual(in_bash("ksx info --b", self.folder), ["--brief"])
        self.assertEqual(in_bash("ksx info w", self.folder), ["wood.obl"])

    def test_fish_completes_ksx(self):
        self.needs("fish")
        self.assertEqual(in_fish("ksx inf", self.folder), ["info"])
        self.assertEqual(in_fish("ksx info --b", self.folder), ["--brief"])

    def test_zsh_completes_ksx(self):
        self.needs("zsh")
        self.assertEqual(in_zsh("ksx inf", self.folder), "ksx info")
        self.assertEqual(in_zsh("ksx info --br", self.folder), "ksx info --brief")

    def test_bash_completes_packages(self):
        self.assertEqual(in_bash("kestrix update ", self.folder),
                         ["presets", "rust.oblasm", "stone.oblar", "wood.obl"])

    def test_bash_completes_folders_behind_an_option(self):
        self.assertEqual(in_bash("kestrix update --presets-path ", self.folder), ["presets"])
        self.assertEqual(in_bash("kestrix update --presets-path=p", self.folder), ["presets"])

    def test_fish_completes_commands(self):
        self.needs("fish")
        self.assertEqual(sorted(in_fish("kestrix ", self.folder)),
                         ["graph-parameters-editor", "specialization", "update"])

    def test_fish_completes_options_of_the_command(self):
        self.needs("fish")
        self.assertEqual(in_fish("kestrix specialization --connect", self.folder),
                         ["--connect-image", "--connect-input"])

    def test_fish_completes_packages(self):
        self.needs("fish")
        self.assertIn("wood.obl", in_fish("kestrix update w", self.folder))

    def test_zsh_completes_commands(self):
        self.needs("zsh")
        self.assertEqual(in_zsh("kestrix upd", self.folder), "kestrix update")

    def test_zsh_completes_options_of_the_command(self):
        self.needs("zsh")
        self.assertEqual(in_zsh("kestrix update --pre", self.folder),
                         "kestrix update --presets-path=")

    def test_zsh_completes_packages(self):
        self.needs("zsh")
        self.assertEqual(in_zsh("kestrix update w", self.folder), "kestrix update wood.obl")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
