"""What can be wrong with a bug and with the project."""


class Unplantable(Exception):
    """The bug does not fit its file, or the file does not compile with it."""


class Broken(Exception):
    """The project does not build, or a test fails, without any bug."""
