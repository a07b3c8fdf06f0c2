"""tour.py PROGRAM PICTURES: what a technician does on a first visit, by mouse and keyboard, with a picture of each
step, NUMBER-NAME.png; those of the guide and of the README are among them (scripts/pictures). Runs on a screen of its own
(scripts/private-display) against a suite (scripts/with-simulator)."""

import os
import subprocess
import sys
from types import SimpleNamespace

TREE = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
sys.path[:0] = [os.path.join(TREE, "tests", "ui", "linux"), os.path.join(TREE, "tests", "ui")]

from driven_tool import still_screenshot  # noqa: E402  the path is set above
from tool import Tool  # noqa: E402
from waiting import wait_for  # noqa: E402


SIMULATOR = os.path.join(TREE, "build", "linux-release", "bin", "qlxsim")
LIST = 1056
MSR, DISPLAY, IBUTTON, DRAWERS, _, PCI_DRAWER, PRINTER = range(7)
OTHER_PORTS = [
    (MSR, "MSR", "COM3"),
    (DISPLAY, "Line Display", "COM4"),
    (IBUTTON, "iButton", "COM5"),
    (PCI_DRAWER, "Cash Drawer (PCI)", "COM7"),
    (PRINTER, "Printer", "COM8"),
]
DEMOS = [
    (DISPLAY, "Line Display Demo", [1067], "HARLUNE TEST"),
    (IBUTTON, "iButton Demo", ["touch 1122334455667788"], "Byte(s) Received:"),
    (DRAWERS, "Cash Drawer Demo", [1067, 1069], "<Cash Drawer 2 is Opened.>"),
    (PCI_DRAWER, "Cash Drawer Demo", [1069], "<Cash Drawer 1 is Closed.>"),
    (PRINTER, "Printer Demo", [1067], "<COM Port Opened>"),
]


class Tour:
    """Drives the program and numbers the pictures."""

    def __init__(self, program, pictures):
        self.installation = SimpleNamespace(program=program, directory=os.path.dirname(program))
        self.pictures = pictures
        self.count = 0
        os.makedirs(pictures, exist_ok=True)
        self.tool = Tool(self.installation)

    def picture(self, name):
        """The screen, numbered and named."""
        self.count += 1
        path = os.path.join(self.pictures, f"{self.count:02d}-{name}.png")
        still_screenshot(path)
        print(f"picture {path}", flush=True)

    def change_logging(self):
        self.tool.tab("Logging")
        self.tool.choose(1019, "Trace", before=1022)
        self.tool.enter(1023, "2048")
        self.picture("logging")
        self.tool.click(1026)
        self.tool.box_text()
        self.picture("logging-saved")
        self.tool.answer("OK", "Log settings saved.")

    def change_msr(self):
        self.tool.tab("MSR")
        self.tool.check(1006, True)
        self.tool.check(1012, True)
        self.tool.enter(1014, "<card>")
        self.picture("msr")
        self.tool.click(1024)
        self.tool.answer("OK", "MSR settings saved.")

    def change_ibutton(self):
        self.tool.tab("iButton")
        self.tool.enter(1046, "Key:")
        self.tool.click(1048)
        wait_for(lambda: self.tool.text(1040) == "4B 65 79 3A", "the converted prefix")
        self.tool.enter(1041, "0d0a")
        self.picture("ibutton")
        self.tool.click(1034)
        self.tool.answer("OK", "iButton settings saved.")

    def configure(self, row, title, port, devices=()):
        """Binds a row to a port, and the lists of devices to their items."""
        self.tool.select(LIST, row)
        self.tool.click(1058)
        self.tool.active_window(title)
        self.tool.pick(1051, port)
        for number, item in devices:
            self.tool.pick(number, item)

    def bind_ports(self):
        self.tool.tab("COM Ports")
        self.configure(DRAWERS, "Cash Drawer (USB) Configuration", "COM6", [(1061, "a"), (1062, "b")])
        self.picture("configure")
        self.tool.click(1)
        self.tool.main_window()
        for row, title, port in OTHER_PORTS:
            self.configure(row, title + " Configuration", port)
            self.tool.click(1)
            self.tool.main_window()
        self.picture("ports")

    def try_devices(self):
        """The first demo restarts the services; from then on each device is there."""
        self.open_demo(MSR)
        self.tool.answer("Yes")
        wait_for(lambda: self.tool.box_text().startswith("Quillon services restarted."), "the end of the restart")
        self.picture("restarted-before-the-demo")
        self.tool.answer("OK")
        self.demo("MSR Demo", ["swipe"], "Byte(s) Received:")
        for row, title, commands, shown in DEMOS:
            self.open_demo(row)
            self.demo(title, commands, shown)

    def open_demo(self, row):
        self.tool.select(LIST, row)
        self.tool.click(1060)

    def demo(self, title, steps, shown):
        """Steps are numbers of buttons and commands to the simulated devices."""
        self.tool.active_window(title)
        for step in steps:
            if isinstance(step, int):
                self.tool.click(step)
            else:
                subprocess.run([SIMULATOR, "--control", os.environ["QLXSIM_CONTROL"], *step.split()], check=True)
        wait_for(lambda: shown in self.tool.text(1065), f"{shown!r} in the demo")
        self.picture(title.lower().replace(" ", "-"))
        self.tool.key("Escape")
        self.tool.main_window()

    def visit(self):
        self.tool.main_window()
        self.picture("start")
        self.bind_ports()
        self.try_devices()
        self.change_logging()
        self.change_msr()
        self.change_ibutton()
        self.tool.click(1031)
        self.tool.box_text()
        self.picture("all-saved")
        self.tool.answer("OK", "All settings saved.")
        self.tool.close()
        self.close_with_restart()

    def visit_again(self):
        """The log level that the first visit chose is in force now: what the tool logs reaches the log file."""
        self.tool = Tool(self.installation)
        self.tool.main_window()
        self.tool.await_printer()
        self.set_up_printer()
        log = os.path.join(self.installation.directory, "log", "qlx.log")
        wait_for(lambda: os.path.exists(log) and os.path.getsize(log) > 0, "a record in the log file")
        self.tool.close()
        self.close_with_restart()

    def set_up_printer(self):
        """The page is filled from what the simulated printer answers."""
        self.tool.tab("Printer")
        wait_for(self.tool.has_printer_open, "the question to the printer")
        self.picture("printer-asked")
        wait_for(lambda: self.tool.enabled(1000), "the printer's answer")
        self.tool.pick(1074, "852")
        self.tool.check(1096, True)
        self.picture("printer")
        self.tool.click(1073)
        self.tool.answer("OK", "Printer settings saved.")

    def visit_without_services(self):
        """What a failed restart looks like: nobody answers on the bus. The help is there all the same."""
        self.tool = Tool(self.installation, Tool.ALONE)
        self.tool.main_window()
        self.tool.await_printer()
        self.tool.tab("Logging")
        self.tool.key("F1")
        self.tool.active_window("Help: Logging")
        self.picture("help")
        self.tool.key("Escape")
        self.tool.await_no_other_window()
        self.tool.click(1026)
        self.tool.answer("OK", "Log settings saved.")
        self.tool.close()
        self.tool.answer("Yes")
        wait_for(lambda: "GetLastError" in self.tool.box_text(), "the end of the restart")
        self.picture("restart-failed")
        self.tool.answer("OK")
        self.tool.answer("OK")
        self.end()

    def close_with_restart(self):
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
        tour.visit_without_services()
    finally:
        tour.tool.kill()
        window_manager.terminate()
        window_manager.wait()


if __name__ == "__main__":
    main()
