// How fast content files are read, at the sizes of real figures and morphs. Bytes are those of their text.
// SPDX-License-Identifier: MIT

#include "base/atomic_file.h"
#include "dson/gzip.h"
#include "dson/reader.h"

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <filesystem>
#include <functional>
#include <random>
#include <string>

namespace {

namespace fs = std::filesystem;

constexpr int vertexCount = 25182;
constexpr int deltaCount = 25000;

/// Rows on lines of their own, as the files of most programs have them.
std::string Rows(int count, const std::function<std::string(int)>& row)
{
    std::string text = fmt::format("{{\n\t\t\t\t\"count\" : {},\n\t\t\t\t\"values\" : [\n", count);
    for (int i = 0; i < count; ++i)
        text += "\t\t\t\t\t[ " + row(i) + (i + 1 < count ? " ],\n" : " ]\n");
    return text + "\t\t\t\t]\n\t\t\t}";
}

/// Numbers with as many digits as single precision has.
class Numbers {
public:
    float operator()(float limit) { return std::uniform_real_distribution<float>(-limit, limit)(_random); }

private:
    std::mt19937 _random{1};
};

std::string Head(const char* type)
{
    return fmt::format(
        "{{\n\t\"file_version\" : \"0.6.0.0\",\n\t\"asset_info\" : {{ \"id\" : \"/data/Acme/x.dsf\", "
        "\"type\" : \"{}\" }},\n",
        type);
}

std::string MorphText()
{
    Numbers number;
    const std::string deltas = Rows(deltaCount, [&](int i) {
        return fmt::format("{}, {}, {}, {}", i, number(1.0f), number(1.0f), number(1.0f));
    });
    return Head("modifier") +
           fmt::format(
               "\t\"modifier_library\" : [ {{\n\t\t\"id\" : \"Up\", \"name\" : \"Up\", \"parent\" : "
               "\"/data/Acme/Body.dsf#Body\",\n\t\t\"channel\" : {{ \"id\" : \"value\", \"type\" : "
               "\"float\", "
               "\"label\" : \"Up\", \"min\" : 0, \"max\" : 1 }},\n\t\t\"morph\" : {{ \"vertex_count\" : {}, "
               "\"deltas\" : {} }}\n\t}} ]\n}}\n",
               vertexCount, deltas);
}

std::string JointText(int joint, int count, Numbers& number)
{
    const std::string weights = Rows(count, [&](int i) {
        return fmt::format("{}, {}", (joint * 97 + i) % vertexCount, std::abs(number(1.0f)));
    });
    return fmt::format("{{ \"id\" : \"b{}\", \"node\" : \"#b{}\", \"node_weights\" : {} }}", joint, joint,
                       weights);
}

std::string FigureText()
{
    constexpr int joints = 80, weightsPerJoint = 2000;
    Numbers number;
    const std::string vertices = Rows(vertexCount, [&](int) {
        return fmt::format("{}, {}, {}", number(90.0f), number(90.0f), number(90.0f));
    });
    const std::string faces = Rows(
        vertexCount - 4, [&](int i) { return fmt::format("0, 0, {}, {}, {}, {}", i, i + 1, i + 2, i + 3); });
    std::string skin;
    for (int joint = 0; joint < joints; ++joint)
        skin += (joint > 0 ? ",\n" : "") + JointText(joint, weightsPerJoint, number);
    return Head("figure") +
           fmt::format(
               "\t\"geometry_library\" : [ {{ \"id\" : \"Body\", \"polygon_groups\" : {{ \"values\" : [ "
               "\"a\" ] "
               "}}, \"polygon_material_groups\" : {{ \"values\" : [ \"a\" ] }},\n\t\"vertices\" : {}, "
               "\"polylist\" : {} }} ],\n\t\"node_library\" : [ {{ \"id\" : \"Body\", \"type\" : \"figure\" "
               "}} ],"
               "\n\t\"modifier_library\" : [ {{ \"id\" : \"Skin\", \"skin\" : {{ \"vertex_count\" : {}, "
               "\"joints\" "
               ": [ {} ] }} }} ]\n}}\n",
               vertices, faces, vertexCount, skin);
}

/// A file that is gone in the end.
class ContentFile {
public:
    explicit ContentFile(const std::string& bytes)
        : _path(fs::temp_directory_path() / "gantrel-dson-bench.dsf")
    {
        base::WriteFileAtomically(_path, bytes);
    }
    ~ContentFile()
    {
        std::error_code ignored;
        fs::remove(_path, ignored);
    }
    ContentFile(const ContentFile&) = delete;
    ContentFile& operator=(const ContentFile&) = delete;

    const fs::path& path() const { return _path; }

private:
    fs::path _path;
};

enum class Packing { Plain, Gzip };

void Read(benchmark::State& state, std::string (*make)(), Packing packing, bool deltas)
{
    const std::string text = make();
    const ContentFile file(packing == Packing::Gzip ? dson::Compress(text) : text);
    for (auto _ : state)
        benchmark::DoNotOptimize(dson::ReadDocument(file.path(), {deltas}));
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size()));
}

BENCHMARK_CAPTURE(Read, a, MorphText, Packing::Plain, false)->Name("read/morph/25k/plain");
BENCHMARK_CAPTURE(Read, b, MorphText, Packing::Gzip, false)->Name("read/morph/25k/gzip");
BENCHMARK_CAPTURE(Read, c, MorphText, Packing::Plain, true)->Name("read/morph/25k/plain/with_deltas");
BENCHMARK_CAPTURE(Read, d, MorphText, Packing::Gzip, true)->Name("read/morph/25k/gzip/with_deltas");
BENCHMARK_CAPTURE(Read, e, FigureText, Packing::Plain, false)->Name("read/figure/25k/plain");
BENCHMARK_CAPTURE(Read, f, FigureText, Packing::Gzip, false)->Name("read/figure/25k/gzip");

} // namespace

BENCHMARK_MAIN();
