// The OBJ files that the steps of one long work hand to each other.
// SPDX-License-Identifier: MIT

#include "obj_memory.h"

#include "app/work_memory.h"

namespace openhost {

std::shared_ptr<geometry::KeptObjs> ObjsOfThisWork()
{
    static std::weak_ptr<geometry::KeptObjs> current;
    std::shared_ptr<geometry::KeptObjs> objs = current.lock();
    if (!objs) {
        objs = std::make_shared<geometry::KeptObjs>();
        current = objs;
        KeepDuringWork(objs);
    }
    return objs;
}

} // namespace openhost
