"""The manual tells of scripts what is so: its chapter's code runs, and its reference has all that they see."""

# SPDX-License-Identifier: MIT

import os
import pathlib
import re
import subprocess
import unittest

from program import GANTREL, ScriptCase

SOURCE = pathlib.Path(os.environ["GANTREL_SOURCE"])
REFERENCE = pathlib.Path(os.environ["GANTREL_REFERENCE"]).read_text(encoding="utf-8")

# What a script finds: global functions, and of each class its values and the members of an object of it.
TELL = """
for (var name in this) {
    if (name == 'name' || name == 'known' || name == 'one' || name == 'member') continue;
    var known = this[name];
    if (!/^Dz/.test(name)) {
        if (typeof known == 'function') print('function', name);
        continue;
    }
    print('class', name);
    // Each class has the toolkit's values as well; a node has no others.
    if (known === DzVec3 || known === DzBox3) continue; // they have no numbers
    for (var value in known) if (typeof known[value] == 'number' && !(value in DzNode)) print('value', name, value, known[value]);
}
"""
MEMBERS = """
function tell(object) {
    var name = object.toJsonString ? 'DzFileIOSettings' : String(object).split('(')[0];
    print('class', name);
    for (var member in object)
        if (typeof object[member] == 'function') print('method', name, member.replace(/\\(.*/, ''));
}
[Scene, App, UndoStack, MainWindow, new DzNode(), new DzFigure(), new DzBone(), new DzMorph(), new DzMorphDeltas(), new DzBasicCamera(),
 new DzFileIOSettings(), new DzMorphLoader(), new DzMorphLoaderBatch(), new DzTransferUtility(), new DzScript(), new DzFile('a'),
 new DzFileInfo('a'), new DzDir('a'), new DzFloatProperty('a'), new DzEnumProperty('a'), new DzStringProperty('a'),
 new DzERCLink(new DzFloatProperty('b')), App.getContentMgr(), App.getRenderMgr(), App.getRenderMgr().getRenderOptions(),
 App.getAssetIOMgr(), App.getExportMgr(), App.getExportMgr().getExporter(0), App.getImportMgr(), App.getPluginMgr(),
 MainWindow.getPaneMgr(), MainWindow.getActionMgr(), MainWindow.getViewportMgr(),
 MainWindow.getViewportMgr().getActiveViewport().get3DViewport()].forEach(tell);
"""


def sections():
    """Of each class, the text below its heading."""
    parts = re.split(r"^### (.*)$", REFERENCE, flags=re.MULTILINE)
    return dict(zip(parts[1::2], parts[2::2]))


class ReferenceTest(ScriptCase):
    def test_every_function_has_a_sentence(self):
        functions = set(re.findall(r"^- `(\w+)\([^)]*\)`\. [A-Z].*\.$", REFERENCE.split("## Objects")[0], re.MULTILINE))
        found = {line.split()[1] for line in self.out_of(TELL).splitlines() if line.startswith("function ")}
        engines = {"gc", "version"}  # the engine's own
        self.assertEqual(found - engines, functions)
        self.assertIn("convert", functions)

    def test_every_class_and_value_is_there(self):
        known, values = sections(), 0
        for kind, name, *rest in (line.split() for line in self.out_of(TELL).splitlines()):
            if kind == "class":
                self.assertIn(name, known)
            elif kind == "value":
                values += 1
                self.assertTrue(any(f"`{rest[0]}` {rest[1]}" in known[one] for one in self.with_bases(name)), (name, rest))
        self.assertGreater(values, 30)

    def with_bases(self, name):
        known, chain = sections(), []
        while name in known:
            chain.append(name)
            base = re.match(r"\s*A kind of (\w+)\.", known[name])
            name = base[1] if base else None
        return chain

    def test_every_method_of_an_object_is_there(self):
        known, methods = sections(), 0
        # Of the toolkit's own classes.
        toolkits = {"destroyed", "objectNameChanged", "deleteLater", "className", "inherits", "toString", "findChild", "findChildren",
                    "_q_reregisterTimers", "connect", "disconnect"}
        widgets = {"DzMainWindow", "DzPaneMgr", "DzActionMgr", "DzViewportMgr", "Dz3DViewport", "DzApp"}
        for kind, name, *member in (line.split() for line in self.out_of(MEMBERS).splitlines()):
            self.assertIn(name, known)
            if kind != "method" or member[0] in toolkits or name in widgets:
                continue
            methods += 1
            self.assertTrue(any(f"`{member[0]}(" in known[one] for one in self.with_bases(name)), (name, member))
        self.assertGreater(methods, 300)

    def test_every_method_of_a_value_is_there(self):
        known = sections()
        for name, listed in (line.split() for line in self.out_of(
                "[DzVec3, DzBox3].forEach(function(one, i) {"
                "print(i ? 'DzBox3' : 'DzVec3', Object.getOwnPropertyNames(one.prototype)); });").splitlines()):
            methods = set(listed.split(",")) - {"constructor"}
            self.assertGreater(len(methods), 5)
            for method in methods:
                self.assertIn(f"- `{method}(", known[name])

    def test_most_methods_have_a_sentence_of_the_headers(self):
        items = re.findall(r"^- `\w+\(.*$", REFERENCE, re.MULTILINE)
        self.assertGreater(len(items), 300)
        self.assertIn("- `findBone(name: String)` gives DzBone.", REFERENCE)
        self.assertIn("- `getSkeleton()` gives DzSkeleton. The nearest skeleton up the tree, this node included.", REFERENCE)
        self.assertIn("- `open(mode: Number?)` gives Boolean. A file that is written appears with close(), whole or not at all; Append writes", REFERENCE)

    def test_the_code_of_the_chapter_runs(self):
        library = self.folder / "library"
        subprocess.run([GANTREL, "sample-content", library], check=True, stdout=subprocess.DEVNULL, env=self.environment())
        text = (SOURCE / "docs/manual/17-scripts.md").read_text(encoding="utf-8")
        blocks = [block for block in text.split("```")[1::2] if block.strip().startswith("var ")]
        self.assertEqual(len(blocks), 4)
        opening = f"""
            var files = App.getContentMgr(), source, target;
            files.openFile('{library}/People/Genesis 8 Female/Characters/Vera.duf', true); source = Scene.getSkeleton(0);
            files.openFile('{library}/People/Genesis 9/Genesis 9.duf', true); target = Scene.getSkeleton(1);
            """
        ending = "big.setValue(2); print(figure.getScaleControl().getValue().toFixed(2), new DzFileInfo(App.getTempPath() + '/heights.csv').size());"
        out = self.out_of(opening + "".join(blocks) + ending, "--content", library).splitlines()
        self.assertRegex(out[0], r"^Vera \d+ bones$")
        self.assertRegex(out[1], r"/Vera Head\.dsf \d+$|Head\.dsf \d+$")
        self.assertEqual(out[2], "1.20 12")


if __name__ == "__main__":
    unittest.main()
