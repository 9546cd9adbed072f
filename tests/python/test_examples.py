"""The examples do what they say."""

# SPDX-License-Identifier: MIT

import os
import pathlib
import subprocess
import sys

import gantrel
import numpy as np
from conftest import files_below, plane

FOLDER = pathlib.Path(os.environ["GANTREL_EXAMPLES"])
CHAPTER = pathlib.Path(os.environ["GANTREL_CHAPTER"])


def run(example, *arguments):
    return subprocess.run([sys.executable, FOLDER / example, *arguments], capture_output=True, text=True, check=False)


def test_every_example_is_tested():
    assert [path.name for path in files_below(FOLDER) if path.suffix == ".py"] == [
        "carry_morph.py", "convert_ages.py", "morph_statistics.py"]


def test_a_morph_is_carried(tmp_path):
    vertices, faces = plane(4)
    gantrel.write_obj(tmp_path / "neutral.obj", vertices, faces)
    gantrel.write_obj(tmp_path / "morphed.obj", vertices + [0, 0, 0.5], faces)
    gantrel.write_obj(tmp_path / "target.obj", *plane(3))
    files = [tmp_path / name for name in ("neutral.obj", "morphed.obj", "target.obj", "out.obj")]
    ended = run("carry_morph.py", *files)
    assert (ended.stdout, ended.stderr) == ("16 vertices move by up to 0.5 cm\n", "")
    np.testing.assert_allclose(gantrel.read_obj(files[3]).vertices[:, 2], 0.5, atol=1e-5)


def test_each_tells_what_it_wants():
    for example, words in (("carry_morph.py", "NEUTRAL.obj MORPHED.obj TARGET.obj OUT.obj"),
                           ("convert_ages.py", "LIBRARY CHARACTER.duf DIAL FOLDER"), ("morph_statistics.py", "FILE.dsf")):
        ended = run(example)
        assert (ended.returncode, ended.stdout) == (2, "") and words in ended.stderr and "Traceback" not in ended.stderr
        assert words in run(example, "--help").stdout


def test_an_error_is_one_sentence(tmp_path):
    ended = run("carry_morph.py", tmp_path / "nothing.obj", "b", "c", "d")
    assert ended.returncode == 1
    assert ended.stderr == f"Cannot open {tmp_path / 'nothing.obj'}: No such file or directory.\n"


def test_ages_are_converted_and_their_morphs_described(samples, vera, tmp_path):
    ended = run("convert_ages.py", samples, vera, "FBMOld", tmp_path)
    assert ended.returncode == 0, ended.stderr
    assert [line.split(":")[0] for line in ended.stdout.splitlines()] == [
        "Vera FBMOld 25", "Vera FBMOld 50", "Vera FBMOld 100"]
    morphs = files_below(tmp_path)
    table = run("morph_statistics.py", *morphs).stdout.splitlines()
    assert table[0] == "name,vertices,mean cm,max cm" and len(table) == 4


def test_the_manual_s_code_runs_from_its_beginning_to_its_end(samples, tmp_path, monkeypatch, capsys):
    monkeypatch.chdir(tmp_path)
    (tmp_path / "library").symlink_to(samples)
    vertices, faces = plane(4)
    gantrel.write_obj("neutral.obj", vertices, faces)
    gantrel.write_obj("target.obj", *plane(3))
    for name, lift in (("smile.obj", 0.5), ("frown.obj", -0.5)):
        gantrel.write_obj(name, vertices + [0, 0, lift], faces)
    blocks = [block.strip() for block in CHAPTER.read_text().split("```")[1::2]]
    scripts = [block for block in blocks if not block.startswith("export")]
    assert len(scripts) == 3
    known = {}
    for script in scripts:
        exec(compile(script, CHAPTER.name, "exec"), known)
    assert "Vera" in capsys.readouterr().out
    np.testing.assert_allclose(gantrel.read_obj("carried-frown.obj").vertices[:, 2], -0.5, atol=1e-5)
    assert [path.name for path in files_below("saved")] == ["Vera.dsf", "Half.dsf"]
