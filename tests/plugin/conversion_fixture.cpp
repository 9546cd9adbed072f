// A scene with a source and a target, converted again and again.
// SPDX-License-Identifier: MIT

#include "tests/plugin/conversion_fixture.h"

#include "tests/plugin/mini_scene.h"

#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dzobject.h"
#include "figure/deltas_access.h"
#include "figure/pipeline.h"
#include "geometry/deltas.h"
#include "ks_daz-helpers.h"
#include "ks_morphlist.h"

#include <QRegularExpression>

using kst::daz::FindFloatProperty;
using kst::daz::PropertyLocation;

namespace {

const std::vector<std::string> morphNames{"Full", "Head", "Body"};

} // namespace

void ConversionFixture::SetUp()
{
    HostTest::SetUp();
    AddMiniLibrary();
}

void ConversionFixture::loadPairInOnePlace(const char* sourcePath)
{
    ConversionFixture::SetUp();
    source = &LoadMini(sourcePath);
    target = &LoadMini("People/Genesis 9/Genesis 9.duf");
    source->setLabel(QLatin1String("Vera"));
    dial(*source, "Wide").setValue(1.0f);
    dial(*source, "Bulge").setValue(0.5f);
    selectBoth();
}

void ConversionFixture::loadPair(const char* sourcePath)
{
    loadPairInOnePlace(sourcePath);
    float value = 0.0f;
    for (const char* const name : {"XTranslate", "ZTranslate", "XRotate", "YRotate", "ZRotate"}) {
        transform(*source, name).setValue(value += 4.0f);
        transform(*target, name).setValue(-value);
    }
    transform(*target, "YTranslate").setValue(25.0f);
}

void ConversionFixture::selectBoth()
{
    dzScene->selectAllNodes(false);
    source->select(true);
    target->select(true);
}

void ConversionFixture::deleteLeftOvers()
{
    for (int i = dzScene->getNumNodes() - 1; i >= 0; --i) {
        DzNode* const node = i < dzScene->getNumNodes() ? dzScene->getNode(i) : nullptr;
        if (node && node->isRootNode() && node != source && node != target)
            dzScene->removeNode(node);
    }
}

DzFloatProperty& ConversionFixture::dial(DzFigure& figure, const char* name)
{
    return *FindFloatProperty(figure, PropertyLocation::Any, name, true);
}

DzFloatProperty& ConversionFixture::transform(DzFigure& figure, const char* name)
{
    return *FindFloatProperty(figure, PropertyLocation::Node, name, true);
}

GntJobs ConversionFixture::allJobs()
{
    return GntJobs(GntJobFlag::Full) | GntJobFlag::Head | GntJobFlag::Body;
}

std::vector<GntCreatedMorph> ConversionFixture::convert(GntJobs jobs)
{
    GntConverter converter(GntConverter::FindSourceAndTargetInSceneSelected_X());
    return converter.run_X(resolution, converter.makeConvertedLabel(), {"/G/Full", "/G/Head", "/G/Body"},
                           morphNames, jobs, missing);
}

MadeMorphs ConversionFixture::madeMorphs() const
{
    MadeMorphs made;
    for (const std::string& name : morphNames)
        if (const DzMorph* const morph = kst::MorphList::FindMorph(*target, name))
            made[name] = geometry::ToDense(openhost::DeltasAccess::deltas(*morph->getDeltas()),
                                           target->getObject()->pipeline().base().vertexCount());
    return made;
}

std::map<std::string, std::string> ConversionFixture::stateOfBoth() const
{
    std::map<std::string, std::string> state;
    for (DzFigure* const figure : {source, target})
        for (const char* const name :
             {"XTranslate", "YTranslate", "ZTranslate", "XRotate", "YRotate", "ZRotate"})
            state[std::string(figure == source ? "source " : "target ") + name] =
                std::to_string(transform(*figure, name).getValue());
    state["source resolution"] = std::to_string(static_cast<int>(kst::daz::GetNodeResolution(*source)));
    state["source label"] = source->getLabel().toStdString();
    for (const char* const name : {"Wide", "Bulge", "Unused"})
        state[std::string("source ") + name] = std::to_string(dial(*source, name).getValue());
    return state;
}

std::vector<std::string> ConversionFixture::otherRoots() const
{
    std::vector<std::string> labels;
    for (int i = 0; i < dzScene->getNumNodes(); ++i) {
        const DzNode* const node = dzScene->getNode(i);
        if (node->isRootNode() && node != source && node != target)
            labels.push_back(WithoutChance(node->getLabel()));
    }
    return labels;
}

std::string WithoutChance(const QString& text)
{
    static const QRegularExpression suffix(
        QStringLiteral("(tempg8-src[12]|tempg8-tgt|tempg9|rigged-for-mlp|Vera|gantrel)-\\w{8}\\b")),
        targetOf(QStringLiteral("Target \\w{8} "));
    QString plain = text;
    plain.replace(suffix, QStringLiteral("\\1-*"));
    return plain.replace(targetOf, QStringLiteral("Target * ")).toStdString();
}
