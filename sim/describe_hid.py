#!/usr/bin/python3
"""describe_hid.py [FILE]: reads one USB HID device a line and prints them as umockdev-run takes them.

A line is VENDOR PRODUCT PAGE:USAGE[,PAGE:USAGE...] SERIAL NAME, numbers in hexadecimal, texts quoted as in the shell,
"-" for no text. A device has one top-level collection for each pair. A "+" behind a usage adds a collection within
that one. Empty lines and lines that begin with # are passed over.
"""

import fileinput
import shlex

TEMPLATE = """\
P: /devices/pci0000:00/0000:00:14.0/usb1/1-{number}
E: SUBSYSTEM=usb
E: DEVTYPE=usb_device
E: PRODUCT={vendor:x}/{product:x}/100
A: idVendor={vendor:04x}
A: idProduct={product:04x}
A: bcdDevice=0100
{texts}
P: /devices/pci0000:00/0000:00:14.0/usb1/1-{number}/1-{number}:1.0
E: SUBSYSTEM=usb
E: DEVTYPE=usb_interface
A: bInterfaceNumber=00

P: /devices/pci0000:00/0000:00:14.0/usb1/1-{number}/1-{number}:1.0/{hid}
E: SUBSYSTEM=hid
E: DRIVER=hid-generic
E: HID_ID=0003:{vendor:08X}:{product:08X}
E: HID_NAME={name}
E: HID_PHYS=usb-0000:00:14.0-{number}/input0
E: HID_UNIQ={serial}
H: report_descriptor={descriptor}

P: /devices/pci0000:00/0000:00:14.0/usb1/1-{number}/1-{number}:1.0/{hid}/hidraw/hidraw{index}
N: hidraw{index}
E: SUBSYSTEM=hidraw
E: DEVNAME=/dev/hidraw{index}
E: MAJOR=241
E: MINOR={index}
A: dev=241:{index}
L: device=../../../{hid}
"""


def number(value):
    """A 16-bit number in a descriptor's order, low byte first."""
    return f"{value & 0xFF:02X}{value >> 8:02X}"


def collection(usage_text):
    """One top-level application collection with an input report of eight bytes."""
    page, usage = (int(part, 16) for part in usage_text.rstrip("+").split(":"))
    nested = f"0A{number(usage + 1)}A102C0" if usage_text.endswith("+") else ""
    return f"06{number(page)}0A{number(usage)}A101150026FF00750895400901{nested}8102C0"


def device(line):
    """What a line says, by the names in TEMPLATE."""
    vendor_text, product_text, usages, serial, name = shlex.split(line)
    vendor, product = int(vendor_text, 16), int(product_text, 16)
    serial, name = ("" if text == "-" else text for text in (serial, name))
    return {
        "vendor": vendor,
        "product": product,
        "serial": serial,
        "name": name,
        "descriptor": "".join(map(collection, usages.split(","))),
    }


def devices(lines):
    return [device(line) for line in lines if line.strip() and not line.startswith("#")]


def describe(index, values):
    named = (("product", values["name"]), ("serial", values["serial"]))
    return TEMPLATE.format(
        number=index + 1,
        index=index,
        hid=f"0003:{values['vendor']:04X}:{values['product']:04X}.{index + 1:04X}",
        texts="".join(f"A: {key}={text}\n" for key, text in named if text),
        **values,
    )


def main():
    with fileinput.input(encoding="utf-8") as lines:
        print("\n".join(describe(index, values) for index, values in enumerate(devices(lines))))


if __name__ == "__main__":
    main()
