// Scenes, clothes and presets around the figure whose files are written by hand.
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/host/foreign_fixture.h"

class ForeignScene : public ForeignTest {
protected:
    /// A prop of one quad at the origin, /data/Nord/Hat.dsf#Hat, with a child node "Brim".
    void writeHat() const { write("data/Nord/Hat.dsf", doll::File(hatMembers("Hat", "Brim"), "prop")); }
    static std::string hatMembers(const std::string& id, const std::string& child)
    {
        return R"("geometry_library": [{"id": ")" + id +
               R"(-g", "vertices": {"values": [[0,0,0],[1,0,0],[1,1,0],[0,1,0]]},
            "polygon_groups": {"values": ["all"]}, "polygon_material_groups": {"values": ["Felt"]},
            "polylist": {"values": [[0,0,0,1,2,3]]}}],
            "node_library": [{"id": ")" +
               id + R"(", "type": "node", "label": ")" + id + R"("}, {"id": ")" + child +
               R"(", "type": "node", "parent": "#)" + id + R"("}])";
    }
    /// A second figure like the Doll, /data/Nord/Shirt/Shirt.dsf.
    void writeShirt() const { write("data/Nord/Shirt/Shirt.dsf", doll::File(doll::Figure(), "figure")); }
    static std::string shirt(const std::string& more)
    {
        return doll::Instance("-s", R"(, "name": "Shirt", "label": "Shirt")" + more, "",
                              "/data/Nord/Shirt/Shirt.dsf");
    }
    /// A morph of the Shirt.
    void writeShirtMorph(const std::string& name, const std::string& more = "") const
    {
        std::string morph = doll::Morph(name, 3, 2.0, more);
        morph.replace(morph.find("/data/Nord/Doll/Doll.dsf"), 24, "/data/Nord/Shirt/Shirt.dsf");
        write("data/Nord/Shirt/Morphs/" + name + ".dsf", doll::ModifierFile(morph));
    }
    bool loadPreset(const std::string& scene, const std::string& type = "preset_pose")
    {
        return load("Presets/Preset.duf", doll::File("\"scene\": {" + scene + "}", type));
    }
};
