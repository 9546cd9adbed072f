// What the closed host may spell otherwise.
// SPDX-License-Identifier: MIT

#include "ks_daz-adaptation.h"

#include "ks_string.h"

#include <dzapp.h>
#include <dzauthor.h>
#include <dzcontentfolder.h>
#include <dzfloatproperty.h>
#include <dzmorphdeltas.h>
#include <dzrenderoptions.h>
#include <dzuri.h>
#include <dzviewport.h>
#include <dzviewportmgr.h>

using kst::str::ToStd;

std::string KsHelpersDaz::GetErrorText(int error)
{
    return ToStd(getErrorMessage(error));
}

QString KsHelpersDaz::GetCurrentAuthorName()
{
    return dzApp->getCurrentAuthor().getName();
}

QString KsHelpersDaz::GetFullPath(const DzContentFolder& folder)
{
    return folder.getFullPath();
}

std::string KsHelpersDaz::GetDeltasUri(const DzMorphDeltas& deltas)
{
    return ToStd(deltas.getUri().toString());
}

Dz3DViewport* KsHelpersDaz::Get3dViewport(const DzViewport& viewport)
{
    return viewport.get3DViewport();
}

DzCamera* KsHelpersDaz::GetPerspectiveView(const DzViewportMgr& manager)
{
    return manager.getPerspectiveView();
}

bool KsHelpersDaz::IsClamped(const DzFloatProperty& property)
{
    return property.isClamped();
}

QSize KsHelpersDaz::GetImageSize(const DzRenderOptions& options)
{
    return options.getImageSize();
}
