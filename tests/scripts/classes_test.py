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

    def test_places_and_boxes_are_values_with_functions(self):
        self.assertEqual(self.out_of("""
            var a = new DzVec3(3, 4, 0), b = new DzVec3();
            print(a.length(), a.lengthSquared(), a.normalized(), b.normalized(), a.dot(new DzVec3(1, 2, 3)));
            print(new DzVec3(1, 0, 0).cross({x: 0, y: 1, z: 0}), a.add(a), a.subtract(a), a.multiply(2), a);
            var box = new DzBox3(); print(box.isValid(), box.getSize());
            box.include(a); box.include(b); print(box.isValid(), box, box.getSize(), box.getCenter(), box.getMax());
            print(new DzBox3(b, a).min.x, new DzBox3(b, a).getMin() instanceof DzVec3);
            """), """5 25 (0.6000000000000001, 0.8, 0) (0, 0, 0) 11
(0, 0, 1) (6, 8, 0) (0, 0, 0) (6, 8, 0) (3, 4, 0)
false (0, 0, 0)
true (0, 0, 0) to (3, 4, 0) (3, 4, 0) (1.5, 2, 0) (3, 4, 0)
0 true
""")

    def test_the_host_gives_such_values_and_takes_them(self):
        self.assertEqual(self.out_of("""
            var node = new DzNode(); Scene.addNode(node); node.getXPosControl().setValue(3);
            var place = node.getWSPos(), members = []; for (var name in place) members.push(name);
            print(place instanceof DzVec3, place.add(new DzVec3(1, 0, 0)), members, JSON.stringify(place));
            var camera = new DzBasicCamera(); Scene.addNode(camera);
            camera.aimAt(new DzVec3(0, 0, -10)); camera.frame(new DzBox3(new DzVec3(-1, -1, -1), new DzVec3(1, 1, 1)), 1);
            print(camera.getWSPos() instanceof DzVec3, Scene.getBoundingBox() instanceof DzBox3);
            """), 'true (4, 0, 0) x,y,z {"x":3,"y":0,"z":0}\ntrue true\n')

    def test_arguments_that_make_nothing_are_refused_with_what_is_wanted(self):
        link = "it is new DzERCLink(type = DzERCLink.ERCDeltaAdd, property, scalar = 1, addend = 0)."
        for made, said in (("DzERCLink()", link), ("DzERCLink(9, new DzFloatProperty('a'))", link), ("DzERCLink(Scene)", link),
                           ("DzERCLink(0, new DzNode())", link), ("DzFile()", "it is new DzFile(name)."),
                           ("DzFile('a', 'b')", "it is new DzFile(name)."), ("DzVec3(1)", "it is new DzVec3(x = 0, y = 0, z = 0)."), ("DzVec3('a', 1, 2)", "it is new DzVec3(x = 0, y = 0, z = 0)."),
                           ("DzBone(5)", "it is new DzBone()."), ("DzNode('a', 'b')", "it is new DzNode()."),
                           ("DzMorphLoader(null)", "it is new DzMorphLoader()."), ("DzBox3(1, 2)", "it is new DzBox3(min, max)."),
                           ("DzFloatProperty()", "it is new DzFloatProperty(name, canAnimate = true, isUserProperty = true, defaultValue).")):
            with self.subTest(made):
                name = made.split("(")[0]
                self.assertEqual(self.error_of("new " + made), f"line 1: TypeError: these arguments make no {name}; {said}")

    def test_an_empty_name_is_refused_as_what_it_is(self):
        for name in ("DzDir", "DzFile", "DzFileInfo"):
            self.assertEqual(self.error_of(f"new {name}('')"),
                             f"line 1: TypeError: an empty text makes no {name}; it is new {name}(name).")

    def test_names_that_there_are_not_get_the_ones_that_were_meant(self):
        for code, said in (("new DzMorfLoader()", "DzMorfLoader; did you mean DzMorphLoader?"),
                           ("new DzFiel('a')", "DzFiel; did you mean DzFile?"), ("prnt(1)", "prnt; did you mean print?"),
                           ("scene.clear()", "scene; did you mean Scene?"), ("zzzzzz()", "zzzzzz."),
                           ("var mine = 1; mina", "mina; did you mean mine?")):
            with self.subTest(code):
                self.assertEqual(self.error_of(code), "line 1: ReferenceError: Can't find variable: " + said)


if __name__ == "__main__":
    unittest.main()
