// The tools as classes that others make by name.
// SPDX-License-Identifier: MIT

#include "obj_exporter.h"
#include "obj_importer.h"
#include "openhost/class_registry.h"
#include "tools/morph_loader.h"
#include "tools/morph_loader_batch.h"
#include "tools/transfer_utility.h"

namespace {

const openhost::BuiltInClass<DzObjExporter> objExporter;
const openhost::BuiltInClass<DzObjImporter> objImporter;
const openhost::BuiltInClass<DzMorphLoader> morphLoader;
const openhost::BuiltInClass<DzMorphLoaderBatch> morphLoaderBatch;
const openhost::BuiltInClass<DzTransferUtility> transferUtility;

} // namespace
