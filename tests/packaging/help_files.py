"""The files of the help, as the guide of this tree has them."""

from pathlib import Path

DOCUMENTS = Path(__file__).resolve().parents[2] / "docs"


def help_files():
    pages = [f"help/{path.stem}.html" for path in (DOCUMENTS / "guide").glob("*.md")]
    pictures = [f"help/{path.stem}.gif" for path in (DOCUMENTS / "pictures").glob("*.png")]
    return ["help/contents", *pages, *pictures]
