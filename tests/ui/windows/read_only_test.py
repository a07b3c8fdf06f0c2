"""The running program for a user who may not change settings: one without elevation."""

import unittest

from read_only_cases import ReadOnlyCases
from tool import Tool
from window_case import WindowCase


class ReadOnly(ReadOnlyCases, WindowCase):
    def start_without_rights(self):
        tool = Tool(self.installation, Tool.ALONE, rights="ordinary")
        self.addCleanup(tool.kill)
        return tool


if __name__ == "__main__":
    unittest.main()
