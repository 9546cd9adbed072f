"""How scripts end, and what is told of it."""

# SPDX-License-Identifier: MIT

import signal
import subprocess
import unittest

from program import GANTREL, ScriptCase


class StatusTest(ScriptCase):
    def test_what_is_thrown_is_shown_as_what_it_is(self):
        for thrown, shown in (
                ("new Error('no luck')", "Error: no luck."),
                ("new TypeError('no')", "TypeError: no."),
                ("'no luck'", "no luck."),
                ("42", "42."),
                ("true", "true."),
                ("undefined", "undefined."),
                ("null", "null."),
                ("''", '"".'),
                ("{code: 3, why: 'it\"s'}", '{"code": 3, "why": "it\\"s"}.'),
                ("{message: 'm', at: [1, [2], {}]}", '{"message": "m", "at": [1, [2], {}]}.'),
                ("['a', undefined]", '["a", undefined].'),
                ("{toString: function() { return 'by itself'; }}", "by itself."),
                ("{toString: function() { throw 'twice'; }}", "twice."),
                ("function() {}", "a function."),
                ("/a+/gi", "/a+/gi."),
                ("[/x/, new DzVec3(1, 2, 3)]", "[/x/, (1, 2, 3)]."),
                ("new Date('never')", "Invalid Date."),
                ("new Array(1, 'b')", '[1, "b"].'),
                ("new Object()", "{}."),
                ("{a: {b: {c: {d: {}}}}}", '{"a": {"b": {"c": {"d": ...}}}}.')):
            with self.subTest(thrown):
                self.assertEqual(self.error_of(f"var a;\n\nthrow {thrown};"), "line 3: " + shown)

    def test_what_is_thrown_fills_no_screen(self):
        said = self.error_of("var all = {}; for (var i = 0; i < 1e4; ++i) all['n' + i] = all; throw all;")
        self.assertEqual(said.count('": '), 24)
        self.assertTrue(said.endswith(", ...}, ...}, ...}, ...}."), said)
        self.assertEqual(self.error_of("var row = []; row[4294967294] = 1; throw row;").count("undefined"), 24)
        self.assertTrue(self.error_of("throw [new Array(1001).join('x')];").endswith('xxx..."].'))

    def test_a_script_ends_with_the_status_that_it_gives(self):
        for call, status in (("exit(7)", 7), ("exit()", 0), ("exit(0)", 0), ("exit(125)", 125)):
            with self.subTest(call):
                ended = self.run_text(f"print('a'); [1].forEach(function() {{ try {{ {call}; print('b'); }} "
                                      "catch (error) { print('c'); } finally { print('d'); } }); print('e');")
                self.assertEqual((ended.returncode, ended.stdout, ended.stderr), (status, "a\n", ""))

    def test_a_status_that_shells_take_otherwise_is_refused(self):
        for given in ("126", "-1", "1.5", "x", "NaN"):
            with self.subTest(given):
                self.assertEqual(self.error_of(f"exit('{given}')"),
                                 f"line 1: RangeError: {given} is no status; a script can end with 0 to 125.")

    def test_an_end_in_a_part_ends_the_whole(self):
        self.write("part.js", "print('part'); exit(3); print('a');")
        for use in ("include('part.js')", "try { include('part.js'); } finally { print('b'); }",
                    "[1].forEach(function() { include('part.js'); })"):
            with self.subTest(use):
                ended = self.run_text(f"{use}; print('c');")
                self.assertEqual((ended.returncode, ended.stdout, ended.stderr), (3, "part\n", ""))

    def test_an_end_in_a_text_that_is_printed_ends_the_whole(self):
        for use in ("print({toString: function() { exit(3); }})", "debug({toString: function() { exit(3); }})",
                    "include({toString: function() { exit(3); }})", "exit({valueOf: function() { exit(3); }})"):
            with self.subTest(use):
                ended = self.run_text(f"{use}; print('c');")
                self.assertEqual((ended.returncode, ended.stdout, ended.stderr), (3, "", ""))

    def test_what_a_value_throws_is_not_taken_for_the_value(self):
        for use in ("print('a', {toString: function() { throw 'no text'; }})",
                    "debug({toString: function() { throw 'no text'; }})",
                    "include({toString: function() { throw 'no text'; }})",
                    "exit({valueOf: function() { throw 'no text'; }})"):
            with self.subTest(use):
                self.assertEqual(self.error_of(use), "line 1: no text.")
        self.assertEqual(self.out_of("try { include('none.js'); } catch (error) { print('caught'); } print('on');"),
                         "caught\non\n")

    def test_a_script_that_prints_for_ever_ends_with_its_reader(self):
        running = subprocess.Popen([GANTREL, "script", self.write("script.js", "for (;;) print('line');")],
                                   cwd=self.folder, text=True, env=self.environment(), stdin=subprocess.DEVNULL,
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self.assertEqual(running.stdout.readline(), "line\n")
        running.stdout.close()
        self.assertEqual(running.stderr.read(), "")
        running.stderr.close()
        self.assertNotEqual(running.wait(), 0)

    def test_a_script_that_prints_for_ever_ends_with_a_full_disk(self):
        with open("/dev/full", "w", encoding="utf-8") as full:
            ended = subprocess.run([GANTREL, "script", self.write("script.js", "for (;;) print('line');")],
                                   cwd=self.folder, text=True, env=self.environment(), stdin=subprocess.DEVNULL,
                                   stdout=full, stderr=subprocess.PIPE, check=False)
        self.assertEqual(ended.returncode, 1)
        self.assertIn("No space left on device", ended.stderr)
        self.assertEqual(ended.stderr.count("\n"), 1, ended.stderr)

    def test_a_script_that_is_stopped_in_a_part_goes_on_nowhere(self):
        self.write("part.js", "print('part'); for (;;) ;")
        out, err, status = self.interrupt("include('part.js'); print('after');")
        self.assertEqual((out, err, status), ("part\n", "gantrel: Interrupted.\n", -signal.SIGINT))

    def test_a_script_that_another_runs_ends_alone(self):
        ended = self.run_text("var s = new DzScript(); s.setCode('exit(4)'); print(s.execute(), s.errorMessage());")
        self.assertEqual((ended.returncode, ended.stdout), (0, "false the script ended with the status 4\n"))

    def test_standard_input_is_a_script_too(self):
        ended = self.run_script("-", "a", "b c", typed="print(getArguments().join('+'));\n")
        self.assertEqual((ended.returncode, ended.stdout, ended.stderr), (0, "a+b c\n", ""))
        ended = self.run_script("-", typed="\n\nmissing();")
        self.assertEqual((ended.returncode, ended.stderr), (
            1, "gantrel: Standard input, line 3: ReferenceError: Can't find variable: missing.\n"))
        self.assertEqual(self.run_script("-", typed="print('a');\n\0print('b');").stderr,
                         "gantrel: Standard input, line 2: character 1 is a NUL, which no script can hold.\n")
        self.assertEqual((self.run_script("-").returncode, self.run_script("-").stdout), (0, ""))

    def test_a_loop_that_catches_everything_can_be_interrupted(self):
        out, err, code = self.interrupt("print('begun'); while (true) { try { while (true) {} } catch (e) {} finally {} }")
        self.assertEqual((out, err, code), ("begun\n", "gantrel: Interrupted.\n", -signal.SIGINT))

    def test_what_describes_an_error_can_be_interrupted(self):
        out, err, code = self.interrupt("throw {toString: function() { print('begun'); while (true) {} }};", signal.SIGTERM)
        self.assertEqual((out, err, code), ("begun\n", "gantrel: Interrupted.\n", -signal.SIGTERM))


if __name__ == "__main__":
    unittest.main()
