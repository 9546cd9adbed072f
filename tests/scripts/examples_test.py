"""The examples do what they say."""

# SPDX-License-Identifier: MIT

import gzip
import json
import os
import pathlib
import re
import struct
import subprocess
import unittest

from program import GANTREL, ScriptCase

EXAMPLES = pathlib.Path(os.environ["GANTREL_SOURCE"]) / "examples" / "scripts"


class ExamplesTest(ScriptCase):
    def setUp(self):
        super().setUp()
        self.content = self.folder / "library"
        subprocess.run([GANTREL, "sample-content", self.content], check=True, stdout=subprocess.DEVNULL,
                       env=self.environment())
        self.vera = self.content / "People/Genesis 8 Female/Characters/Vera.duf"
        self.nine = self.content / "People/Genesis 9/Genesis 9.duf"
        self.out = self.folder / "out"
        self.out.mkdir()

    def run_example(self, name, *arguments):
        """What it prints."""
        ended = self.end_example(name, *arguments)
        self.assertEqual((ended.returncode, ended.stderr), (0, ""), ended.stdout)
        return ended.stdout

    def end_example(self, name, *arguments):
        return self.run_script(EXAMPLES / name, *arguments, "--content", self.content, "--allow-files", self.out)

    def vertices_of(self, file):
        return [tuple(map(float, line.split()[1:4])) for line in file.read_text().splitlines() if line.startswith("v ")]

    def scene_of(self, file):
        return json.loads(gzip.decompress(file.read_bytes()))["scene"]

    def test_every_example_is_tested_and_tells_its_use(self):
        with open(__file__, encoding="utf-8") as source:
            tested = set(re.findall(r'run_example\("(\w+\.dsa)"', source.read()))
        examples = {path.name for path in EXAMPLES.iterdir()} - {"tools.dsa"}
        self.assertEqual(tested, examples)
        self.assertEqual(len(examples), 10)
        for name in examples:
            ended = self.run_script(EXAMPLES / name)
            self.assertEqual((ended.returncode, ended.stderr), (2, ""), name)
            self.assertTrue(ended.stdout.startswith(f"usage: gantrel script {name} "), ended.stdout)

    def test_a_figure_is_loaded(self):
        out = dict(line.split(": ", 1) for line in self.run_example("load_figure.dsa", self.vera).splitlines())
        self.assertEqual(out["figure"], "Vera")
        self.assertTrue(out["asset"].endswith("Genesis8Female.dsf#Genesis8Female"))
        self.assertGreater(int(out["bones"]), 10)
        self.assertGreater(int(out["morphs"]), 1)
        ended = self.run_script(EXAMPLES / "load_figure.dsa", self.folder / "gone.duf")
        self.assertIn(f"Error: {self.folder}/gone.duf cannot be opened.", ended.stderr)

    def test_dials_are_turned_and_listed(self):
        turned = self.run_example("set_dials.dsa", self.vera, "PHMSmile=0.5", "FBMOld=0.25").splitlines()
        at_rest = self.run_example("set_dials.dsa", self.vera).splitlines()
        values = dict(line.split("\t") for line in turned)
        self.assertIn("0.500", values.values())
        self.assertIn("0.250", values.values())
        self.assertGreater(len(turned), len(at_rest))
        ended = self.run_script(EXAMPLES / "set_dials.dsa", self.vera, "Nose=1", "--content", self.content)
        self.assertIn("Error: Vera has no dial Nose.", ended.stderr)

    def test_a_character_is_converted_and_its_morphs_are_saved(self):
        out = self.run_example("convert.dsa", self.vera, self.nine, self.out, "Me", "Mine")
        self.assertEqual([line.split(":")[0] for line in out.splitlines()], ["Vera Head", "Vera Body"])
        for line in out.splitlines():
            moved, file = re.fullmatch(r".*: ([\d.]+) mm, (.*)", line).groups()
            self.assertGreater(float(moved), 0.0)
            self.assertTrue(pathlib.Path(file).read_text().lstrip().startswith("{"))

    def test_a_mesh_becomes_a_saved_morph(self):
        mesh = self.out / "neutral.obj"
        self.run_example("export_obj.dsa", self.nine, mesh)
        shape = self.out / "shape.obj"
        shape.write_text(re.sub(r"^v (\S+) (\S+) ", lambda v: f"v {v[1]} {float(v[2]) + 2} ", mesh.read_text(), flags=re.M))
        self.assertEqual(self.run_example("save_morph.dsa", self.nine, shape, "Lifted", self.out, "Me", "Shapes"),
                         "Lifted is saved\n")
        [file] = self.out.rglob("Lifted.dsf")
        deltas = json.loads(file.read_text())["modifier_library"][0]["morph"]["deltas"]["values"]
        self.assertEqual(len(deltas), len(self.vertices_of(mesh)))
        for _, x, y, z in deltas:
            # Both meshes are written to the sixth digit.
            self.assertAlmostEqual(x, 0, delta=1e-3)
            self.assertAlmostEqual(y, 2, delta=1e-3)
            self.assertAlmostEqual(z, 0, delta=1e-3)

    def test_a_saved_morph_is_replaced_where_it_is_the_figures_own_or_that_is_wanted(self):
        mesh = self.out / "neutral.obj"
        self.run_example("export_obj.dsa", self.nine, mesh)
        shape = self.out / "shape.obj"
        shape.write_text(re.sub(r"^v (\S+) (\S+) ", lambda v: f"v {v[1]} {float(v[2]) + 2} ", mesh.read_text(), flags=re.M))
        words = (self.nine, shape, "Raised", self.out, "Me", "Shapes")
        self.run_example("save_morph.dsa", *words)
        [file] = self.out.rglob("Raised.dsf")
        file.write_text("mine")
        refused = self.end_example("save_morph.dsa", *words)
        self.assertEqual((refused.returncode, file.read_text()), (1, "mine"))
        self.assertIn("there is a morph of this name already", refused.stderr)
        self.assertEqual(self.run_example("save_morph.dsa", *words, "--overwrite"), "Raised is saved\n")
        self.assertIn("deltas", file.read_text())
        self.assertEqual(self.run_example("save_morph.dsa", *words, "--content", self.out), "Raised is saved\n")

    def test_the_figures_of_a_folder_are_listed(self):
        folder = self.content / "People/Genesis 8 Female"
        lines = self.run_example("folder_of_figures.dsa", folder).splitlines()
        self.assertEqual(sorted(line.split("\t")[0] for line in lines), sorted(path.name for path in folder.rglob("*.duf")))
        for line in lines:
            self.assertRegex(line, r"\t1\d\d\.\d cm$")

    def test_clothes_follow_a_figure(self):
        garment = self.content / "People/Genesis 8 Female/Developer Kit/Genesis 8 Female Dev Load.duf"
        scene = self.out / "dressed.duf"
        said = re.fullmatch(r"Genesis 8 Female follows Vera with (\d+) bones\n",
                            self.run_example("fit_clothes.dsa", self.vera, garment, scene))
        self.assertGreater(int(said[1]), 10)
        followers = [node for node in self.scene_of(scene)["nodes"] if "conform_target" in node]
        self.assertEqual([node["label"] for node in followers], ["Genesis 8 Female"])

    def test_bones_are_turned_and_poses_put_on(self):
        posed = self.out / "posed.duf"
        self.assertEqual(self.run_example("pose.dsa", self.vera, posed, "lHand:Z=20").split()[-1], "20.00")
        script = self.write("look.js", "App.getContentMgr().openFile(getArguments()[0], true);"
                            "print(Scene.getSkeleton(0).findBone('lHand').getZRotControl().getValue().toFixed(2));")
        look = lambda: self.run_script(script, posed, "--content", self.content).stdout
        self.assertEqual(look(), "20.00\n")
        pose = self.write("out/pose.duf", json.dumps({"file_version": "0.6.0.0", "asset_info": {"type": "preset_pose"}, "scene": {
            "animations": [{"url": "name://@selection/lHand:?rotation/z/value", "keys": [[0, 35]]}]}}))
        self.run_example("pose.dsa", self.vera, posed, pose)
        self.assertEqual(look(), "35.00\n")

    def test_pictures_are_drawn(self):
        folder = self.out / "new" / "pictures"
        self.assertEqual(self.run_example("render.dsa", self.vera, folder, "front", "left"),
                         f"{folder}/front.png\n{folder}/left.png\n")
        pictures = [(folder / name).read_bytes() for name in ("front.png", "left.png")]
        for picture in pictures:
            self.assertEqual(struct.unpack(">II", picture[16:24]), (400, 600))
        self.assertNotEqual(*pictures)

    def test_a_mesh_is_written_as_it_is_dialed(self):
        plain, old = self.out / "plain.obj", self.out / "old.obj"
        self.run_example("export_obj.dsa", self.vera, plain)
        self.run_example("export_obj.dsa", self.vera, old, "FBMOld=1")
        before, after = self.vertices_of(plain), self.vertices_of(old)
        self.assertEqual(len(before), len(after))
        self.assertGreater(max(abs(a - b) for v, w in zip(before, after) for a, b in zip(v, w)), 0.1)

    def test_measures_are_written_as_a_table(self):
        table = self.out / "measures.csv"
        self.assertEqual(self.run_example("measures.dsa", table, self.vera, self.nine), "figures: 2\n")
        lines = table.read_text().splitlines()
        self.assertEqual(lines[0], "figure,height cm,width cm,depth cm")
        self.assertEqual([line.split(",")[0] for line in lines[1:]], ["Vera", "Genesis 9"])
        mesh = self.out / "vera.obj"
        self.run_example("export_obj.dsa", self.vera, mesh)
        heights = [y for _, y, _ in self.vertices_of(mesh)]
        self.assertAlmostEqual(float(lines[1].split(",")[1]), max(heights) - min(heights), delta=0.01)  # so many digits


if __name__ == "__main__":
    unittest.main()
