#pragma once

#include <cstdint>
#include <memory>

#include "tessera/platform/engine/RecordEngine.h"

namespace Platform {

/// The store that the process works on; none until its first use or until one is put here.
class MountedStore {
public:
    /// Counts the stores that were mounted and dismounted: what belongs to another number is void.
    static std::uint64_t number();

    /// The store, and the number that it has; the one that the environment names when there is none yet.
    /// Null when that one cannot be opened, with the last error set.
    static std::shared_ptr<RecordStore> get(std::uint64_t& number);
    /// Takes the place of the store so far; null leaves none. Answers the new number.
    static std::uint64_t replace(std::shared_ptr<RecordStore> store);

    /// Counts the batches of this process that were given up: what was read inside one never came true.
    static std::uint64_t givenUpBatches();
    static void noteGivenUpBatch();
};

}  // namespace Platform
