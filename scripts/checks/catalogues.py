"""The catalogues of translations and the texts of the source that belong into them."""

import subprocess
from pathlib import Path

HEADER = """\
# The texts of QLXConfig; scripts/translations keeps them in step with the source.
msgid ""
msgstr ""
"Project-Id-Version: QLXConfig\\n"
"MIME-Version: 1.0\\n"
"Content-Type: text/plain; charset=UTF-8\\n"
"Content-Transfer-Encoding: 8bit\\n"
"""


def tree_root(root=None):
    """The tree named, else the one that this file lies in."""
    return Path(root).resolve() if root else Path(__file__).resolve().parents[2]


def template_path(root):
    return root / "translations" / "qlxconfig.pot"


def language_paths(root):
    """The catalogue of every language, sorted."""
    return sorted((root / "translations").glob("*.po"))


def extract(root):
    """The template for the source as it is. It bears no date and no line numbers: it changes only with the texts."""
    sources = sorted(path.relative_to(root) for path in (root / "src").rglob("*") if path.suffix in (".cpp", ".h"))
    command = ["xgettext", "--c++", "--from-code=UTF-8", "--keyword", "--keyword=_", "--keyword=Translatable"]
    command += ["--add-comments=TRANSLATORS:", "--add-location=file", "--omit-header", "--output=-", *map(str, sources)]
    found = subprocess.run(command, cwd=root, capture_output=True, text=True, check=True).stdout
    return HEADER + "\n" + found.lstrip("\n") if found else HEADER
