// The exact sequence of what a conversion does to its host.
// SPDX-License-Identifier: MIT

#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzintproperty.h"
#include "gnt_convert-figure.h"
#include "ks_daz-helpers.h"
#include "tests/host/host_fixture.h"
#include "tests/plugin/mini_scene.h"

#include <QRegularExpression>

#include <ostream>
#include <tuple>

namespace {

using Lines = std::vector<std::string>;

struct Kind {
    friend void PrintTo(const Kind& kind, std::ostream* out) { *out << kind.name; }

    const char* name;     ///< of the test
    const char* file;     ///< loads the stock figure
    const char* label;    ///< that the stock figure then has
    const char* clone;    ///< the target's property for it
    const char* assetUri; ///< of a figure that shares the stock figure; null for the stock figure's own
    bool posesThighs;
};

const char* const femaleDev = "People/Genesis 8 Female/Developer Kit/Genesis 8 Female Dev Load.duf";
const char* const maleDev = "People/Genesis 8 Male/Developer Kit/Genesis 8 Male Dev Load.duf";

const Kind kinds[] = {
    {"Genesis3Female", "People/Genesis 3 Female/Genesis 3 Female.duf", "Genesis 3 Female",
     "CloneGenesis3Female", nullptr, false},
    {"Genesis3Male", "People/Genesis 3 Male/Genesis 3 Male.duf", "Genesis 3 Male", "CloneGenesis3Male",
     nullptr, false},
    {"Genesis8Female", femaleDev, "Genesis 8 Female", "CloneGenesis8Female", nullptr, true},
    {"Genesis8Male", maleDev, "Genesis 8 Male", "CloneGenesis8Male", nullptr, true},
    {"Genesis8_1Female", femaleDev, "Genesis 8 Female", "CloneGenesis8Female",
     "/data/Daz%203D/Genesis%208/Female%208_1/Genesis8_1Female.dsf#Genesis8_1Female", true},
    {"Genesis8_1Male", maleDev, "Genesis 8 Male", "CloneGenesis8Male",
     "/data/Daz%203D/Genesis%208/Male%208_1/Genesis8_1Male.dsf#Genesis8_1Male", true},
};

/// Notes what the driver asks of the host. What the host does to carry a request out is left out; random
/// characters are shown as *, files without their folders.
class Trace : public HostWatch {
public:
    bool see(const QString& operation, const QString& detail) override
    {
        static const QStringList whole =
            QStringLiteral("progress select visible remove export import openFile transfer createMorph")
                .split(QLatin1Char(' '));
        if (whole.contains(operation) || (operation == QLatin1String("rename") && isDrivers(detail)) ||
            (operation == QLatin1String("property") && isDial(detail)))
            add((operation + QLatin1Char(' ') + normal(detail)).toStdString());
        return true;
    }
    Lines lines;

private:
    /// The parts of a D-Former go one by one, in no order of their own.
    void add(const std::string& line)
    {
        const std::string former = "remove D-Former_1";
        const bool isPart = line.compare(0, former.size(), former) == 0;
        if (!isPart)
            lines.push_back(line);
        else if (lines.back() != former)
            lines.push_back(former);
    }
    /// Loading gives nodes their labels and levels, too.
    static bool isDrivers(const QString& detail)
    {
        return detail.contains(QLatin1String("Vera")) || detail.contains(QLatin1String("Target ")) ||
               detail.contains(QLatin1String("fit suit"));
    }
    static bool isDial(const QString& detail)
    {
        static const QRegularExpression dials(QStringLiteral(
            "^(Genesis\\w+\\.(YTranslate|lodlevel|SubDIALevel(?==2))|[lr]_thigh\\.ZRotate|Clone\\w+\\.Value|"
            "Temporary high-res morph\\.Value|tempg9-\\w+\\.lodlevel)="));
        return dials.match(detail).hasMatch();
    }
    static QString normal(QString detail)
    {
        static const QRegularExpression folder(QStringLiteral("^/.*/")),
            stem(QStringLiteral("(tempg8-src[12]|tempg8-tgt|tempg9|rigged-for-mlp|Vera)-\\w{8}")),
            target(QStringLiteral("Target \\w{8} ")), copy(QStringLiteral("^Genesis\\w+(?=\\.)"));
        detail.remove(folder);
        detail.replace(stem, QStringLiteral("\\1-*"));
        detail.replace(target, QStringLiteral("Target * "));
        return detail.replace(copy, QStringLiteral("figure"));
    }
};

void Append(Lines& lines, const Lines& more)
{
    lines.insert(lines.end(), more.begin(), more.end());
}

/// The level is the source's own, which is none that figures have by themselves.
const int subdLevel = 2;

/// A figure at the resolution of the conversion.
Lines Resolved(GntResolution resolution)
{
    if (resolution == GntResolution::Base)
        return {"property figure.lodlevel=0"};
    return {"property figure.lodlevel=1", "property figure.SubDIALevel=" + std::to_string(subdLevel)};
}

Lines LoadedAs(const std::string& file, const std::string& label, GntResolution resolution)
{
    Lines lines{"openFile " + file, "select " + label};
    Append(lines, Resolved(resolution));
    Append(lines, {"visible " + label + "=false", "visible " + label + "=true"});
    return lines;
}

Lines Thighs(const Kind& kind, const std::string& degrees, const std::string& other)
{
    if (!kind.posesThighs)
        return {};
    return {"property l_thigh.ZRotate=" + degrees, "property r_thigh.ZRotate=" + other};
}

Lines ExpectedUpToTheMorphs(const Kind& kind, GntResolution resolution)
{
    const std::string file = kind.file;
    Lines lines{"progress Adjusting target G9 before creating morphs", "property figure.YTranslate=0",
                "rename Vera -> Vera-*"};
    if (resolution == GntResolution::Base)
        lines.push_back("property figure.lodlevel=0");
    Append(lines, {"progress Exporting source as OBJ", "select Vera-*", "export tempg8-src1-*.obj",
                   "export tempg8-src2-*.obj", "progress Loading stock figure for morph conversion"});
    Append(lines, LoadedAs(file.substr(file.rfind('/') + 1), kind.label, resolution));
    Append(lines,
           {"progress Exporting stock figure as OBJ for morph conversion", "export tempg8-tgt-*.obj",
            "progress Removing stock figure", std::string("remove ") + kind.label,
            "progress Loading stock figure OBJ again", "import tempg8-tgt-*.obj", "select tempg8-tgt-*",
            "progress Creating converted morph", "createMorph Temporary high-res morph",
            "progress Dialing up converted morph", "property Temporary high-res morph.Value=1",
            "progress Loading temporary G9 for fit suit", "rename Genesis 9 -> Target * (Genesis 9)"});
    Append(lines, LoadedAs("Genesis 9 Dev Load.duf", "Genesis 9", resolution));
    Append(lines, {std::string("property ") + kind.clone + ".Value=1"});
    Append(lines, Thighs(kind, "6.5", "-6.5"));
    Append(lines, {"rename Genesis 9 -> Genesis 9 temp for fit suit",
                   "progress Exporting temporary G9 as OBJ for fit suit",
                   "export tempg9-*.obj",
                   "progress Removing temporary G9",
                   "remove Genesis 9 temp for fit suit",
                   "progress Loading fit suit OBJ again",
                   "import tempg9-*.obj",
                   "select tempg9-*",
                   "progress Running Transfer Utility to create morphs in fit suit OBJ",
                   "transfer tempg9-*",
                   "remove tempg9-*",
                   "select tempg9-*",
                   "property tempg9-*.lodlevel=0",
                   "select tempg8-tgt-*",
                   "remove tempg8-tgt-*",
                   "progress Dialing up morphs in fit suit with transfers",
                   "property Temporary high-res morph.Value=1",
                   "progress Exporting fit suit with transfers as OBJ again",
                   "select tempg9-*",
                   "export rigged-for-mlp-*.obj",
                   "remove tempg9-*",
                   "progress Adjusting target G9 before creating morphs"});
    Append(lines, Resolved(resolution));
    Append(lines, Thighs(kind, "6.5", "-6.5"));
    Append(lines, {"rename Target * (Genesis 9) -> Vera converted to G9"});
    return lines;
}

Lines ExpectedMorphs(GntJobs jobs)
{
    Lines lines;
    bool isSelected = false, isSplitLoaded = false;
    // The target is selected once; a D-Former that is loaded takes the selection.
    const auto select = [&] {
        if (!isSelected)
            lines.push_back("select Vera converted to G9");
        isSelected = true;
    };
    const auto loadSplit = [&] {
        if (isSplitLoaded)
            return;
        select();
        lines.push_back("openFile G9 HeadSplit DFormer.duf");
        isSplitLoaded = true;
    };
    if (jobs.test(GntJobFlag::Full)) {
        lines.push_back("progress Creating full figure morph");
        select();
        lines.push_back("createMorph Full");
    }
    if (jobs.test(GntJobFlag::Head)) {
        loadSplit();
        lines.push_back("progress Creating head morph");
        select();
        lines.push_back("createMorph Head");
    }
    if (jobs.test(GntJobFlag::Body)) {
        loadSplit();
        lines.push_back("progress Creating body morph");
        select();
        lines.push_back("createMorph Body");
    }
    if (isSplitLoaded)
        lines.push_back("remove D-Former_1");
    return lines;
}

/// One line for each, so that a failure shows where they part.
std::string Text(const Lines& lines)
{
    std::string text;
    for (const std::string& line : lines)
        text += line + "\n";
    return text;
}

class ConversionTrace : public testing::TestWithParam<std::tuple<Kind, GntResolution>> {
protected:
    void SetUp() override
    {
        TestHost().reset();
        AddMiniLibrary();
        source = &LoadMini(kind().file);
        target = &LoadMini("People/Genesis 9/Genesis 9.duf");
        if (kind().assetUri)
            source->setAssetUri(DzUri(QLatin1String(kind().assetUri)));
        source->setLabel(QStringLiteral("Vera"));
        kst::daz::FindFloatProperty(*source, kst::daz::PropertyLocation::Any, "Wide", true)->setValue(1.0f);
        kst::daz::FindSubdivisionLevelIntProperty(*source, true)->setValue(subdLevel);
        dzScene->selectAllNodes(false);
        source->select(true);
        target->select(true);
    }

    static const Kind& kind() { return std::get<0>(GetParam()); }
    static GntResolution resolution() { return std::get<1>(GetParam()); }

    static Lines traceOf(GntJobs jobs)
    {
        GntConverter converter(GntConverter::FindSourceAndTargetInSceneSelected_X());
        GntMissingMorphs missing;
        const Trace trace;
        converter.run_X(resolution(), converter.makeConvertedLabel(), Lines(3, "/G"),
                        {"Full", "Head", "Body"}, jobs, missing);
        return trace.lines;
    }

    DzFigure* source = nullptr;
    DzFigure* target = nullptr;
};

TEST_P(ConversionTrace, is_the_same_for_every_set_of_jobs)
{
    for (int bits = 0; bits < 8; ++bits) {
        GntJobs jobs;
        for (const GntJobFlag flag : {GntJobFlag::Full, GntJobFlag::Head, GntJobFlag::Body})
            if (bits & static_cast<int>(flag))
                jobs.set(flag);
        SetUp();
        Lines expected = ExpectedUpToTheMorphs(kind(), resolution());
        Append(expected, ExpectedMorphs(jobs));
        Append(expected, Thighs(kind(), "0", "0"));
        Append(expected, {"property figure.YTranslate=0", "rename Vera-* -> Vera"});
        if (resolution() == GntResolution::Base)
            expected.push_back("property figure.lodlevel=1");
        EXPECT_EQ(Text(traceOf(jobs)), Text(expected)) << "jobs " << bits;
    }
}

INSTANTIATE_TEST_SUITE_P(Sources, ConversionTrace,
                         testing::Combine(testing::ValuesIn(kinds),
                                          testing::Values(GntResolution::Base, GntResolution::Subd)),
                         [](const testing::TestParamInfo<std::tuple<Kind, GntResolution>>& tested) {
                             return std::string(std::get<0>(tested.param).name) +
                                    (std::get<1>(tested.param) == GntResolution::Base ? "AtBase"
                                                                                      : "Subdivided");
                         });

} // namespace
