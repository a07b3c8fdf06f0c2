"""tour.py PROGRAM PICTURES: what a technician does on a first visit, by mouse and keyboard, with a picture of each
step. Runs on a screen of its own (scripts/private-display) against a suite (scripts/with-simulator)."""

import os
import subprocess
import sys
from types import SimpleNamespace

TREE = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
sys.path.insert(0, os.path.join(TREE, "tests", "ui"))

from tool import Tool, screenshot, wait_for  # noqa: E402  the path is set above


class Tour:
    """Drives the program and numbers the pictures."""

    def __init__(self, program, pictures):
        self.installation = SimpleNamespace(program=program, directory=os.path.dirname(program))
        self.pictures = pictures
        self.count = 0
        os.makedirs(pictures, exist_ok=True)
        self.tool = Tool(self.installation)

    def picture(self, name):
        """The screen as it is once the program has nothing more to draw."""
        self.count += 1
        path = os.path.join(self.pictures, f"{self.count:02d}-{name}.png")
        previous = None

        def settled():
            nonlocal previous
            screenshot(path)
            with open(path, "rb") as file:
                last, previous = previous, file.read()
            return last == previous

        wait_for(settled, "a screen that stands still")
        print(f"picture {path}", flush=True)

    def change_logging(self):
        self.tool.tab("Logging")
        self.tool.choose(1019, "Error", before=1022)
        self.tool.enter(1023, "2048")
        self.tool.check(1037, False)
        self.picture("logging-changed")
        self.tool.click(1026)
        self.tool.box_text()
        self.picture("logging-saved")
        self.tool.answer("OK", "Log settings saved.")

    def change_msr(self):
        self.tool.tab("MSR")
        self.tool.check(1006, True)
        self.tool.check(1012, True)
        self.tool.enter(1014, "<card>")
        self.picture("msr-changed")
        self.tool.click(1024)
        self.tool.answer("OK", "MSR settings saved.")

    def visit(self):
        self.tool.main_window()
        self.picture("start")
        self.change_logging()
        self.change_msr()
        self.tool.click(1031)
        self.tool.box_text()
        self.picture("all-saved")
        self.tool.answer("OK", "All settings saved.")
        self.close_with_restart()

    def visit_again(self):
        """The log level that the first visit chose is in force now: what the tool logs reaches the log file."""
        self.tool = Tool(self.installation)
        self.tool.main_window()
        self.tool.tab("Printer")
        log = os.path.join(self.installation.directory, "log", "qlx.log")
        wait_for(lambda: os.path.exists(log) and os.path.getsize(log) > 0, "a record in the log file")
        self.picture("second-visit")
        self.tool.close()
        self.end()

    def close_with_restart(self):
        self.tool.close()
        self.tool.box_text()
        self.picture("restart-question")
        self.tool.answer("Yes")
        wait_for(lambda: self.tool.box_text().startswith("Quillon services restarted."), "the end of the restart")
        self.picture("services-restarted")
        self.tool.answer("OK")
        self.end()

    def end(self):
        code = self.tool.wait()
        if code != 0:
            raise SystemExit(f"tour: the tool ended with {code}")


def main():
    if len(sys.argv) != 3:
        raise SystemExit("usage: tour.py PROGRAM PICTURES")
    window_manager = subprocess.Popen(["openbox"], stderr=subprocess.DEVNULL)
    tour = Tour(os.path.abspath(sys.argv[1]), os.path.abspath(sys.argv[2]))
    try:
        tour.visit()
        tour.visit_again()
    finally:
        tour.tool.kill()
        window_manager.terminate()
        window_manager.wait()


if __name__ == "__main__":
    main()
