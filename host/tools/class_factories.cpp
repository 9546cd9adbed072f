// The tools as classes that others make by name.
// SPDX-License-Identifier: MIT

#include "host/tools/morph_loader.h"
#include "host/tools/morph_loader_batch.h"
#include "host/tools/obj_exporter.h"
#include "host/tools/obj_importer.h"
#include "host/tools/transfer_utility.h"
#include "openhost/class_registry.h"

namespace {

const openhost::BuiltInClass<DzObjExporter> objExporter;
const openhost::BuiltInClass<DzObjImporter> objImporter;
const openhost::BuiltInClass<DzMorphLoader> morphLoader;
const openhost::BuiltInClass<DzMorphLoaderBatch> morphLoaderBatch;
const openhost::BuiltInClass<DzTransferUtility> transferUtility;

} // namespace
