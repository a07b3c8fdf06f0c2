#!/usr/bin/python3
"""with_hid_devices.py DEVICES COMMAND...: runs COMMAND with a Windows of its own, into which the USB HID devices of the
file DEVICES are plugged, and ends with its exit code. sim/describe_hid.py tells what the file holds.

The Windows finds them in a mocked /sys, and reads their descriptors through recorded answers of their drivers.
"""

import subprocess
import sys
import tempfile
from pathlib import Path

TREE = Path(__file__).resolve().parents[3]
sys.path.insert(0, str(TREE / "sim"))

import describe_hid  # noqa: E402

# Its drivers look for devices once, when it starts, and by default through a library that knows gamepads only.
INSIDE = r"""
{
  "$WINE" reg add 'HKLM\System\CurrentControlSet\Services\winebus' /v 'Enable SDL' /t REG_DWORD /d 0 /f
  "$WINESERVER" -k
  "$WINESERVER" -w
  "$WINESERVER" -p
  "$WINE" wineboot
} </dev/null >/dev/null 2>&1
"$@"
"""


def bytes_of(number, count):
    """A number as the kernel hands it over, low byte first."""
    return number.to_bytes(count, "little").hex().upper()


def answers(index, device):
    descriptor = device["descriptor"]
    size = bytes_of(len(descriptor) // 2, 4)
    usb_bus = bytes_of(3, 4)
    return (
        f"@DEV /dev/hidraw{index}\n"
        f"HIDIOCGRDESCSIZE 0 {size}\n"
        f"HIDIOCGRDESC 0 {size}{descriptor:0<8192}\n"
        f"HIDIOCGRAWINFO 0 {usb_bus}{bytes_of(device['vendor'], 2)}{bytes_of(device['product'], 2)}\n"
    )


def main():
    devices = describe_hid.devices(Path(sys.argv[1]).read_text(encoding="utf-8").splitlines())
    with tempfile.TemporaryDirectory() as name:
        directory = Path(name)
        description = directory / "devices.umockdev"
        description.write_text("\n".join(map(describe_hid.describe, range(len(devices)), devices)), encoding="utf-8")
        command = ["umockdev-run", "-d", description]
        for index, device in enumerate(devices):
            ioctls = directory / f"hidraw{index}.ioctl"
            ioctls.write_text(answers(index, device), encoding="utf-8")
            command += ["-i", f"/dev/hidraw{index}={ioctls}"]
        command += ["--", TREE / "scripts" / "with-wine", "sh", "-c", INSIDE, "with_hid_devices", *sys.argv[2:]]
        return subprocess.run(command, check=False).returncode


if __name__ == "__main__":
    sys.exit(main())
