"""Bugs that somebody wrote down, one in each file tests/planted/NAME.bug."""

from collections import namedtuple

from .errors import Unplantable
from .test_programs import is_product


class WrittenBug(namedtuple("WrittenBug", "name file old new")):
    """Lines of a file and those that replace them."""

    def planted_in(self, source):
        """The text of the file with the bug."""
        count = ("\n" + source).count("\n" + self.old)
        if count != 1:
            raise Unplantable(f"the lines that it takes out are found {count} times in {self.file}")
        return ("\n" + source).replace("\n" + self.old, "\n" + self.new)[1:]


def read_bug(root, path):
    """The bug in this file. Throws Unplantable unless it fits the tree below `root`."""
    if not path.is_file():
        raise Unplantable("there is no such bug")
    head, first_heading, rest = path.read_text(encoding="utf-8").partition("\n---- instead of\n")
    old, second_heading, new = rest.partition("---- stands\n")
    sentence, _, file = head.partition("\n\n")
    if not (sentence and first_heading and second_heading and old.endswith("\n") and (not new or new.endswith("\n"))):
        raise Unplantable("it is not written as bugs are")
    if not (is_product(file) and (root / file).is_file()):
        raise Unplantable(f'"{file}" is no file of the product')
    bug = WrittenBug(path.stem, file, old, new)
    bug.planted_in((root / file).read_text(encoding="utf-8"))
    return bug


def read_bugs(root, names):
    """The bugs of these names, or all. Those that do not fit are printed, with the reason, and counted."""
    folder = root / "tests" / "planted"
    bugs, errors = [], 0
    for path in [folder / f"{name}.bug" for name in names] or sorted(folder.glob("*.bug")):
        try:
            bugs.append(read_bug(root, path))
        except Unplantable as error:
            print(f"{path.stem}: {error}")
            errors += 1
    return bugs, errors
