"""Prints what assistive technology is told of events of the kinds given: a line "[]" once it listens, then one for each
event, as JSON: kind, role and name of its item, and the item's value where it has one. What had gone when its news was
read has neither name nor value.

A process of its own: from at-spi 2.62 on, one that listens a second time hears nothing."""

import json
import sys

import pyatspi
from gi.repository import GLib
from window import role_of


def note(event):
    kind, role, name, value = event.type.split(":")[2], "", "", None
    try:
        role, name = role_of(event.source), event.source.name
        value = event.source.queryValue().currentValue if kind == "accessible-value" else None
    except (GLib.GError, NotImplementedError):
        pass
    print(json.dumps([kind, role, name, value]), flush=True)


pyatspi.Registry.registerEventListener(note, *sys.argv[1:])
print("[]", flush=True)
GLib.MainLoop().run()
