#pragma once

#include <memory>
#include <ostream>

#include "tests/support/TemporaryStore.h"

namespace testing_support {

/// A kind of store to mount; it is unmounted with what `mount` answers.
struct MountKind {
    const char* name;
    std::shared_ptr<void> (*mount)();
};

inline void PrintTo(const MountKind& kind, std::ostream* out) {
    *out << kind.name;
}

template <class Mount>
std::shared_ptr<void> mounted() {
    return std::make_shared<Mount>();
}

inline constexpr MountKind mountKinds[] = {{"InMemory", mounted<MemoryStoreMount>},
                                           {"OnDisk", mounted<TemporaryStore>}};

}  // namespace testing_support
