"""Tests of the random bugs of tools/planted-bugs: which changes a source has, and which a seed gives."""

import sys
import tempfile
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tools"))

from planting.random_bugs import random_bugs  # noqa: E402
from planting.test_programs import PROGRAMS, programs_for  # noqa: E402
from planting.token_changes import changes_of  # noqa: E402


def changes(source):
    """The changes of a source, each as the text that goes and the text that takes its place."""
    return [(change.old, change.new) for change in changes_of(source)]


def changes_in_function(statements, result="void"):
    return changes(f"{result} run(int a, bool b) {{\n{statements}\n}}\n")


class ChangesOfASource(unittest.TestCase):
    def test_operators_between_operands(self):
        for old, new in [("<", ["<=", ">"]), ("<=", ["<", ">="]), (">", [">=", "<"]), (">=", [">", "<="])]:
            self.assertEqual(changes_in_function(f"const bool c = a {old} d;"), [(old, each) for each in new])
        for old, new in [("==", "!="), ("&&", "||"), ("+", "-"), ("*", "/"), ("&", "|"), ("<<", ">>")]:
            self.assertEqual(changes_in_function(f"const bool c = a {old} d;"), [(old, new)])

    def test_constants(self):
        self.assertEqual(changes("constexpr int limit = 10;"), [("10", "11"), ("10", "9")])
        self.assertEqual(changes("constexpr int limit = 0;"), [("0", "1")])
        self.assertEqual(changes("constexpr int limit = 1'000U;"), [("1'000U", "1001U"), ("1'000U", "999U")])
        self.assertEqual(changes("constexpr int mask = 0x20U;"), [("0x20U", "0x21U"), ("0x20U", "0x1fU")])
        self.assertEqual(changes("constexpr double wait = 0.25;"), [("0.25", "0.5")])
        self.assertEqual(changes("constexpr char last = 'Z';"), [("'Z'", "'['"), ("'Z'", "'Y'")])
        self.assertEqual(changes("bool isOpen_ = true;"), [("true", "false")])

    def test_conditions(self):
        negated_and_forced = [("b", "!(b)"), ("b", "false"), ("b", "true")]
        self.assertEqual(changes_in_function("if (b) {\n}"), negated_and_forced)
        self.assertEqual(changes_in_function("if (const int c = f(); b) {\n}"), negated_and_forced)
        self.assertEqual(changes_in_function("while (b) {\n}"), negated_and_forced[:2])
        self.assertEqual(changes_in_function("if (const auto c = f()) {\n}"), [])
        self.assertEqual(changes_in_function("const int c = b ? d : e;"), [("?", "&& false ?"), ("?", "|| true ?")])
        self.assertEqual(changes_in_function("const bool c = !b;"), [("!", "")])

    def test_statements_that_are_dropped(self):
        for statement in ["f(a);", "a.b = c;", "++a;", "*p = a;", "ns::f();", "static_cast<void>(f());", "return;"]:
            self.assertIn((statement, ""), changes_in_function(statement), statement)
            self.assertIn((statement, ""), changes_in_function(f"g([&](int c) {{\n{statement}\n}});"), statement)
        for declaration in ["int c = d;", "Type c(d);", "std::vector<int> c;", "const auto c = f();", "using T = U;"]:
            self.assertNotIn((declaration, ""), changes_in_function(declaration), declaration)
        self.assertEqual(changes("class A {\n    A(int b);\n    void f();\n};"), [])

    def test_results(self):
        self.assertEqual(changes_in_function("return f();", "bool"), [("f()", "!(f())")])
        self.assertEqual(changes_in_function("return f();", "std::optional<int>"), [("f()", "std::nullopt")])
        self.assertEqual(changes_in_function("return f();", "std::unique_ptr<A>"), [("f()", "nullptr")])
        self.assertEqual(changes_in_function("return f();", "int"), [])
        self.assertEqual(changes_in_function("return true;", "bool"), [("true", "false")])

    def test_what_is_left_as_it_is(self):
        for source in [
            "// 1 + 2",
            "/* 1 + 2\n3 */",
            "#include <a1>\n#define A(b) \\\n    b + 1\n",
            'const char* const text = "1 + 2 == true";',
            'const char* const text = R"(1 + "2" == true)";',
            "static_assert(sizeof(int) == 4);",
            "std::array<char, 256> name;",
            "template <typename A, int b = 3>\nvoid f(A& a, A&& b, A* c);",
            "virtual void f() const = 0;",
            "bool operator==(const A& other) const = default;",
            "using A = B<3>;",
        ]:
            self.assertEqual(changes(source), [], source)


class BugsOfASeed(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.root = Path(directory.name)
        lines = "".join(f"constexpr int a{number} = {number} + {number};\n" for number in range(100))
        (self.root / "a.cpp").write_text(lines, encoding="utf-8")

    def names(self, seed):
        return [bug.name for bug in random_bugs(self.root, ["a.cpp"], seed)]

    def test_are_the_same_each_time(self):
        self.assertEqual(self.names("1"), self.names("1"))
        self.assertNotEqual(self.names("1"), self.names("2"))

    def test_are_one_in_a_line(self):
        self.assertEqual(len(self.names("1")), 100)

    def test_change_the_line_that_they_name(self):
        source = (self.root / "a.cpp").read_text(encoding="utf-8")
        for bug in random_bugs(self.root, ["a.cpp"], "1"):
            pairs = zip(source.splitlines(), bug.planted_in(source).splitlines())
            changed = [number for number, (old, new) in enumerate(pairs, 1) if old != new]
            self.assertEqual(changed, [bug.line], bug.name)


class Programs(unittest.TestCase):
    def test_every_folder_has_some(self):
        for folder in PROGRAMS:
            self.assertTrue(programs_for(f"{folder}a.cpp"), folder)


if __name__ == "__main__":
    unittest.main()
