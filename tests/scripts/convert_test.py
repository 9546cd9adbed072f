"""convert(), where the examples do not go."""

# SPDX-License-Identifier: MIT

import os
import signal
import subprocess
import unittest

from program import GANTREL, ScriptCase

OPENING = """
var files = App.getContentMgr(), words = getArguments(), source, target;
files.openFile(words[0] + '/People/Genesis 8 Female/Characters/Vera.duf', true); source = Scene.getSkeleton(0);
files.openFile(words[0] + '/People/Genesis 9/Genesis 9.duf', true); target = Scene.getSkeleton(1);
"""
SAVE = "{jobs: 'full', name: 'Vera', saveLibrary: words[0], vendor: 'Me', product: 'Mine'}"


class ConvertTest(ScriptCase):
    @classmethod
    def setUpClass(cls):
        cls.environment_of_program = dict(os.environ, XDG_CONFIG_HOME="/nonexistent", QT_QPA_PLATFORM="offscreen")

    def setUp(self):
        super().setUp()
        self.content = self.folder / "library"
        subprocess.run([GANTREL, "sample-content", self.content], check=True, stdout=subprocess.DEVNULL,
                       env=self.environment_of_program)

    def convert(self, text, *options):
        return self.run_text(OPENING + text, self.content, "--content", self.content, *options)

    def test_wrong_use_is_an_error_of_the_script(self):
        for call, said in (
                ("convert(source)", "convert: it takes two figures of the scene, and options"),
                ("convert(source, target, 'Vera')", "and options such as {name: \"Vera\"}"),
                ("convert(source, target, {jobs: 'nose'})", ": jobs names \"nose\"; the jobs are full, head and body"),
                ("convert(source, target, {job: 'full'})", ": there is no option job for convert; did you mean jobs?"),
                ("convert(source, target, {base: {hight: 1}})", ": base names \"hight\""),
                ("convert(source, target, {dial: {a: 1}})", ": dial is no option for figures of a scene"),
                ("convert(source, target, {name: print})", ": name is a function"),
                ("convert(source, target, {saveLibrary: words[0]})", ": saveLibrary requires vendor"),
                ("convert(target, source, {})", "")):
            with self.subTest(call):
                ended = self.convert(call)
                self.assertEqual((ended.returncode, ended.stdout), (1, ""))
                self.assertIn(said, ended.stderr)
                ended = self.convert(f"try {{ {call}; }} catch (error) {{ print('caught'); }}")
                self.assertEqual((ended.returncode, ended.stdout), (0, "caught\n"))

    def test_what_is_there_is_replaced_only_where_that_is_asked_for(self):
        # The second conversion is of a new target: the first one wears the morph.
        again = "Scene.removeNode(target); files.openFile(words[0] + '/People/Genesis 9/Genesis 9.duf', true); target = Scene.getSkeleton(1);"
        first = f"convert(source, target, {SAVE});" + again
        self.assertEqual(self.convert(f"{first} try {{ convert(source, target, {SAVE}); }} catch (e) {{ print('refused'); }}").stdout,
                         "refused\n")
        self.assertEqual(self.convert(f"print(convert(source, target, {SAVE}).created_morphs.length);", "--overwrite").stdout, "1\n")
        asked = SAVE.replace("{", "{overwrite: true, ")
        self.assertEqual(self.convert(f"print(convert(source, target, {asked}).created_morphs.length);").stdout, "1\n")

    def test_names_options_as_scripts_do_where_it_tells_what_would_help(self):
        other = SAVE.replace("Mine", "Other")
        for call, said in ((SAVE, "; overwrite: true replaces it."), (other, "; choose another name with name.")):
            ended = self.convert(f"convert(source, target, {SAVE});" * (call == SAVE) + """
                Scene.removeNode(target); files.openFile(words[0] + '/People/Genesis 9/Genesis 9.duf', true);
                """ + f"convert(source, Scene.getSkeleton(1), {call});")
            self.assertEqual(ended.returncode, 1)
            self.assertTrue(ended.stderr.endswith(said + "\n"), ended.stderr)

    def test_nothing_is_written_out_of_bounds(self):
        outside = self.folder / "outside"
        ended = self.convert(f"convert(source, target, {SAVE.replace('words[0]', repr(str(outside)))});")
        self.assertEqual(ended.returncode, 1)
        self.assertIn("--allow-files", ended.stderr)
        self.assertEqual(list(outside.rglob("*.dsf")) if outside.exists() else [], [])

    def test_a_conversion_can_be_interrupted(self):
        script = self.write("script.js", OPENING + "print('begun'); while (true) convert(source, target, {jobs: 'full'});")
        running = subprocess.Popen([GANTREL, "script", script, self.content, "--content", self.content], text=True,
                                   env=self.environment_of_program, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self.assertEqual(running.stdout.readline(), "begun\n")
        running.send_signal(signal.SIGINT)
        out, err = running.communicate()
        self.assertEqual((out, running.returncode), ("", -signal.SIGINT))
        self.assertTrue(err.startswith("gantrel: Interrupted"), err)


if __name__ == "__main__":
    unittest.main()
