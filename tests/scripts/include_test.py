"""Scripts that are made of several files."""

# SPDX-License-Identifier: MIT

import os
import unittest

from program import ScriptCase


class IncludeTest(ScriptCase):
    def test_a_file_beside_the_script_is_part_of_it(self):
        self.write("parts/tools.dsa", "var unit = 'cm'; function twice(x) { return 2 * x; }")
        self.assertEqual(self.out_of("include('parts/tools.dsa'); print(twice(21), unit);"), "42 cm\n")
        script = self.write("elsewhere/main.js", "include('../parts/tools.dsa'); print(unit);")
        self.assertEqual(self.run_script(script, "--allow-files", self.folder).stdout, "cm\n")

    def test_names_are_looked_for_beside_the_file_that_has_them(self):
        self.write("parts/first.js", "include('second.js'); function third() { include('third.js'); }")
        self.write("parts/second.js", "var second = 2;")
        self.write("parts/third.js", "print('third');")
        self.assertEqual(self.out_of("include('parts/first.js'); print(second); third();"), "2\nthird\n")

    def test_absolute_names_and_those_in_content_folders_are_found(self):
        absolute = self.write("absolute.js", "print('absolute');")
        library = self.folder / "library"
        self.write("library/data/Me/tools.js", "print('content');")
        self.assertEqual(self.out_of(f"include('{absolute}'); include('data/Me/tools.js'); include('/data/Me/tools.js');",
                                     "--content", library), "absolute\ncontent\ncontent\n")

    def test_of_two_files_the_one_beside_the_script_counts(self):
        self.write("library/tools.js", "print('content');")
        self.write("tools.js", "print('beside');")
        self.assertEqual(self.out_of("include('tools.js');", "--content", self.folder / "library"), "beside\n")

    def test_variables_become_those_of_the_whole_script(self):
        self.write("tools.js", "var inner = 1; function give() { return inner; } this.other = 2; print(typeof local);")
        self.assertEqual(self.out_of("function f() { var local = 1; include('tools.js'); return inner; }"
                                     "print(f(), inner, give(), other);"), "undefined\n1 1 1 2\n")

    def test_a_file_may_be_included_twice_but_not_by_itself(self):
        self.write("count.js", "n = (typeof n == 'undefined' ? 0 : n) + 1;")
        self.assertEqual(self.out_of("include('count.js'); include('./count.js'); print(n);"), "2\n")
        self.write("a.js", "\ninclude('b.js');")
        self.write("b.js", "include('c.js');")
        os.symlink(self.folder / "a.js", self.folder / "c.js")
        ended = self.run_text("include('a.js');")
        self.assertEqual((ended.returncode, ended.stderr), (
            1, f"gantrel: {self.folder}/b.js, line 1: Error: include: a.js includes itself, by way of b.js.\n"))
        self.assertEqual(self.error_of("include('script.js');"), "line 1: Error: include: script.js includes itself.")

    def test_files_that_include_each_other_without_end_are_told(self):
        for i in range(12):
            self.write(f"f{i}.js", f"include('f{i + 1}.js');")
        ended = self.run_text("include('f0.js');")
        self.assertIn("include: more than 8 files include each other", ended.stderr)

    def test_an_error_names_the_included_file_and_its_line(self):
        tools = self.write("tools.js", "\n\nfunction fail(what) {\n    throw what;\n}\nfunction lost() { missing(); }\n")
        for call, said in (("fail(new Error('no'))", "line 4: Error: no."), ("fail({code: 1})", 'line 4: {"code": 1}.'),
                           ("lost()", "line 6: ReferenceError: Can't find variable: missing.")):
            with self.subTest(call):
                self.assertEqual(self.run_text(f"include('tools.js');\n{call};").stderr, f"gantrel: {tools}, {said}\n")
        for code, said in (("\nthrow 42;", "line 2: 42."), ("\nthrow 'no';", "line 2: no."), ("\n\nif (", "line 3: SyntaxError: Parse error.")):
            with self.subTest(code):
                broken = self.write("broken.js", code)
                self.write("between.js", "\n\n\ninclude('broken.js');\n")
                for first in ("broken.js", "between.js"):
                    self.assertEqual(self.run_text(f"\n\n\n\ninclude('{first}');").stderr, f"gantrel: {broken}, {said}\n")
        nul = self.write("nul.js", "var a;\n\0")
        self.assertEqual(self.error_of("include('nul.js')"),
                         f"line 1: Error: include: {nul}, line 2: character 1 is a NUL, which no script can hold.")

    def test_an_error_of_the_script_itself_names_the_script(self):
        self.write("tools.js", "function fine() {}")
        self.assertEqual(self.error_of("include('tools.js');\nmissing();"),
                         "line 2: ReferenceError: Can't find variable: missing.")
        # A text does not know where it was thrown.
        self.assertEqual(self.run_text("include('tools.js');\nthrow 'no';").stderr,
                         f"gantrel: {self.folder}/script.js or a file that it includes, line 2: no.\n")

    def test_what_an_included_file_throws_can_be_caught(self):
        self.write("broken.js", "throw 'no';")
        self.assertEqual(self.out_of("try { include('broken.js'); } catch (error) { print('caught', error); } print(1);"),
                         "caught no\n1\n")

    def test_what_is_no_file_is_told(self):
        os.mkdir(self.folder / "folder")
        for call, said in (("include('gone.js')", f"there is no file gone.js, neither beside {self.folder}/script.js nor in a content folder."),
                           ("include('/gone.js')", f"there is no file /gone.js, neither beside {self.folder}/script.js nor in a content folder."),
                           ("include('folder')", f"there is no file folder, neither beside {self.folder}/script.js nor in a content folder."),
                           ("include()", "it takes the name of one file."), ("include('')", "it takes the name of one file."),
                           ("include('a.js', 'b.js')", "it takes the name of one file.")):
            with self.subTest(call):
                self.assertEqual(self.error_of(call), "line 1: Error: include: " + said)

    def test_nothing_out_of_reach_is_included(self):
        outside = self.write("outside.js", "print('outside');")
        script = self.write("own/main.js", "include('../outside.js');")
        os.symlink(outside, self.folder / "own" / "link.js")
        linked = self.write("own/linked.js", "include('link.js');")
        why = ("scripts may read only in content folders, the script's own, the temporary folder and those that "
               "--allow-files names")
        for file in (script, linked):
            ended = self.run_script(file)
            self.assertEqual((ended.returncode, ended.stdout), (1, ""))
            self.assertIn(why, ended.stderr)
            self.assertEqual(self.run_script(file, "--allow-files", self.folder).stdout, "outside\n")
        loading = self.write("own/load.js", f"var s = new DzScript(); print(s.loadFromFile('{outside}'), s.getCode() == '');")
        self.assertEqual(self.run_script(loading).stdout, "false true\n")

    def test_an_included_file_can_end_the_script(self):
        self.write("end.js", "exit(9);")
        self.assertEqual(self.run_text("include('end.js'); print('never');").returncode, 9)

    def test_a_script_on_standard_input_includes_files_of_the_present_folder(self):
        self.write("tools.js", "print('tools');")
        self.assertEqual(self.run_script("-", typed="include('tools.js');").stdout, "tools\n")


if __name__ == "__main__":
    unittest.main()
