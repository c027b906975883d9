#!/usr/bin/env python3
"""Diagnoses the active window the way a script would: the usual client library, called from Python."""

import collections
import json
import sys

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

MOST_ELEMENTS = 3000
DEEPEST = 30
RELEVANT_ROLES = {"text", "entry", "document web", "label", "static", "paragraph", "terminal"}


def active_window():
    desktop = Atspi.get_desktop(0)
    for index in range(desktop.get_child_count()):
        application = desktop.get_child_at_index(index)
        for child in range(application.get_child_count()):
            window = application.get_child_at_index(child)
            if window and window.get_state_set().contains(Atspi.StateType.ACTIVE):
                return application, window
    return None, None


def read_text(element, node):
    try:
        count = Atspi.Text.get_n_selections(element)
        if count > 0:
            selection = Atspi.Text.get_selection(element, 0)
            start, end = selection.start_offset, selection.end_offset
        else:
            start = end = Atspi.Text.get_caret_offset(element)
        whole = Atspi.Text.get_text(element, 0, -1)
    except GLib.Error:
        return
    node["selectedTextLength"] = end - start
    node["selectedRange"] = {"location": start, "length": end - start}
    node["valueLength"] = len(whole)


def examine(element, path, depth):
    states = element.get_state_set()
    interfaces = element.get_interfaces()
    node = {
        "path": path,
        "depth": depth,
        "role": element.get_role_name(),
        "identifier": element.get_accessible_id(),
        "focused": states.contains(Atspi.StateType.FOCUSED),
        "selectedTextSettable": "EditableText" in interfaces and states.contains(Atspi.StateType.EDITABLE),
    }
    if "Text" in interfaces:
        read_text(element, node)
    children = [element.get_child_at_index(index) for index in range(element.get_child_count())]
    node["childCount"] = len(children)
    return node, [child for child in children if child]


def is_relevant(node):
    return (
        node["focused"]
        or "selectedRange" in node
        or node["role"] in RELEVANT_ROLES
        or "editor" in (node["identifier"] or "").lower()
    )


application, window = active_window()
if not window:
    sys.exit("no window is active")
queue = collections.deque([(window, "0", 0)])
scanned = 0
relevant = []
while queue and scanned < MOST_ELEMENTS:
    element, path, depth = queue.popleft()
    node, children = examine(element, path, depth)
    scanned += 1
    if is_relevant(node):
        relevant.append(node)
    if depth < DEEPEST:
        queue.extend((child, f"{path}.{index}", depth + 1) for index, child in enumerate(children))
print(
    json.dumps(
        {
            "applicationName": application.get_name(),
            "processIdentifier": application.get_process_id(),
            "scannedNodeCount": scanned,
            "truncated": bool(queue),
            "relevantNodes": relevant,
        },
        indent=2,
    )
)
