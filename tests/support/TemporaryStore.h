#pragma once

#include <filesystem>
#include <random>
#include <stdexcept>
#include <string>

#include "tessera/platform/objectstore/ObjectStore.h"

namespace testing_support {

/// A fresh folder under the system's temporary one, or under another, removed with everything in it.
class TemporaryFolder {
public:
    explicit TemporaryFolder(const std::filesystem::path& within = std::filesystem::temp_directory_path()) {
        std::random_device random;
        do {
            path_ = within / ("tessera-test-" + std::to_string(random()) + "-" + std::to_string(random()));
        } while (!std::filesystem::create_directory(path_));
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

private:
    std::filesystem::path path_;
};

/// What most tests want of a store on disk: everything but the wait for the disk itself.
inline ObjectStore::Options quickOptions() {
    ObjectStore::Options options;
    options.fullDurability = false;
    return options;
}

/// A new store on disk in a folder of its own, mounted while this lives.
class TemporaryStore {
public:
    explicit TemporaryStore(const ObjectStore::Options& options = quickOptions()) : options_(options) { remount(); }
    ~TemporaryStore() { ObjectStore::unmount(); }
    TemporaryStore(const TemporaryStore&) = delete;
    TemporaryStore& operator=(const TemporaryStore&) = delete;

    /// The store's file, as UTF-8.
    std::string path() const { return (folder_ / "store.db").string(); }
    const TemporaryFolder& folder() const { return folder_; }
    const ObjectStore::Options& options() const { return options_; }

    /// Mounts the store again, as a new process would.
    void remount() {
        if (ObjectStore::mount(path(), options_) == FALSE) throw std::runtime_error(ObjectStore::errorText());
    }

private:
    TemporaryFolder folder_;
    ObjectStore::Options options_;
};

/// A new store in memory, mounted while this lives.
class MemoryStoreMount {
public:
    MemoryStoreMount() {
        if (ObjectStore::mountMemory() == FALSE) throw std::runtime_error(ObjectStore::errorText());
    }
    ~MemoryStoreMount() { ObjectStore::unmount(); }
    MemoryStoreMount(const MemoryStoreMount&) = delete;
    MemoryStoreMount& operator=(const MemoryStoreMount&) = delete;
};

}  // namespace testing_support
