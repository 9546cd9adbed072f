// The host's tools, noting what they are told instead of doing it.
// SPDX-License-Identifier: MIT

#include "tests/stand_ins/noting_tools.h"

#include "openhost/class_registry.h"
#include "openhost/testing.h"

namespace {

/// Makes one class in another's name, for as long as the process runs.
template <class StandIn, class Own>
class StandInFactory : public DzClassFactory {
public:
    StandInFactory()
        : DzClassFactory(&Own::staticMetaObject, DzGuid()),
          _override(QLatin1String(Own::staticMetaObject.className()), this)
    {
        // Scripts take the newest of all factories of a name, and know nothing of overrides.
        openhost::RegisterClassFactory(this);
    }
    QObject* createInstance() const override { return new StandIn; }
    QObject* createInstance(const QVariantList&) const override { return createInstance(); }

private:
    openhost::ClassFactoryOverride _override;
};

const StandInFactory<noting::Loader, DzMorphLoader> loaders;
const StandInFactory<noting::Batch, DzMorphLoaderBatch> batches;
const StandInFactory<noting::Transfer, DzTransferUtility> transfers;

} // namespace
