// Packaging of content files and the URIs in them.
// SPDX-License-Identifier: MIT

#include "base/errors.h"
#include "dson/file_text.h"
#include "dson/gzip.h"
#include "dson/reader.h"
#include "dson/uri.h"
#include "tests/host/content_fixture.h"

namespace {

std::string Expand(const std::string& bytes, std::size_t limit = dson::maxTextSize)
{
    return dson::Decompress(bytes, "file", limit);
}

const char* const json = "{ \"name\" : \"Gr\xC3\xB6\xC3\x9F"
                         "e \xF0\x9F\x98\x80\" }";

std::string Utf16(bool bigEndian, bool mark)
{
    std::string bytes;
    const QString text = (mark ? QString(QChar(0xFEFF)) : QString()) + QString::fromUtf8(json);
    for (const QChar c : text) {
        const char low = static_cast<char>(c.unicode() & 0xFF), high = static_cast<char>(c.unicode() >> 8);
        bytes += bigEndian ? high : low;
        bytes += bigEndian ? low : high;
    }
    return bytes;
}

class FileText : public testing::Test {
protected:
    std::string read(const std::string& bytes) const
    {
        WriteBytes(file(), bytes);
        return dson::ReadText(file());
    }
    std::filesystem::path file() const { return _folder.filePath(QStringLiteral("file.dsf")).toStdString(); }

    QTemporaryDir _folder;
};

} // namespace

TEST(Gzip, gives_back_what_it_packed)
{
    for (const std::size_t size : {0u, 1u, 1000u, 300000u}) {
        std::string text(size, 'x');
        for (std::size_t i = 0; i < size; ++i)
            text[i] = static_cast<char>(i * i / 7);
        EXPECT_EQ(Expand(dson::Compress(text)), text);
    }
}

TEST(Gzip, a_zeroed_trailer_is_accepted_and_a_wrong_one_refused)
{
    const std::string good = dson::Compress("some text");
    std::string zeroed = good;
    zeroed.replace(zeroed.size() - 8, 8, 8, '\0');
    EXPECT_EQ(Expand(zeroed), "some text");
    for (std::size_t i = good.size() - 8; i < good.size(); ++i) {
        std::string wrong = good;
        wrong[i] = static_cast<char>(wrong[i] ^ 0x40);
        EXPECT_EQ(ErrorOf([&] { Expand(wrong); }), "file: the compressed data is damaged");
    }
}

TEST(Gzip, cut_off_at_any_byte_it_is_refused)
{
    const std::string good =
        dson::Compress("{ \"file_version\" : \"0.6.0.0\", \"numbers\" : [ 1, 2, 3, 4, 5 ] }");
    for (std::size_t size = 2; size < good.size(); ++size)
        EXPECT_EQ(ErrorOf([&] { Expand(good.substr(0, size)); }), "file: the compressed data is cut off")
            << size;
}

TEST(Gzip, damage_anywhere_is_an_error_or_harmless)
{
    const std::string text(500, 'a');
    const std::string good = dson::Compress(text);
    for (std::size_t i = 10; i < good.size(); ++i) {
        std::string bad = good;
        bad[i] = static_cast<char>(~bad[i]);
        try {
            EXPECT_EQ(Expand(bad), text) << i;
        } catch (const base::FormatError&) {
        }
    }
}

TEST(Gzip, expands_no_further_than_the_limit)
{
    const std::string bomb = dson::Compress(std::string(10000000, '\0'));
    EXPECT_LT(bomb.size(), 20000u);
    EXPECT_EQ(ErrorOf([&] { Expand(bomb, 100000); }), "file: expands to more than 100000 bytes");
    EXPECT_EQ(Expand(dson::Compress(std::string(100000, 'x')), 100000).size(), 100000u);
}

TEST(Gzip, members_one_behind_the_other_are_one_text)
{
    const std::string first = dson::Compress("{ \"a\": "), second = dson::Compress("1 }");
    EXPECT_EQ(Expand(first + second), "{ \"a\": 1 }");
    EXPECT_EQ(Expand(first + dson::Compress("") + second + std::string(9, '\0')), "{ \"a\": 1 }");
    for (std::size_t size = 2; size < second.size(); ++size)
        EXPECT_EQ(ErrorOf([&] { Expand(first + second.substr(0, size)); }),
                  "file: the compressed data is cut off")
            << size;
}

TEST(Gzip, members_share_the_limit)
{
    const std::string half = dson::Compress(std::string(50000, 'x'));
    EXPECT_EQ(Expand(half + half, 100000).size(), 100000u);
    EXPECT_EQ(ErrorOf([&] { Expand(half + half, 99999); }), "file: expands to more than 99999 bytes");
    const std::string bomb = dson::Compress(std::string(10000000, '\0'));
    EXPECT_EQ(ErrorOf([&] { Expand(half + bomb, 100000); }), "file: expands to more than 100000 bytes");
}

TEST(Gzip, optional_parts_of_the_header_are_stepped_over)
{
    std::string packed = dson::Compress("some text");
    packed[3] = 4 | 8 | 16 | 2;
    packed.insert(10, std::string("\x03\x00"
                                  "abc"
                                  "name\0"
                                  "comment\0"
                                  "\x00\x00",
                                  20));
    EXPECT_EQ(Expand(packed), "some text");
}

TEST_F(FileText, is_the_same_in_every_encoding)
{
    EXPECT_EQ(read(json), json);
    EXPECT_EQ(read(std::string("\xEF\xBB\xBF") + json), json);
    EXPECT_EQ(read(dson::Compress(json)), json);
    for (const bool mark : {true, false})
        for (const bool bigEndian : {true, false})
            EXPECT_EQ(read(Utf16(bigEndian, mark)), json) << mark << bigEndian;
    EXPECT_EQ(read(dson::Compress(Utf16(true, true))), json);
    EXPECT_EQ(read(""), "");
}

TEST_F(FileText, that_ends_within_a_character_is_refused)
{
    const std::string whole = Utf16(false, true);
    EXPECT_EQ(ErrorOf([&] { read(whole.substr(0, whole.size() - 1)); }),
              file().string() + ": the UTF-16 text is cut off");
}

TEST_F(FileText, of_what_is_no_file_is_an_error)
{
    const std::string folder = _folder.path().toStdString();
    EXPECT_EQ(ErrorOf([&] { dson::ReadText(folder); }), "cannot read " + folder + ": it is a folder");
    EXPECT_EQ(ErrorOf([&] { dson::ReadText(folder + "/none.dsf"); }),
              "cannot read " + folder + "/none.dsf: No such file or directory");
}

TEST_F(FileText, with_commas_before_closing_brackets_is_read_and_that_is_told)
{
    WriteBytes(file(),
               R"({"file_version": "0.6.0.0", "asset_info": {"id": "/x.dsf", "type": "modifier",},})");
    const dson::Document document = dson::ReadDocument(file());
    EXPECT_EQ(document.info.type, "modifier");
    EXPECT_EQ(document.diagnostics,
              (base::Diagnostics{{base::Severity::Warning, file().string(), "",
                                  "has 2 stray commas, left out: the first at line 1, column 78"}}));
}

TEST_F(FileText, of_another_systems_companion_file_is_no_document)
{
    WriteBytes(file(), std::string("\x00\x05\x16\x07\x00\x02\x00\x00Mac OS X", 16));
    EXPECT_EQ(ErrorOf([&] { dson::ReadDocument(file()); }),
              file().string() + ": line 1, column 1 is not valid JSON");
}

TEST(Uri, every_form_is_taken_apart)
{
    struct Row {
        const char* text;
        dson::Uri parts; ///< scheme, node, path, id, property
    };
    const Row rows[] = {
        {"/data/Acme/Mini/Base/Mini.dsf#Mini", {"", "", "/data/Acme/Mini/Base/Mini.dsf", "Mini", ""}},
        {"#Mini", {"", "", "", "Mini", ""}},
        {"Mini:#MiniHeadRound?value", {"", "Mini", "", "MiniHeadRound", "value"}},
        {"Mini:/data/a.dsf#MiniHeadRound?value", {"", "Mini", "/data/a.dsf", "MiniHeadRound", "value"}},
        {"l_arm:/data/a.dsf#l_arm?center_point/x", {"", "l_arm", "/data/a.dsf", "l_arm", "center_point/x"}},
        {"l_arm:#l_arm?rotation/z", {"", "l_arm", "", "l_arm", "rotation/z"}},
        {"name://@selection/l_arm:?rotation/x/value",
         {"name", "//@selection/l_arm", "", "", "rotation/x/value"}},
        {"name://@selection:?translation/y/value", {"name", "//@selection", "", "", "translation/y/value"}},
        {"name://@selection#MiniHeadRound:?value/value",
         {"name", "//@selection", "", "MiniHeadRound", "value/value"}},
        {"name://@selection#materials/Skin:?diffuse/value",
         {"name", "//@selection", "", "materials/Skin", "diffuse/value"}},
        {"name://@selection#geometries/Mini:", {"name", "//@selection", "", "geometries/Mini", ""}},
        {"id:/data/a.dsf#x", {"id", "", "/data/a.dsf", "x", ""}},
        {"name:/data/a.dsf#x", {"name", "", "/data/a.dsf", "x", ""}},
        {"data\\Acme\\a.dsf#x", {"", "", "data/Acme/a.dsf", "x", ""}},
        {"/a/what?.dsf#x?value", {"", "", "/a/what?.dsf", "x", "value"}},
        {"/a.dsf#x#y", {"", "", "/a.dsf", "x#y", ""}},
        {"", {"", "", "", "", ""}},
        {"?", {"", "", "", "", ""}},
    };
    for (const Row& row : rows) {
        const dson::Uri uri = dson::ParseUri(row.text);
        EXPECT_EQ(uri.scheme, row.parts.scheme) << row.text;
        EXPECT_EQ(uri.node, row.parts.node) << row.text;
        EXPECT_EQ(uri.path, row.parts.path) << row.text;
        EXPECT_EQ(uri.id, row.parts.id) << row.text;
        EXPECT_EQ(uri.property, row.parts.property) << row.text;
    }
}

TEST(Uri, parts_are_decoded_once_and_after_splitting)
{
    const dson::Uri uri = dson::ParseUri("/data/DAZ%203D/Gr%C3%B6%C3%9Fe%2520.dsf#Base%20%23%3f%25?value");
    EXPECT_EQ(uri.path, "/data/DAZ 3D/Gr\xC3\xB6\xC3\x9F"
                        "e%20.dsf");
    EXPECT_EQ(uri.id, "Base #?%");
    EXPECT_EQ(uri.property, "value");
    EXPECT_EQ(dson::ParseUri("/Gr\xC3\xB6\xC3\x9F"
                             "e no code.dsf")
                  .path,
              "/Gr\xC3\xB6\xC3\x9F"
              "e no code.dsf");
    EXPECT_EQ(dson::PercentDecode("100% %2 %zz %"), "100% %2 %zz %");
}

TEST(Uri, what_is_encoded_is_decoded_to_the_same)
{
    std::string every;
    for (int c = 1; c < 256; ++c)
        every += static_cast<char>(c);
    EXPECT_EQ(dson::PercentDecode(dson::EncodePath(every)), every);
    EXPECT_EQ(dson::PercentDecode(dson::EncodeFragment(every)), every);
    EXPECT_EQ(dson::EncodePath("/DAZ 3D/a-b_c.d~(+).dsf"), "/DAZ%203D/a-b_c.d~%28%2B%29.dsf");
    EXPECT_EQ(dson::EncodeFragment("a/b \xC3\xB6"), "a%2Fb%20%C3%B6");
    const dson::Uri uri =
        dson::ParseUri(dson::MakePropertyUri("l arm", "/data/A B/m.dsf", "a#b:c", "rotation/z"));
    EXPECT_EQ(uri.node, "l arm");
    EXPECT_EQ(uri.path, "/data/A B/m.dsf");
    EXPECT_EQ(uri.id, "a#b:c");
    EXPECT_EQ(uri.property, "rotation/z");
}

TEST(Uri, paths_that_climb_out_are_told)
{
    for (const char* const path :
         {"..", "../x", "/../../etc/passwd", "a/../b", "a/..", "/data/..", "..\\x", "/data\\..\\..\\x.dsf"})
        EXPECT_TRUE(dson::LeavesFolder(path)) << path;
    EXPECT_TRUE(dson::LeavesFolder(std::string("a\0b", 3)));
    EXPECT_TRUE(dson::LeavesFolder(dson::ParseUri("/data%2f%2e%2e%2f%2e%2e/x#y").path));
    EXPECT_TRUE(dson::LeavesFolder(dson::ParseUri("data\\..\\..\\x#y").path));
    for (const char* const path : {"", "/", "a..b/c", "...", "/data/.hidden/x.dsf", "./a"})
        EXPECT_FALSE(dson::LeavesFolder(path)) << path;
}
