#pragma once

#include <memory>

#include "tessera/platform/base/Types.h"
#include "tessera/platform/objectstore/DatabaseHandle.h"

namespace Platform {

/// The open handles of the process: small numbers, each used once, so that a handle which was closed
/// never means another database. Any thread may open and close; a handle itself is used by one at a time.
class HandleTable {
public:
    static HANDLE add(std::shared_ptr<DatabaseHandle> opened);
    /// Null for a number that is not, or no longer, that of an open handle.
    static std::shared_ptr<DatabaseHandle> find(HANDLE handle);
    static bool remove(HANDLE handle);
    /// Invalidates all of them.
    static void clear();
};

}  // namespace Platform
