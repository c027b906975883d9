"""Which test programs can find a bug, by the folder that the bug is in.

All of them run without an application: the fault sweeps and the tests on real desktops take too long to be run for each
bug.
"""

from collections import namedtuple

# `folder` is the one below tests/, `shards` the number of processes that share the tests of a program which mostly
# waits, `launcher` the command that runs it, if it does not run by itself.
Program = namedtuple("Program", "folder name shards launcher", defaults=(1, ()))

TEXT = Program("text", "lomaris_text_tests")
JSON = Program("json", "lomaris_json_tests")
KEEPING = Program("keeping", "lomaris_keeping_tests")
MODEL = Program("model", "lomaris_model_tests")
ADAPTER = Program("adapter", "lomaris_adapter_tests")
FALLBACK = Program("fallback", "lomaris_fallback_tests")
SERVICE = Program("service", "lomaris_service_tests")
BRIDGE = Program("bridge", "lomaris_bridge_tests")
PROCESS = Program("bridge", "lomaris_process_tests")
PLATFORM = Program("platform", "lomaris_platform_tests")
SIMULATOR = Program("simulator", "lomaris_simulator_tests")
SCENARIOS = Program("simulator", "lomaris_scenarios")
LINUX = Program("linux", "lomaris_linux_tests", 4)
X11 = Program("x11", "lomaris_x11_tests", 4, ("tools/virtual-desktop", "--x-server-only", "--"))

LIBRARY = (ADAPTER, FALLBACK, SERVICE, BRIDGE, SCENARIOS, PROCESS)

# The programs for a bug in each folder of the product, in the order in which they run.
PROGRAMS = {
    "text/": (TEXT, JSON, MODEL, *LIBRARY),
    "json/": (JSON, MODEL, *LIBRARY),
    "accessibility/adapter/": LIBRARY,
    "accessibility/fallback/": (FALLBACK, ADAPTER, SERVICE, BRIDGE, SCENARIOS, PROCESS),
    "accessibility/model/": (MODEL, *LIBRARY),
    "accessibility/service/": (SERVICE, ADAPTER, BRIDGE, SCENARIOS, PROCESS),
    "bridge/": (BRIDGE, PROCESS, SCENARIOS),
    "platform/keeping/": (KEEPING, PLATFORM, *LIBRARY, X11),
    "platform/linux/": (LINUX, X11, PROCESS),
    "platform/posix/": (LINUX, X11, PROCESS),
    "platform/simulated/": (PLATFORM, SIMULATOR, SCENARIOS, FALLBACK, ADAPTER, SERVICE, BRIDGE),
    "simulator/": (SIMULATOR, SCENARIOS),
}

FOLDERS = tuple(PROGRAMS)


def is_product(file):
    """Whether a bug may be planted in this file."""
    return file.startswith(FOLDERS)


def programs_for(file):
    """The programs that can find a bug in this file of the product."""
    return next(programs for folder, programs in PROGRAMS.items() if file.startswith(folder))


def programs_for_all(files):
    """The programs for these files, each once."""
    return list(dict.fromkeys(program for file in files for program in programs_for(file)))
