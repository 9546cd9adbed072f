// A conversion whose host refuses one operation, each in its turn.
// SPDX-License-Identifier: MIT

#include "tests/plugin/conversion_fixture.h"
#include "tests/plugin/scripted_forms.h"

#include "dzintproperty.h"
#include "dzprogress.h"
#include "ks_daz-helpers.h"
#include "tests/shared/throws.h"

#include <QApplication>

#include <algorithm>
#include <ostream>
#include <set>
#include <tuple>

namespace {

struct Kind {
    friend void PrintTo(const Kind& kind, std::ostream* out) { *out << kind.name; }

    const char* name; ///< of the figure, and of the test
    const char* file;
    const char* label;
    const char* clone;
};

const Kind kinds[] = {
    {"Genesis3Female", genesis3Female, "Genesis 3 Female", "CloneGenesis3Female"},
    {"Genesis8Female", genesis8Female, "Genesis 8 Female", "CloneGenesis8Female"},
};

/// How it is converted.
enum class Way { Alone, WithDialogs, Subdivided };

/// One operation of a conversion: what it is, the how manieth of its kind, and the step that is shown
/// meanwhile.
struct Operation {
    std::string text;
    int occurrence;
    std::string step;
};

/// Notes all operations and refuses one of them.
class Refusal : public HostWatch {
public:
    explicit Refusal(Operation refused = {}) : _refused(std::move(refused)) {}

    bool see(const QString& operation, const QString& detail) override
    {
        const std::string name = operation.toStdString();
        if (name == "progress") {
            _step = detail.toStdString();
            return true;
        }
        const std::string text =
            name + " " + WithoutChance(detail.mid(detail.lastIndexOf(QLatin1Char('/')) + 1));
        const int occurrence = _counts[text]++;
        operations.push_back({text, occurrence, _step});
        const bool isRefused = text == _refused.text && occurrence == _refused.occurrence;
        hasRefused = hasRefused || isRefused;
        if (!isRefused && name == "morph")
            morphs.insert(detail.toStdString());
        return !isRefused;
    }

    std::vector<Operation> operations;
    std::set<std::string> morphs; ///< that were added
    bool hasRefused = false;

private:
    Operation _refused;
    std::string _step;
    std::map<std::string, int> _counts;
};

// The texts in full, random characters shown as *.

std::string TempFile(const std::string& stem)
{
    return Quoted(TestFolder().toStdString() + "/" + stem + "-*.obj");
}

std::string LibraryFile(const std::string& relativePath)
{
    return Quoted(TestFolder().toStdString() + "/mini/" + relativePath);
}

std::string NoExport(const std::string& stem)
{
    return "failed to export OBJ " + TempFile(stem) + ": The operation failed.";
}

std::string NoImport(const std::string& stem)
{
    return "failed to export import OBJ " + TempFile(stem) + ": The operation failed.";
}

std::string NoLoad(const std::string& relativePath)
{
    return "failed to load Genesis figure from file " + LibraryFile(relativePath);
}

std::string NoMorph(const std::string& morph, const std::string& node)
{
    return "failed to find new morph " + Quoted(morph) + " in node " + Quoted(node) +
           " figure after conversion; Morph Loader Pro returned: ";
}

/// What comes of refusing an operation while a step is shown; an empty step stands for any.
struct Consequence {
    std::string operation, step, message;
};

std::vector<Consequence> ConsequencesOnTheSourceSide(const Kind& kind)
{
    const std::string name = kind.name, label = kind.label, path = kind.file;
    const std::string noTempMorph = NoMorph("Temporary high-res morph", "tempg8-tgt-*");
    return {
        // At another resolution the mesh has another number of vertices.
        {"property " + name + ".lodlevel=0", "", noTempMorph},
        {"property " + name + ".SubDIALevel=2", "", noTempMorph},
        {"select Vera-*", "", NoExport("tempg8-src1")},
        {"export tempg8-src1-*.obj", "", NoExport("tempg8-src1")},
        {"export tempg8-src2-*.obj", "", NoExport("tempg8-src2")},
        {"openFile " + path.substr(path.rfind('/') + 1), "", NoLoad(path)},
        {"add " + label, "", NoLoad(path)},
        // What is hidden is not exported.
        {"visible " + label + "=true", "", NoExport("tempg8-tgt")},
        {"property " + name + " 2.Visible=1", "", NoExport("tempg8-tgt")},
        {"export tempg8-tgt-*.obj", "", NoExport("tempg8-tgt")},
        {"import tempg8-tgt-*.obj", "", NoImport("tempg8-tgt")},
        {"add tempg8-tgt-*", "", NoImport("tempg8-tgt")},
        {"createMorph Temporary high-res morph", "", noTempMorph},
        {"morph Temporary high-res morph", "Creating converted morph", noTempMorph},
    };
}

std::vector<Consequence> ConsequencesOnTheTargetSide(const Kind& kind)
{
    const std::string path = "People/Genesis 9/Developer Kit/Genesis 9 Dev Load.duf";
    const std::string transfer = "Running Transfer Utility to create morphs in fit suit OBJ";
    std::vector<Consequence> consequences{
        // The temporary Genesis 9 gets its label only while the target does not have it.
        {"rename Genesis 9 -> Target * (Genesis 9)", "",
         "failed to find a figure named " + Quoted("Genesis 9") + " in the scene after loading " +
             LibraryFile(path)},
        {"openFile Genesis 9 Dev Load.duf", "", NoLoad(path)},
        {std::string("morph ") + kind.clone, "Loading temporary G9 for fit suit",
         "cannot find morph " + Quoted(kind.clone) + " in node " + Quoted("Genesis 9")},
        {"add Genesis 9", "", NoLoad(path)},
        {"visible Genesis 9=true", "", NoExport("tempg9")},
        {"property Genesis9 2.Visible=1", "", NoExport("tempg9")},
        {"export tempg9-*.obj", "", NoExport("tempg9")},
        {"import tempg9-*.obj", "", NoImport("tempg9")},
        {"add tempg9-*", "Loading fit suit OBJ again", NoImport("tempg9")},
        {"add tempg9-*", transfer, "Transfer Utility failed"},
        {"transfer tempg9-*", "", "Transfer Utility failed"},
        {"remove tempg9-*", transfer, "Transfer Utility failed"},
        {"property tempg9-*.lodlevel=0", "", NoMorph("Full", "Vera converted to G9")},
        {"select tempg9-*", "Exporting fit suit with transfers as OBJ again", NoExport("rigged-for-mlp")},
        {"export rigged-for-mlp-*.obj", "", NoExport("rigged-for-mlp")},
    };
    for (const char* const operation : {"openFile G9 HeadSplit DFormer.duf", "add D-Former_1",
                                        "add D-Former_1 Base", "add D-Former_1 Field"})
        consequences.push_back({operation, "",
                                "failed to load head split D-former from file " +
                                    LibraryFile("People/Genesis 9/Developer Kit/G9 HeadSplit DFormer.duf")});
    for (const std::string job : {"Full", "Head", "Body"})
        for (const std::string operation : {"createMorph ", "morph "})
            consequences.push_back({operation + job, "", NoMorph(job, "Vera converted to G9")});
    return consequences;
}

/// Empty when the conversion goes on: the host has no way to tell of the refusal.
std::string ExpectedMessage(const Kind& kind, const Operation& operation)
{
    for (const auto& consequences : {ConsequencesOnTheSourceSide(kind), ConsequencesOnTheTargetSide(kind)})
        for (const Consequence& row : consequences)
            if (row.operation == operation.text && (row.step.empty() || row.step == operation.step))
                return row.message;
    return {};
}

/// The temporary Genesis 9 at another resolution is a programming error and ends the process.
bool EndsTheProcess(const Operation& operation)
{
    return operation.step == "Loading temporary G9 for fit suit" &&
           (operation.text == "property Genesis9.lodlevel=0" ||
            operation.text == "property Genesis9.SubDIALevel=2");
}

/// What cannot be as before because restoring it was refused.
std::string KeyOfRestoring(const Operation& operation)
{
    const std::string ofTarget = "property Genesis9.";
    const std::string& text = operation.text;
    if (operation.step != "Creating body morph")
        return {};
    if (text == "rename Vera-* -> Vera")
        return "source label";
    if (text.compare(0, ofTarget.size(), ofTarget) == 0)
        return "target " + text.substr(ofTarget.size(), text.find('=') - ofTarget.size());
    return {};
}

class EveryOperation : public ConversionFixture, public testing::WithParamInterface<std::tuple<Kind, Way>> {
protected:
    static const Kind& kind() { return std::get<0>(GetParam()); }
    static Way way() { return std::get<1>(GetParam()); }

    /// A subdivided conversion has a level that figures do not have by themselves.
    void loadAll()
    {
        loadPair(kind().file);
        if (way() != Way::Subdivided)
            return;
        resolution = GntResolution::Subd;
        kst::daz::FindSubdivisionLevelIntProperty(*source, true)->setValue(2);
    }

    void convertAll()
    {
        if (way() != Way::WithDialogs) {
            convert(allJobs());
            return;
        }
        ScriptedForms forms;
        forms.jobs = allJobs();
        GntConverter::Exec_X(nullptr);
        EXPECT_TRUE(forms.success);
    }

    void expectAllFreed() const
    {
        EXPECT_EQ(QApplication::overrideCursor(), nullptr);
        EXPECT_EQ(DzProgress::getDepth(), 0);
        EXPECT_EQ(LogText().count(QLatin1String("Entering ")), LogText().count(QLatin1String("Leaving ")));
        const std::set<std::string> allowed{
            kind().label,      "tempg8-tgt-*",     "tempg9-*",
            "Genesis 9",       "D-Former_1",       "Genesis 9 temp for fit suit",
            "D-Former_1 Base", "D-Former_1 Field", "Genesis 9 (2)"};
        for (const std::string& label : otherRoots())
            EXPECT_EQ(allowed.count(label), 1u) << label;
    }

    void expectStateAsBefore(const std::map<std::string, std::string>& before, const Operation& operation)
    {
        const std::string exempt = KeyOfRestoring(operation);
        for (const auto& [key, value] : stateOfBoth()) {
            EXPECT_TRUE(value == before.at(key) || key == exempt) << key << " is " << value;
        }
    }

    /// A morph is there when it was finished, and whole.
    void expectNothingHalfMade(const std::set<std::string>& added, bool hasFailed)
    {
        const MadeMorphs made = madeMorphs();
        for (const std::string name : {"Full", "Head", "Body"})
            EXPECT_EQ(made.count(name), added.count(name)) << name;
        for (const auto& [name, deltas] : made) {
            EXPECT_TRUE(!hasFailed || deltas == fresh.at(name)) << name;
        }
    }

    void expectNextConversionAsFresh()
    {
        deleteLeftOvers();
        selectBoth();
        EXPECT_NO_THROW(convertAll());
        EXPECT_EQ(madeMorphs(), fresh);
        EXPECT_TRUE(otherRoots().empty());
    }

    /// Subdivided meshes take long, and what goes on goes on at any resolution.
    static bool isWorthwhile(const Operation& operation)
    {
        return way() != Way::Subdivided || !ExpectedMessage(kind(), operation).empty();
    }

    void refuse(const Operation& operation)
    {
        loadAll();
        const auto before = stateOfBoth();
        std::string message;
        std::set<std::string> added;
        {
            const Refusal refusal(operation);
            try {
                convertAll();
            } catch (const kst::Exception& error) {
                message = WithoutChance(QString::fromUtf8(error.what()));
            }
            EXPECT_TRUE(refusal.hasRefused) << "it was not asked for";
            added = refusal.morphs;
        }
        EXPECT_EQ(message, ExpectedMessage(kind(), operation));
        expectAllFreed();
        expectStateAsBefore(before, operation);
        expectNothingHalfMade(added, !message.empty());
        expectNextConversionAsFresh();
    }

    MadeMorphs fresh;
};

TEST_P(EveryOperation, may_be_refused_and_the_next_conversion_is_as_in_a_fresh_scene)
{
    loadAll();
    std::vector<Operation> operations;
    {
        const Refusal none;
        convertAll();
        operations = none.operations;
    }
    fresh = madeMorphs();
    ASSERT_EQ(fresh.size(), 3u);
    EXPECT_EQ(std::count_if(operations.begin(), operations.end(), EndsTheProcess), 1);
    for (const Operation& operation : operations) {
        if (EndsTheProcess(operation) || !isWorthwhile(operation))
            continue;
        SCOPED_TRACE(operation.text + ", occurrence " + std::to_string(operation.occurrence));
        refuse(operation);
    }
}

std::string NameOf(const testing::TestParamInfo<std::tuple<Kind, Way>>& tested)
{
    const char* const ways[] = {"Alone", "WithDialogs", "Subdivided"};
    const auto& [kind, way] = tested.param;
    return std::string(kind.name) + ways[static_cast<int>(way)];
}

INSTANTIATE_TEST_SUITE_P(Sources, EveryOperation,
                         testing::Combine(testing::ValuesIn(kinds),
                                          testing::Values(Way::Alone, Way::WithDialogs, Way::Subdivided)),
                         NameOf);

} // namespace
