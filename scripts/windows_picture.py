"""windows_picture.py PROGRAM PICTURE: the first page of the program for Windows as it is installed on a terminal, its
services running and its ports in use. tests/ui/windows/run gives it a screen and a Windows, QLX_DRIVER names the program
that speaks to windows."""

import os
import shutil
import sys
from types import SimpleNamespace

from devices import Ports
from driven_tool import still_screenshot
from services import Services
from tool import Tool
from waiting import wait_for
from window_case import complete_file

PORTS = {"MSR_USB": "COM3", "LD_USB": "COM4", "IB_USB": "COM5", "CD_USB": "COM6", "CD_PCI": "COM7", "PRINTER_USB": "COM8"}
SERVICES = 2002
DRIVE = os.path.join(os.environ["WINEPREFIX"], "drive_c")


class InstalledTool(Tool):
    """The program on the first drive of its Windows."""

    @staticmethod
    def path_shown(path):
        return "C:\\" + os.path.relpath(path, DRIVE).replace("/", "\\")


def main():
    program, picture = sys.argv[1:]
    directory = os.path.join(DRIVE, "Program Files", "Harlune", "Quillon")
    os.makedirs(directory)
    installed = SimpleNamespace(directory=directory, program=shutil.copy(program, directory))
    rows = "".join(f"<{row}>{port}</{row}>" for row, port in PORTS.items())
    with open(os.path.join(directory, "QLXConfig.xml"), "w", encoding="utf-8") as file:
        file.write(complete_file().replace("<Ports_Configuration>", "<Ports_Configuration>" + rows))
    services = Services(installed)
    ports = Ports(*PORTS.values())
    tool = InstalledTool(installed)
    try:
        tool.await_start()
        wait_for(lambda: tool.name(SERVICES) == "Services: running", "the state of the services")
        still_screenshot(picture)
    finally:
        tool.kill()
        ports.close()
        services.close()


main()
