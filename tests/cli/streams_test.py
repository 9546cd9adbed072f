"""Standard input and output in place of files, as pipes between programs have them."""

# SPDX-License-Identifier: MIT

import os
import pathlib
import pty
import subprocess
import tempfile
import unittest

GANTREL = os.environ["GANTREL_PROGRAM"]


def cube(lift):
    corners = [(x, y, z) for z in (-1, 1) for y in (-1, 1) for x in (-1, 1)]
    faces = [(1, 3, 4, 2), (5, 6, 8, 7), (1, 2, 6, 5), (3, 7, 8, 4), (1, 5, 7, 3), (2, 4, 8, 6)]
    return ("".join(f"v {x} {y + lift} {z}\n" for x, y, z in corners) +
            "".join("f " + " ".join(map(str, face)) + "\n" for face in faces)).encode()


class StreamsTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.shared = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.shared.cleanup)
        subprocess.run([GANTREL, "sample-content", cls.shared.name], check=True, stdout=subprocess.DEVNULL)
        people = pathlib.Path(cls.shared.name) / "People"
        cls.vera = people / "Genesis 8 Female/Characters/Vera.duf"
        cls.genesis9 = people / "Genesis 9/Genesis 9.duf"

    def setUp(self):
        place = tempfile.TemporaryDirectory()
        self.addCleanup(place.cleanup)
        self.folder = pathlib.Path(place.name)
        for name, lift in (("neutral.obj", 0), ("morphed.obj", 2), ("target.obj", 0)):
            (self.folder / name).write_bytes(cube(lift))

    def run_program(self, *arguments, typed=b""):
        environment = {name: value for name, value in os.environ.items() if not name.startswith("GANTREL_")}
        environment.update(XDG_CONFIG_HOME="/nonexistent", QT_QPA_PLATFORM="offscreen", TMPDIR=str(self.folder))
        return subprocess.run([GANTREL, *map(str, arguments)], input=typed, capture_output=True, cwd=self.folder,
                              env=environment, check=False)

    def transfer(self, *more, typed=b"", **names):
        files = {"source-neutral": "neutral.obj", "source-morphed": "morphed.obj", "target-neutral": "target.obj",
                 "out": "out.obj", **{name.replace("_", "-"): file for name, file in names.items()}}
        options = [text for name, file in files.items() for text in ("--" + name, file)]
        return self.run_program("transfer", *options, *more, typed=typed)

    def refused(self, ended, sentence):
        self.assertEqual((ended.returncode, ended.stdout, ended.stderr.decode()), (2, b"", f"gantrel: {sentence}\n"))

    def test_each_mesh_of_a_transfer_can_come_from_standard_input(self):
        self.assertEqual(self.transfer().returncode, 0)
        expected = (self.folder / "out.obj").read_bytes()
        for name, text in (("source_neutral", cube(0)), ("source_morphed", cube(2)), ("target_neutral", cube(0))):
            with self.subTest(name):
                (self.folder / "out.obj").unlink()
                ended = self.transfer(typed=text, **{name: "-"})
                self.assertEqual((ended.returncode, ended.stderr), (0, b""))
                self.assertEqual((self.folder / "out.obj").read_bytes(), expected)

    def test_a_transfer_can_go_to_standard_output(self):
        self.transfer()
        expected = (self.folder / "out.obj").read_bytes().split(b"v ", 1)[1]
        (self.folder / "out.obj").unlink()
        ended = self.transfer(out="-")
        self.assertEqual(ended.returncode, 0)
        self.assertEqual(ended.stdout.split(b"v ", 1)[1], expected)
        self.assertIn(b"matched vertices", ended.stderr)
        self.assertEqual(sorted(os.listdir(self.folder)), ["morphed.obj", "neutral.obj", "target.obj"])
        self.assertEqual(self.transfer("--quiet", out="-").stderr, b"")
        dry = self.transfer("--dry-run", out="-")
        self.assertEqual((dry.returncode, dry.stdout), (0, b""))

    def test_programs_follow_each_other(self):
        first = self.transfer("--quiet", out="-")
        ended = self.run_program("inspect", "-", typed=first.stdout)
        self.assertEqual((ended.returncode, ended.stderr), (0, b""))
        self.assertTrue(ended.stdout.startswith(b"file                 standard input\nvertices             8\n"),
                        ended.stdout)
        drawn = self.run_program("render", "-", "--out", "-", "--size", "40x30", typed=first.stdout)
        self.assertEqual((drawn.returncode, drawn.stderr), (0, b"standard output: 40 x 30 pixels\n"))
        self.assertEqual(drawn.stdout[:8], b"\x89PNG\r\n\x1a\n")
        self.run_program("render", "morphed.obj", "--out", "picture.png", "--size", "40x30")
        self.assertEqual(drawn.stdout, (self.folder / "picture.png").read_bytes())

    def test_one_thing_at_a_time(self):
        self.refused(self.transfer(source_neutral="-", target_neutral="-"),
                     "--source-neutral and --target-neutral are both -, which only one can be.")
        self.refused(self.run_program("convert", "--source", self.vera, "--target", self.genesis9, "--export-obj", "-",
                                      "--report", "-"), "--export-obj and --report are both -, which only one can be.")
        ended = self.transfer("--json", out="-")
        self.assertEqual(ended.returncode, 2)
        self.assertEqual(ended.stderr.decode(),
                         "gantrel: --json and --out - both ask for standard output, which only one can have.\n")

    def test_what_cannot_be_is_refused_in_one_sentence(self):
        content = ("Content is no text on standard input, since it lies in a folder with all that it names; "
                   "./- is a file of that name.")
        self.refused(self.run_program("list-dials", "-"), content)
        self.refused(self.run_program("convert", "--source", "-", "--target", self.genesis9), content)
        self.refused(self.run_program("convert", "--source", self.vera, "--target", "-"), content)
        self.refused(self.run_program("inspect", "-", "--check"),
                     "Standard input has no morphs, which are files beside a figure's.")
        for typed in (b" {}", b'{"file_version": "0.6.0.0"}'):
            ended = self.run_program("inspect", "-", typed=typed)
            self.assertEqual((ended.returncode, ended.stdout, ended.stderr), (
                1, b"", b"gantrel: Standard input: is no text of an OBJ file, the one kind that is read there.\n"))
        ended = self.run_program("inspect", "-")
        self.assertEqual((ended.returncode, ended.stderr), (1, b"gantrel: Standard input: has no vertices.\n"))
        (self.folder / "jobs.csv").write_text(f"source,target\n{self.vera},{self.genesis9}\n")
        self.refused(self.run_program("batch", "jobs.csv", "--log", "-"),
                     "Standard output cannot have this file; ./- is a file of that name.")
        self.refused(self.run_program("make-figure", "--kind", "genesis9", "--mesh", "-", "--skeleton", "s.json",
                                      "--weights", "w.json", "--library", "made"),
                     "A figure is made of files alone, none of them standard input; ./- is a file of that name.")
        folder = "Standard output is no folder; ./- is one of that name."
        self.refused(self.run_program("sample-content", "-"), folder)
        figures = ("--source", self.vera, "--target", self.genesis9)
        saving = ("--save-library", "-", "--vendor", "Me", "--product", "Mine")
        self.refused(self.run_program("convert", *figures, *saving), folder)
        self.refused(self.run_program("convert", *figures, "--pictures", "-"), folder)
        self.refused(self.run_program("convert-morphs", *figures, *saving, "--morphs", "*"), folder)
        self.assertEqual(sorted(os.listdir(self.folder)), ["jobs.csv", "morphed.obj", "neutral.obj", "target.obj"])

    def test_a_file_of_that_name_is_one(self):
        (self.folder / "-").write_bytes(cube(0))
        ended = self.run_program("inspect", "./-", "--json")
        self.assertEqual(ended.returncode, 1, ended.stdout)  # its name does not tell that it is an OBJ file
        self.assertEqual(self.transfer(source_neutral="./-").returncode, 0)

    def test_a_picture_is_not_written_to_a_terminal(self):
        ours, theirs = pty.openpty()
        ended = subprocess.run([GANTREL, "render", "morphed.obj", "--out", "-"], stdin=subprocess.DEVNULL, stdout=theirs,
                               stderr=subprocess.PIPE, cwd=self.folder, check=False)
        os.close(theirs)
        os.close(ours)
        self.assertEqual((ended.returncode, ended.stderr),
                         (2, b"gantrel: --out - writes a picture, which a terminal cannot show.\n"))

    def test_a_conversion_gives_its_figure_or_its_page(self):
        options = ("convert", "--source", self.vera, "--target", self.genesis9, "--jobs", "full", "--name", "Vera")
        made = self.run_program(*options, "--export-obj", "-")
        self.assertEqual(made.returncode, 0, made.stderr)
        self.assertGreater(made.stdout.count(b"\nv "), 20000)
        self.assertIn(b"standard output", made.stderr)
        self.assertNotIn(b"nothing is kept", made.stderr)
        page = self.run_program(*options, "--report", "-")
        self.assertEqual(page.returncode, 0, page.stderr)
        self.assertEqual((page.stdout[:9].lower(), page.stdout.rstrip()[-7:]), (b"<!doctype", b"</html>"))
        self.assertEqual(sorted(os.listdir(self.folder)), ["morphed.obj", "neutral.obj", "target.obj"])

    def test_a_list_of_morphs_can_come_from_standard_input(self):
        options = ("convert-morphs", "--source", self.vera, "--target", self.genesis9, "--save-library", "saved",
                   "--vendor", "Me", "--product", "Mine", "--dry-run", "--list", "-")
        ended = self.run_program(*options, typed=b"# mine\nPHMSmile\n")
        self.assertEqual((ended.returncode, ended.stderr), (0, b""))
        self.assertIn(b"PHMSmile", ended.stdout)
        ended = self.run_program(*options, typed=b"# none\n")
        self.assertEqual((ended.returncode, ended.stderr), (1, b"gantrel: Standard input: names no morphs.\n"))


if __name__ == "__main__":
    unittest.main()
