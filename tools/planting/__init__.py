"""The parts of tools/planted-bugs: the bugs, the copy of the tree that they are planted in, its test programs."""
