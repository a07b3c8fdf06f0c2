"""The program where a test can do with it what it likes."""

import os
import shutil
import tempfile
import xml.etree.ElementTree as ElementTree


class Installation:
    """A directory with the program and its configuration file, gone when closed."""

    def __init__(self, program):
        self.directory = tempfile.mkdtemp(prefix="qlx-ui-")
        self.program = os.path.join(self.directory, os.path.basename(program))
        self.file = os.path.join(self.directory, "QLXConfig.xml")
        shutil.copy(program, self.program)

    def close(self):
        shutil.rmtree(self.directory, ignore_errors=True)

    def write(self, text):
        with open(self.file, "w", encoding="utf-8") as file:
            file.write(text)

    def bytes(self):
        with open(self.file, "rb") as file:
            return file.read()

    def section(self, name):
        """The keys and texts of a section, in document order."""
        section = ElementTree.parse(self.file).getroot().find(name)
        return {child.tag: child.text or "" for child in section}
