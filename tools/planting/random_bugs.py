"""Bugs that a seed determines: one token or one statement of the product, changed."""

import random
import subprocess
from collections import defaultdict, namedtuple

from .errors import Broken
from .test_programs import FOLDERS, is_product
from .token_changes import changes_of


class RandomBug(namedtuple("RandomBug", "file line change")):
    """One change of a file; `line` is the number of the line in which it begins."""

    @property
    def name(self):
        old, new = (" ".join(text.split()) for text in self.change[1:])
        change = f'"{old}" -> "{new}"' if new else f'"{old}" dropped'
        return f"{self.file}:{self.line}: {change}"

    def planted_in(self, source):
        """The text of the file with the bug."""
        start, old, new = self.change
        return source[:start] + new + source[start + len(old) :]


def files_of(root, folder):
    """The sources of the product in this folder, or all of them."""
    listing = ["git", "-C", root, "ls-files", "-z", "--cached", "--others", "--exclude-standard"]
    names = subprocess.run(listing, check=True, stdout=subprocess.PIPE, encoding="utf-8").stdout.split("\0")
    prefix = f"{folder.rstrip('/')}/" if folder else ""
    files = sorted({name for name in names if name.endswith((".cpp", ".h")) and (root / name).is_file()})
    found = [name for name in files if name.startswith(prefix) and is_product(name)]
    if not found:
        raise Broken(f'"{folder}" holds no sources in which bugs are planted; these do: {" ".join(FOLDERS)}')
    return found


def random_bugs(root, files, seed):
    """All random bugs of these files, at most one in a line, in an order that the seed determines."""
    lines = defaultdict(list)
    for file in files:
        source = (root / file).read_text(encoding="utf-8")
        for change in changes_of(source):
            lines[file, source.count("\n", 0, change.start) + 1].append(change)
    generator = random.Random(seed)
    order = list(lines)
    generator.shuffle(order)
    for file, line in order:
        yield RandomBug(file, line, generator.choice(lines[file, line]))
