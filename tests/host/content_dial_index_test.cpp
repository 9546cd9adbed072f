// Finding a figure's dials by what files call them.
// SPDX-License-Identifier: MIT

#include "dzfloatproperty.h"
#include "dznode.h"
#include "library/dial_index.h"
#include "tests/host/host_fixture.h"

namespace {

class Dials : public HostTest {
protected:
    DzFloatProperty* add(const std::string& path, const std::string& id, const std::string& name,
                         const DzNode* owner = nullptr, const char* type = "float", bool isAlone = false)
    {
        _made.push_back(std::make_unique<DzFloatProperty>(QString::fromStdString(name), true, true, 0.0f));
        dson::Modifier modifier;
        modifier.id = id;
        modifier.name = name;
        modifier.channel.type = type;
        dson::Document file;
        file.modifiers.resize(isAlone ? 1 : 2);
        index.add(modifier, file, path, owner ? *owner : root, *_made.back());
        return _made.back().get();
    }
    DzNumericProperty* find(const std::string& uri, const DzNumericProperty* asking = nullptr) const
    {
        return index.find(dson::ParseUri(uri), {nullptr, asking});
    }

    DzNode root, bone;
    openhost::DialIndex index{root};

private:
    std::vector<std::unique_ptr<DzFloatProperty>> _made;
};

} // namespace

TEST_F(Dials, of_one_id_in_a_file_come_before_aliases_and_what_is_lost_comes_last)
{
    index.lose("/a.dsf", "Up");
    EXPECT_EQ(find("/a.dsf#Up"), nullptr);
    EXPECT_FALSE(index.has("/a.dsf", "Up"));
    const DzFloatProperty* const alias = add("/a.dsf", "Up", "Up", nullptr, "alias");
    EXPECT_EQ(find("/a.dsf#Up"), alias);
    const DzFloatProperty* const dial = add("/A.dsf", "Up", "Up");
    EXPECT_EQ(find("/a.dsf#Up"), dial);
    add("/a.dsf", "Up", "Up");
    index.lose("/a.dsf", "Up");
    EXPECT_EQ(find("/a.dsf#Up"), dial);
    EXPECT_TRUE(index.has("/a.dsf", "Up"));
    EXPECT_EQ(find("/b.dsf#Up"), dial) << "which no file of that path defines";
}

TEST_F(Dials, added_after_a_look_are_found_in_every_way)
{
    EXPECT_EQ(find("/a.dsf#Up"), nullptr);
    EXPECT_EQ(find("#up name"), nullptr);
    const DzFloatProperty* const first = add("/a.dsf", "Up", "Up Name", nullptr, "float", true);
    EXPECT_EQ(find("/a.dsf#Up"), first);
    EXPECT_EQ(find("/a.dsf#Up Name"), first);
    EXPECT_EQ(find("/a.dsf#Renamed"), first);
    for (const char* const text : {"#Up", "#Up Name", "#up", "#UP NAME"})
        EXPECT_EQ(find(text), first) << text;
    const DzFloatProperty* const second = add("/b.dsf", "Down", "Down Name", nullptr, "float", true);
    EXPECT_EQ(find("/b.dsf#Down"), second);
    EXPECT_EQ(find("/b.dsf#Renamed"), second);
    for (const char* const text : {"#Down", "#Down Name", "#down", "#DOWN NAME"})
        EXPECT_EQ(find(text), second) << text;
}

TEST_F(Dials, of_the_root_come_first_and_in_other_letters_the_one_that_was_added_first)
{
    const DzFloatProperty* const ofBone = add("/a.dsf", "Up", "Up", &bone);
    const DzFloatProperty* const ofRoot = add("/b.dsf", "Up", "Up");
    EXPECT_EQ(find("#Up"), ofRoot);
    EXPECT_EQ(find("#up"), ofBone);
    EXPECT_EQ(index.find("Up", {&bone, nullptr}), ofBone);
    EXPECT_EQ(index.find("up", {&root, nullptr}), ofRoot);
    const DzFloatProperty* const firstDown = add("/a.dsf", "Down", "Down");
    add("/b.dsf", "Down", "Down", &bone);
    EXPECT_EQ(find("#down"), firstDown);
}

TEST_F(Dials, called_so_exactly_come_before_those_in_other_letters)
{
    add("/a.dsf", "up", "a", &bone);
    const DzFloatProperty* const exact = add("/b.dsf", "Up", "b");
    EXPECT_EQ(find("#Up"), exact);
    EXPECT_EQ(index.find("Up", {&bone, nullptr}), exact);
}

TEST_F(Dials, are_known_by_name_within_their_file)
{
    const DzFloatProperty* const one = add("/a.dsf", "1", "Up");
    const DzFloatProperty* const other = add("/b.dsf", "1", "Up", &bone);
    EXPECT_EQ(find("/a.dsf#Up"), one);
    EXPECT_EQ(find("/b.dsf#Up"), other);
    EXPECT_EQ(find("/b.dsf#1"), other);
}

TEST_F(Dials, are_not_what_an_alias_of_their_name_finds_in_itself)
{
    const DzFloatProperty* const alias = add("/a.dsf", "Up", "Up", nullptr, "alias");
    EXPECT_EQ(find("#Up"), alias);
    EXPECT_EQ(find("#Up", alias), nullptr);
    EXPECT_EQ(find("#up", alias), nullptr);
    const DzFloatProperty* const dial = add("/b.dsf", "Up", "Up", &bone);
    EXPECT_EQ(find("#Up", alias), dial);
}

TEST_F(Dials, of_files_that_cannot_be_read_are_none)
{
    const DzFloatProperty* const other = add("/a.dsf", "Up", "Up");
    EXPECT_EQ(find("/lost.dsf#Up"), other);
    index.loseFile("/Lost.dsf");
    EXPECT_EQ(find("/lost.dsf#Up"), nullptr);
}
