"""Classes that scripts make, and names that there are not."""

# SPDX-License-Identifier: MIT

import unittest

from program import ScriptCase


class ClassesTest(ScriptCase):
    def test_links_drive_one_property_by_another(self):
        self.assertEqual(self.out_of("""
            function dial(name) { var made = new DzFloatProperty(name, false, true, 0); node.addProperty(made); return made; }
            var node = new DzNode(); Scene.addNode(node);
            var from = dial('From'), to = dial('To'), product = dial('Product');
            print(to.insertController(new DzERCLink(from, 2, 1)), to.getNumControllers(), from.getNumSlaveControllers());
            from.setValue(3); print(to.getValue());
            var times = new DzERCLink(DzERCLink.ERCMultiply, from);
            print(times.getType() == DzERCLink.ERCMultiply, times.getScalar(), times.getAddend());
            product.setValue(5); product.insertController(times); print(product.getValue());
            print(to.insertController(times), to.insertController(null));
            """), "true 1 1\n7\ntrue 1 0\n15\nfalse false\n")

    def test_properties_are_made_of_name_and_default(self):
        self.assertEqual(self.out_of("""
            var node = new DzNode();
            var all = [new DzFloatProperty('F', true, true, 0.5), new DzIntProperty('I', false, true, 3),
                       new DzBoolProperty('B', false, true, true), new DzEnumProperty('E'), new DzStringProperty('S', false, false, 'x')];
            all.forEach(function(one) { print(one.getName(), one.className(), node.addProperty(one), one.canAnimate(), one.isUserProperty()); });
            print(all[0].getValue(), all[1].getDoubleValue(), all[2].getDoubleValue(), node.getNumProperties() > 4);
            """), "F DzFloatProperty 0 true true\nI DzIntProperty 0 false true\nB DzBoolProperty 0 false true\n"
            "E DzEnumProperty 0 true true\nS DzStringProperty 0 false false\n0.5 3 1 true\n")

    def test_nodes_bones_figures_and_settings_are_made(self):
        self.assertEqual(self.out_of("""
            var figure = new DzFigure(), bone = new DzBone();
            bone.setName('hip'); figure.addNodeChild(bone); Scene.addNode(figure);
            print(figure.findBone('hip') == bone, Scene.getNumSkeletons());
            var settings = new DzSettings(); settings.setIntValue('a', 3); print(settings.getIntValue('a'), DzSettings.IntValue);
            """), "true 1\n3 1\n")

    def test_arguments_that_make_nothing_are_refused_with_what_is_wanted(self):
        link = "it is new DzERCLink(type = DzERCLink.ERCDeltaAdd, property, scalar = 1, addend = 0)."
        for made, said in (("DzERCLink()", link), ("DzERCLink(9, new DzFloatProperty('a'))", link), ("DzERCLink(Scene)", link),
                           ("DzERCLink(0, new DzNode())", link), ("DzFile()", "it is new DzFile(name)."),
                           ("DzFile('a', 'b')", "it is new DzFile(name)."), ("DzDir('')", "it is new DzDir(name)."),
                           ("DzFloatProperty()", "it is new DzFloatProperty(name, canAnimate = true, isUserProperty = true, defaultValue).")):
            with self.subTest(made):
                name = made.split("(")[0]
                self.assertEqual(self.error_of("new " + made), f"line 1: TypeError: these arguments make no {name}; {said}")

    def test_names_that_there_are_not_get_the_ones_that_were_meant(self):
        for code, said in (("new DzMorfLoader()", "DzMorfLoader; did you mean DzMorphLoader?"),
                           ("new DzFiel('a')", "DzFiel; did you mean DzFile?"), ("prnt(1)", "prnt; did you mean print?"),
                           ("scene.clear()", "scene; did you mean Scene?"), ("zzzzzz()", "zzzzzz."),
                           ("var mine = 1; mina", "mina; did you mean mine?")):
            with self.subTest(code):
                self.assertEqual(self.error_of(code), "line 1: ReferenceError: Can't find variable: " + said)


if __name__ == "__main__":
    unittest.main()
