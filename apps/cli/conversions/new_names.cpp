// Names for the morphs that a conversion makes.
// SPDX-License-Identifier: MIT

#include "conversions/new_names.h"

#include "command.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dznode.h"
#include "dzobject.h"
#include "openhost/morph_names.h"
#include "option_words.h"

#include <algorithm>

#include <fmt/format.h>

#include <QString>

namespace cli {

namespace {

std::vector<std::string> NamesOf(const DzNode& source, const GntRequest& request)
{
    const std::vector<std::string> all =
        request.names.empty() ? GntProposedNames(GntConvertedLabel(source.getLabel().toStdString()))
                              : request.names;
    std::vector<std::string> names;
    for (const GntJob& job : GNT_JOBS)
        if (request.jobs.test(job.flag))
            names.push_back(all[job.index]);
    return names;
}

const DzProperty* FindByLabel(const DzNode& figure, const QString& label)
{
    const DzObject* const object = figure.getObject();
    for (int i = 0; object && i < object->getNumModifiers(); ++i)
        if (auto* const morph = qobject_cast<DzMorph*>(object->getModifier(i)))
            if (morph->getValueControl()->getLabel() == label)
                return morph->getValueControl();
    return figure.findPropertyByLabel(label);
}

bool IsWorn(const DzMorph& morph)
{
    return morph.getValueControl()->getValue() != 0.0f;
}

/// @return the morph that has to go; null for none
DzMorph* Examine(const openhost::NameConflict& conflict, bool mayOverwrite)
{
    if (!conflict.isOwnFile)
        throw std::runtime_error(conflict.text() + "; choose another name with " + OptionWord("--name"));
    if (!mayOverwrite)
        throw std::runtime_error(conflict.text() + "; " + OptionWord("--overwrite") + " replaces it");
    if (conflict.morph && IsWorn(*conflict.morph))
        throw std::runtime_error(conflict.text() + ", and the target wears it; choose another name with " +
                                 OptionWord("--name"));
    return conflict.morph;
}

} // namespace

void CheckMorphName(const std::string& name)
{
    // Qt reads over it, so that no file would bear the name.
    if (name.rfind("\xEF\xBB\xBF", 0) == 0)
        throw UsageError(OptionWord("--name") + " begins with a byte order mark (U+FEFF), which nobody sees");
    if (QString::fromStdString(name).toStdString() != name)
        throw UsageError(OptionWord("--name") + " is not UTF-8");
    if (openhost::IsBlankName(QString::fromStdString(name)))
        throw UsageError(OptionWord("--name") + " is blank");
}

std::vector<std::string> FreeMorphNames(const DzNode& source, DzNode& target,
                                        const ConversionRequest& request, base::Diagnostics& diagnostics)
{
    openhost::MorphFolder folder;
    if (request.save)
        folder = {QString::fromStdString(request.save->contentDirectory),
                  QString::fromStdString(request.save->vendor),
                  QString::fromStdString(request.save->product)};
    std::vector<DzMorph*> replaced;
    const std::vector<std::string> names = NamesOf(source, request.morphs);
    for (const std::string& name : names)
        if (const auto conflict = openhost::FindNameConflict(target, QString::fromStdString(name),
                                                             request.save ? &folder : nullptr))
            if (DzMorph* const morph = Examine(*conflict, request.mayOverwrite))
                replaced.push_back(morph);
    for (DzMorph* const morph : replaced)
        target.getObject()->removeModifier(morph);
    for (const std::string& name : names)
        if (const DzProperty* const dial = FindByLabel(target, QString::fromStdString(name)))
            diagnostics.push_back({base::Severity::Warning, FileText(request.target), name,
                                   fmt::format("the figure has another dial of this label, {}",
                                               dial->getName().toStdString())});
    return names;
}

} // namespace cli
