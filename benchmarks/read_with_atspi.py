#!/usr/bin/env python3
"""Reads the selection of the focused text the way a script would: the usual client library, called from Python."""

import json
import sys

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402

CONTEXT = 500


def active_window():
    desktop = Atspi.get_desktop(0)
    for index in range(desktop.get_child_count()):
        application = desktop.get_child_at_index(index)
        for child in range(application.get_child_count()):
            window = application.get_child_at_index(child)
            if window and window.get_state_set().contains(Atspi.StateType.ACTIVE):
                return application, window
    return None, None


def focused_text(element):
    if element.get_state_set().contains(Atspi.StateType.FOCUSED) and "Text" in element.get_interfaces():
        return element
    for index in range(element.get_child_count()):
        child = element.get_child_at_index(index)
        found = focused_text(child) if child else None
        if found:
            return found
    return None


application, window = active_window()
text = focused_text(window) if window else None
if not text or Atspi.Text.get_n_selections(text) == 0:
    sys.exit("nothing is selected")
selection = Atspi.Text.get_selection(text, 0)
whole = Atspi.Text.get_text(text, 0, -1)
start, end = selection.start_offset, selection.end_offset
print(
    json.dumps(
        {
            "applicationName": application.get_name(),
            "processIdentifier": application.get_process_id(),
            "selectedText": whole[start:end],
            "contextBefore": whole[max(0, start - CONTEXT) : start],
            "contextAfter": whole[end : end + CONTEXT],
            "selectedRange": {"location": start, "length": end - start},
            "supportsDirectReplacement": "EditableText" in text.get_interfaces(),
        },
        indent=2,
    )
)
