// The host's saving, noting what is asked for instead of writing files.
// SPDX-License-Identifier: MIT

#include "tests/stand_ins/noting_saver.h"

#include "dzassetiofilter.h"
#include "dzassetiomgr.h"
#include "dzfileiosettings.h"

void noting::ForgetSaves()
{
    questions.clear();
    orders.clear();
    isAccepted = true;
    saveResult = DZ_NO_ERROR;
}

bool DzFileIO::getOptions(DzFileIOSettings* options, bool useInterface, const QString& filename)
{
    noting::questions.push_back({className().toStdString(), options->toJsonString().toStdString(),
                                 filename.toStdString(), useInterface});
    return noting::isAccepted;
}

DzError DzAssetIOMgr::doSaveWithOptions(DzAssetIOFilter* filter, DzFileIOSettings* options, bool showOptions,
                                        const QString& filename, const QString& startingDir,
                                        const QString& category)
{
    noting::orders.push_back({filter->className().toStdString(), options->toJsonString().toStdString(),
                              filename.toStdString(), startingDir.toStdString(), category.toStdString(),
                              showOptions});
    return noting::saveResult;
}
