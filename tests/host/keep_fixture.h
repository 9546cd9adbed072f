// Scenes that other programs have written, loaded and saved again.
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/host/foreign_scene.h"
#include "tests/host/save_fixture.h"

#include <nlohmann/json.hpp>

class KeepTest : public ForeignScene {
protected:
    struct Saving : SaveTest {
        using SaveTest::save;
        using SaveTest::untimed;
    };

    /// The scene as a file has it when it is saved now.
    nlohmann::ordered_json saved(const char* filter = "DzSceneAssetFilter")
    {
        EXPECT_EQ(Saving::save(filter, target()), 0) << log().toStdString();
        return nlohmann::ordered_json::parse(ReadBytes(target()));
    }
    /// Loads a file with these top-level members, and saves it.
    nlohmann::ordered_json resaved(const std::string& members, const char* type = "scene")
    {
        EXPECT_TRUE(load("Scenes/Foreign.duf", doll::File(members, type))) << log().toStdString();
        return saved();
    }
    /// Loading and saving give the same bytes from the second save on.
    void expectStable()
    {
        std::string before;
        for (int i = 0; i < 3; ++i) {
            TestHost().reset();
            use(_library);
            ASSERT_TRUE(open(target())) << log().toStdString();
            ASSERT_EQ(Saving::save("DzSceneAssetFilter", target()), 0);
            const std::string now = Saving::untimed(target());
            EXPECT_TRUE(i == 0 || now == before) << now;
            before = now;
        }
    }
    std::filesystem::path target() const { return folder("saved") / "Saved.duf"; }

    static nlohmann::ordered_json parsed(const char* text) { return nlohmann::ordered_json::parse(text); }
    /// The entry of a list with that id; null if there is none.
    static nlohmann::ordered_json entry(const nlohmann::ordered_json& list, const std::string& id)
    {
        for (const auto& item : list)
            if (item.is_object() && item.value("id", "") == id)
                return item;
        return nullptr;
    }
    static std::string scene(const std::string& nodes, const std::string& more)
    {
        return R"("scene": {"nodes": [)" + nodes + "]" + more + "}";
    }
};
