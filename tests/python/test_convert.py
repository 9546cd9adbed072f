"""Conversions of files and of figures."""

# SPDX-License-Identifier: MIT

import json
import os
import signal
import subprocess
import sys
import threading
import warnings

import gantrel
import numpy as np
import pytest
from conftest import files_below, plane


def save_into(folder, **options):
    return gantrel.Save(folder, "Me", "My Shapes", **options)


def test_files_become_morphs_in_a_library(samples, vera, genesis9, tmp_path):
    stages = []
    made = gantrel.convert(vera, genesis9, content=[samples], jobs=["full", "head", "body"], name="Vera",
                           save=save_into(tmp_path), progress=stages.append)
    assert {morph.kind: morph.name for morph in made.created} == {
        "full": "Vera", "head": "Vera Head", "body": "Vera Body"}
    assert (made.source.label, made.source.kind, made.target.kind) == ("Vera", "genesis8female", "genesis9")
    assert 0 < made.distances.mean < made.distances.p95 < made.distances.max
    assert stages[0] == "Loading the figures" and "Saving the morphs" in stages
    assert set(made.seconds) == set(stages)
    for morph in made.created:
        [read] = gantrel.read_morphs(morph.file)
        assert read.name == morph.name and len(read.vertices) == morph.vertices_moved
        # Both are of the same single-precision deltas.
        assert np.linalg.norm(read.deltas, axis=1).max() == pytest.approx(morph.largest_displacement, rel=1e-6)
    assert sorted(morph.file for morph in made.created) == files_below(tmp_path)


def test_without_a_place_nothing_is_saved(samples, vera, genesis9):
    before = files_below(samples)
    made = gantrel.convert(str(vera), str(genesis9), jobs="full")
    assert [morph.file for morph in made.created] == [None]
    assert files_below(samples) == before


def test_loaded_figures_are_converted_as_they_are_dialed(samples, vera, genesis9):
    with gantrel.Library(samples) as library:
        source, target = library.load(vera), library.load(genesis9)
        target.level = 0
        neutral = target.vertices
        shapes = []
        for value in (0.0, 1.0):
            source.dials["PHMSmile"] = value
            name = f"Shape {value:g}"
            made = gantrel.convert(source, target, jobs=["full"], name=name)
            assert [morph.name for morph in made.created] == [name]
            assert target.dials[name].value == 1.0
            shapes.append(target.vertices)
            target.dials[name] = 0.0
            np.testing.assert_array_equal(target.vertices, neutral)
    assert np.abs(shapes[0] - neutral).max() > 1.0  # cm; Vera is of another height
    assert np.abs(shapes[1] - shapes[0]).max() > 0.1  # cm; the smile


def test_dials_and_bases_are_set_first(samples, vera, genesis9):
    tall = gantrel.convert(vera, genesis9, dials={"FBMLongLegs": 1}, jobs="full", base={"feminine": 0.5})
    short = gantrel.convert(vera, genesis9, jobs="full", base={"height": "auto"})
    assert tall.created[0].largest_displacement > short.created[0].largest_displacement


def test_an_existing_morph_stays_unless_it_may_go(samples, vera, genesis9, tmp_path):
    def convert(**options):
        return gantrel.convert(vera, genesis9, content=[samples], jobs="full", name="Vera",
                               save=save_into(tmp_path, **options))

    [path] = [morph.file for morph in convert().created]
    before = path.read_bytes()
    with pytest.raises(gantrel.Error, match="overwrite=True replaces it"):
        convert()
    assert path.read_bytes() == before
    convert(overwrite=True, compress=True)
    assert path.read_bytes()[:2] == b"\x1f\x8b"


def test_subdivided_morphs_have_detail(samples, vera, genesis9, tmp_path):
    made = gantrel.convert(vera, genesis9, content=[samples], jobs="full", name="Fine", resolution="subd", subd=1,
                           save=save_into(tmp_path))
    assert made.level == 1 and made.created[0].detail_vertices_moved > 0
    assert gantrel.read_morphs(made.created[0].file)[0].detail_file.endswith(".dhdm")


def test_meshes_and_pages_are_written(vera, genesis9, tmp_path):
    made = gantrel.convert(vera, genesis9, jobs="full", export_obj=tmp_path / "made.obj",
                           report=str(tmp_path / "made.html"))
    assert made.files == [tmp_path / "made.obj", tmp_path / "made.html"] == list(reversed(files_below(tmp_path)))
    assert gantrel.read_obj(tmp_path / "made.obj").vertices.shape == (made.target.vertex_count, 3)


def test_a_save_without_a_library_is_refused():
    with pytest.raises(gantrel.UsageError, match="library of a Save is empty"):
        gantrel.Save("", "Me", "My Shapes")


@pytest.mark.parametrize("options, error, text", [
    ({"jobs": ["arms"]}, gantrel.UsageError, r'^Jobs names "arms"; the jobs are full, head and body\.$'),
    ({"jobs": []}, gantrel.UsageError, "Jobs names"),
    ({"jobs": 5}, TypeError, "^convert: jobs is 5, not a list of texts$"),
    ({"jobs": [5]}, TypeError, "jobs are texts"),
    ({"name": " "}, gantrel.UsageError, r"^Name is blank\.$"),
    ({"base": {"arms": 1}}, gantrel.UsageError, 'Base names "arms"'),
    ({"base": {"clone": "auto"}}, gantrel.UsageError, "only height can be auto"),
    ({"base": {"clone": float("nan")}}, gantrel.UsageError, "no number"),
    ({"base": {"height": 1e9}}, gantrel.UsageError, "outside of"),
    ({"base": 5}, TypeError, "^convert: base is 5, not a mapping of texts to numbers$"),
    ({"dials": "Smile"}, TypeError, "^convert: dials is 'Smile', not a mapping of texts to numbers$"),
    ({"author": "Jo"}, gantrel.UsageError, r"^Author is for saved morphs, and save is not given\.$"),
    ({"author": 5}, TypeError, "^convert: author is 5, not a text or None$"),
    ({"author": "a\nb", "save": gantrel.Save("/tmp", "a", "b")}, gantrel.UsageError, "[Aa]uthor"),
    ({"name": 5}, TypeError, "^convert: name is 5, not a text or None$"),
    ({"subd": "two"}, TypeError, "^convert: subd is 'two', not a whole number or None$"),
    ({"subd": 1.5}, TypeError, "^convert: subd is 1.5, not a whole number or None$"),
    ({"adjust_rig": "yes"}, TypeError, "^convert: adjust_rig is 'yes', not True or False$"),
    ({"save": "/lib"}, TypeError, "^convert: save is '/lib', not a Save or None$"),
    ({"export_obj": 5}, TypeError, "^convert: export_obj is 5, not the name of a file or folder or None$"),
    ({"content": [5]}, TypeError, r"^convert: content is \[5\], not a list of names of files or folders or None$"),
    ({"dails": {}}, TypeError, r"^convert: there is no argument dails; did you mean dials\?$"),
    ({"dials": {"Nothing": 1.0}}, KeyError, 'no dial "Nothing"; the closest are'),
    ({"dials": {"PHMSmile": None}}, TypeError, "texts with numbers"),
    ({"dials": {5: 1.0}}, TypeError, "texts with numbers"),
    ({"resolution": "fine"}, gantrel.UsageError, "not base or subd"),
    ({"subd": 2}, gantrel.UsageError, "Subd needs resolution subd"),
    ({"resolution": "subd", "subd": 9}, gantrel.UsageError, "subd: is 9, not 1 to 5"),
    ({"content": ["/no/such/folder"]}, gantrel.FileError, "no such content directory"),
    ({"save": gantrel.Save("/tmp", "a/b", "c")}, gantrel.UsageError, 'Vendor "a/b" cannot be the name of a folder'),
    ({"export_obj": "/no/such/folder/a.obj"}, gantrel.Error, "there is no folder"),
    ({"progress": 5}, TypeError, "^convert: progress is 5, not a function$"),
])
def test_options_that_cannot_be_meant_are_refused(vera, genesis9, options, error, text):
    with pytest.raises(error, match=text):
        gantrel.convert(vera, genesis9, **options)


def test_what_is_neither_file_nor_figure_is_told(vera):
    with pytest.raises(TypeError, match="^convert: source is 1, neither the name of a file nor a Figure$"):
        gantrel.convert(1, vera)
    with pytest.raises(TypeError, match="^convert: target is None, neither the name of a file nor a Figure$"):
        gantrel.convert(vera, None)
    with pytest.raises(TypeError, match="^convert: target is missing$"):
        gantrel.convert(vera)
    with pytest.raises(TypeError, match="^convert: 3 arguments are given without their names, and 2 can be$"):
        gantrel.convert(vera, vera, vera)


def test_saved_morphs_name_their_author(samples, vera, genesis9, tmp_path):
    def author_in(folder, **options):
        made = gantrel.convert(vera, genesis9, content=[samples], jobs="full", save=save_into(tmp_path / folder), **options)
        return json.loads(made.created[0].file.read_text())["asset_info"]["contributor"]["author"]

    assert author_in("named", author="Jo Bloggs") == "Jo Bloggs"
    assert author_in("unnamed") == "Me"


def test_ctrl_c_from_outside_ends_the_conversion(samples, vera, genesis9, tmp_path):
    code = """if True:
        import signal, sys, gantrel
        signal.signal(signal.SIGINT, signal.default_int_handler)
        source, target, folder = sys.argv[1:]
        try:
            gantrel.convert(source, target, save=gantrel.Save(folder, "Me", "Mine"), report=folder + "/page.html",
                            resolution="subd", subd=3, progress=lambda stage: print(stage, flush=True))
        except KeyboardInterrupt:
            print("interrupted")
        """
    running = subprocess.Popen([sys.executable, "-W", "ignore", "-c", code, vera, genesis9, tmp_path], text=True,
                               stdout=subprocess.PIPE)
    for stage in running.stdout:
        if stage.startswith("Creating"):
            break
    running.send_signal(signal.SIGINT)
    rest = running.communicate()[0]
    assert running.returncode == 0 and rest.endswith("interrupted\n") and "Saving the morphs" not in rest
    assert files_below(tmp_path) == []


def test_figures_and_files_are_not_mixed(samples, vera, genesis9):
    with gantrel.Library(samples) as library:
        figure = library.load(vera)
        with pytest.raises(gantrel.UsageError, match="two figures or two files"):
            gantrel.convert(figure, genesis9)
        with pytest.raises(gantrel.UsageError, match="content: it and dials are for files"):
            gantrel.convert(figure, figure, dials={"PHMSmile": 1})
        with pytest.raises(gantrel.Error, match="Genesis 9 figure to convert to"):
            gantrel.convert(figure, figure)
        assert figure.vertices.size


def test_files_that_are_not_there_are_named(vera, genesis9, tmp_path):
    with pytest.raises(gantrel.FileError, match="nothing.duf"):
        gantrel.convert(tmp_path / "nothing.duf", genesis9, content=[tmp_path])
    with pytest.raises(gantrel.Error, match="Genesis 9"):
        gantrel.convert(vera, vera)


# The first, the last before files are put in place, and one between them.
@pytest.mark.parametrize("stage", ["Loading the figures", "Measuring the result", "Saving the morphs"])
def test_an_exception_of_the_callers_ends_the_conversion(samples, vera, genesis9, tmp_path, stage):
    def stop_at(name):
        if name == stage:
            raise LookupError(name)

    with pytest.warns(gantrel.Warning, match="nothing was saved"), pytest.raises(LookupError, match=stage):
        gantrel.convert(vera, genesis9, content=[samples], save=save_into(tmp_path), progress=stop_at)
    assert files_below(tmp_path) == []
    gantrel.convert(vera, genesis9, content=[samples], save=save_into(tmp_path))
    assert len(files_below(tmp_path)) == 2


@pytest.mark.parametrize("stage", ["Loading the figures", "Measuring the result", "Saving the morphs"])
def test_an_interrupt_ends_the_conversion(samples, vera, genesis9, tmp_path, interruptible, stage):
    def interrupt_at(name):
        if name == stage:
            os.kill(os.getpid(), signal.SIGINT)

    with pytest.warns(gantrel.Warning, match="nothing was saved"), pytest.raises(KeyboardInterrupt):
        gantrel.convert(vera, genesis9, content=[samples], save=save_into(tmp_path), progress=interrupt_at)
    assert files_below(tmp_path) == []


@pytest.mark.parametrize("stage", ["Exporting source as OBJ", "Creating full figure morph", "Measuring the result"])
def test_a_conversion_that_ends_early_leaves_the_figures_as_they_were(samples, vera, genesis9, stage):
    def stop_at(name):
        if name == stage:
            raise LookupError(name)

    with gantrel.Library(samples) as library:
        source, target = library.load(vera), library.load(genesis9)
        source.level = target.level = 0
        before = source.vertices, target.vertices
        with pytest.raises(LookupError):
            gantrel.convert(source, target, jobs="full", name="Vera", progress=stop_at)
        np.testing.assert_array_equal(source.vertices, before[0])
        np.testing.assert_array_equal(target.vertices, before[1])
        assert "Vera" not in list(target.dials) and (source.label, target.label) == ("Vera", "Genesis 9")
        assert gantrel.convert(source, target, jobs="full", name="Vera").created[0].name == "Vera"


def test_the_library_is_busy_while_it_converts(samples, vera, genesis9):
    met = []

    def use(library, source):
        for work in (lambda: source.vertices, library.close, lambda: gantrel.convert(vera, genesis9)):
            try:
                work()
            except gantrel.BusyError as error:
                met.append(str(error))

    with gantrel.Library(samples) as library:
        source, target = library.load(vera), library.load(genesis9)
        gantrel.convert(source, target, jobs="full", name="Vera",
                        progress=lambda name: use(library, source) if name == "Measuring the result" else None)
    assert met[:2] == ["The library is at work."] * 2 and "one host at a time" in met[2]


def test_an_interrupt_ends_a_match_before_it_is_done(interruptible):
    source, target = plane(500), plane(370)
    begun, is_done = threading.Event(), False

    def interrupt():
        begun.wait()
        os.kill(os.getpid(), signal.SIGINT)

    thread = threading.Thread(target=interrupt)
    thread.start()
    with pytest.raises(KeyboardInterrupt):
        begun.set()
        gantrel.Match(*source, *target, register=True)
        is_done = True
    thread.join()
    assert not is_done
    small = plane(3)
    assert gantrel.Match(*small, *small).statistics.matched == 16


def test_handlers_of_signals_run_while_work_goes_on():
    met = []
    former = signal.signal(signal.SIGALRM, lambda number, frame: met.append(number))
    try:
        signal.setitimer(signal.ITIMER_REAL, 0.05)
        gantrel.Match(*plane(500), *plane(370))
    finally:
        signal.setitimer(signal.ITIMER_REAL, 0)
        signal.signal(signal.SIGALRM, former)
    assert met == [signal.SIGALRM]


def test_a_warning_that_is_raised_has_the_result(vera, genesis9, tmp_path):
    with warnings.catch_warnings():
        warnings.simplefilter("error")
        with pytest.raises(gantrel.Warning, match="beyond the limits") as raised:
            gantrel.convert(vera, genesis9, dials={"PHMSmile": 5}, save=save_into(tmp_path))
    made = raised.value.result
    assert isinstance(made, gantrel.Conversion)
    assert files_below(tmp_path) == sorted(morph.file for morph in made.created) != []
    assert gantrel.Warning("of something else").result is None


def test_warnings_of_a_conversion_stand_in_its_result_too(samples, vera, genesis9):
    with warnings.catch_warnings(record=True) as told:
        warnings.simplefilter("always")
        made = gantrel.convert(vera, genesis9, dials={"PHMSmile": 5}, jobs="full")
    assert [str(one.message) for one in told] == made.warnings
    assert "dial PHMSmile=5 is beyond the limits" in made.warnings[0]
