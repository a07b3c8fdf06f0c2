"""The packages under test, as CTest hands them over."""

import os
import subprocess

VERSION = os.environ["QLX_VERSION"]
NEXT_VERSION = os.environ["QLX_NEXT_VERSION"]
_FOLDERS = {VERSION: os.environ["QLX_PACKAGES"], NEXT_VERSION: os.path.join(os.environ["QLX_PACKAGES"], "next")}

LIMIT = 240  # seconds for a command: less than the test has, so that the one that hangs is named


def package(name, version=VERSION):
    """The path of that package's file."""
    path = os.path.join(_FOLDERS[version], f"{name}_{version}_{ARCHITECTURE}.deb")
    assert os.path.isfile(path), f"there is no {path}"
    return path


def output(*command, **options):
    """What the command says to both its outputs; an AssertionError with it when the command fails."""
    usual = {"stdout": subprocess.PIPE, "stderr": subprocess.STDOUT, "stdin": subprocess.DEVNULL, "timeout": LIMIT}
    options = {**usual, **options}
    ended = subprocess.run(command, check=False, text=True, **options)
    assert ended.returncode == 0, f"{' '.join(command)}: exit code {ended.returncode}\n{ended.stdout}"
    return ended.stdout


def completions(file, line):
    """What bash offers at the end of that line, by the completion in that file."""
    script = """
        . /usr/share/bash-completion/bash_completion
        . "$1"
        COMP_LINE=$2 COMP_POINT=${#2} COMP_TYPE=9 COMP_KEY=9
        read -ra COMP_WORDS <<<"$2"
        [[ $2 != *' ' ]] || COMP_WORDS+=("")
        COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
        compopt() { :; } # works in a completion only
        _qlxsim qlxsim "${COMP_WORDS[-1]}" "${COMP_WORDS[-2]}"
        printf '%s\\n' "${COMPREPLY[@]}"
    """
    return set(output("bash", "-c", script, "bash", file, line).split())


ARCHITECTURE = output("dpkg", "--print-architecture").strip()
