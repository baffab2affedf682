#pragma once

#include <memory>
#include <string>

#include "tessera/platform/engine/RecordEngine.h"
#include "tessera/platform/objectstore/ObjectStore.h"

namespace Platform {

/// How a store is used, as the engine has it.
StoreOptions engineOptions(const ObjectStore::Options& options);

/// Opens the store file in `path` (UTF-8); null when that fails, with the last error set.
std::shared_ptr<RecordStore> openStoreFile(const std::string& path, const StoreOptions& options);

/// Opens the store that the environment names, used as the environment asks.
std::shared_ptr<RecordStore> openEnvironmentStore();

}  // namespace Platform
