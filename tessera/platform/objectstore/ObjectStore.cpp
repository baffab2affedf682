#include "tessera/platform/objectstore/ObjectStore.h"

#include <filesystem>

#include "tessera/platform/engine/RecordEngine.h"
#include "tessera/platform/engine/StoreError.h"
#include "tessera/platform/objectstore/Boundary.h"
#include "tessera/platform/objectstore/HandleTable.h"
#include "tessera/platform/objectstore/Session.h"
#include "tessera/platform/objectstore/StorePlace.h"
#include "tessera/platform/port/Locale.h"
#include "tessera/platform/port/Paths.h"

namespace Platform {
namespace {

/// Mounts a store that was opened, if it was; handles open on the one before turn invalid.
BOOL mountOpened(std::shared_ptr<RecordStore> store) {
    if (store == nullptr) return FALSE;
    if (const DWORD error = Session::mount(std::move(store)); error != ERROR_SUCCESS) return failWith(error, FALSE);
    HandleTable::clear();
    return TRUE;
}

}  // namespace

StoreOptions engineOptions(const ObjectStore::Options& options) {
    return {options.writerWait, options.fullDurability, options.sharedFolder};
}

std::shared_ptr<RecordStore> openStoreFile(const std::string& path, const StoreOptions& options) {
    if (path.empty()) {
        setStoreError(ERROR_INVALID_PARAMETER, "the store's path is empty");
        return nullptr;
    }
    const std::filesystem::path file(std::u8string(path.begin(), path.end()));
    return openSqliteStore(file, options, port::userCollationLocale());
}

std::shared_ptr<RecordStore> openEnvironmentStore() {
    return openStoreFile(ObjectStore::environmentPath(), engineOptions(ObjectStore::environmentOptions()));
}

}  // namespace Platform

using namespace Platform;

ObjectStore::Options ObjectStore::environmentOptions() {
    Options options;
    options.fullDurability = port::environmentValue("TESSERA_DURABILITY") != "normal";
    options.sharedFolder = port::environmentValue("TESSERA_SHARED_FOLDER") == "allow";
    return options;
}

std::string ObjectStore::environmentPath() {
    if (std::string named = port::environmentValue("TESSERA_STORE"); !named.empty()) return named;
    const std::u8string path = port::defaultStorePath().u8string();
    return {path.begin(), path.end()};
}

BOOL ObjectStore::mount(const std::string& path, const Options& options) {
    return guarded(FALSE, [&] { return mountOpened(openStoreFile(path, engineOptions(options))); });
}

BOOL ObjectStore::mountMemory() {
    return guarded(FALSE, [] { return mountOpened(openMemoryStore(port::userCollationLocale())); });
}

void ObjectStore::unmount() {
    guarded(false, [] {
        HandleTable::clear();
        Session::unmount();
        return true;
    });
}

std::string ObjectStore::errorText() {
    return storeErrorText();
}

ObjectStoreBatch::ObjectStoreBatch() {
    begun_ = guarded(false, [this] {
        Session* session = Session::current();
        ended_ = session == nullptr;  // there is nothing to leave
        if (session == nullptr) return false;
        const DWORD error = session->enterBatch();
        return error == ERROR_SUCCESS || failWith(error, false);
    });
}

ObjectStoreBatch::~ObjectStoreBatch() {
    if (!ended_) static_cast<void>(end());
}

bool ObjectStoreBatch::end() {
    if (ended_) return begun_;
    ended_ = true;
    begun_ = guarded(false, [] {
        Session* session = Session::current();
        if (session == nullptr) return false;
        const DWORD error = session->leaveBatch();
        return error == ERROR_SUCCESS || failWith(error, false);
    });
    return begun_;
}

void ObjectStoreBatch::giveUp() noexcept {
    Session::giveUpBatch(ERROR_NOT_ENOUGH_MEMORY);
}

ObjectStoreGlance::ObjectStoreGlance() {
    begun_ = guarded(false, [] {
        Session* session = Session::current();
        if (session != nullptr) session->beginGlance();
        return session != nullptr;
    });
}

ObjectStoreGlance::~ObjectStoreGlance() {
    if (!begun_) return;
    guarded(false, [] {
        // Of a store that was mounted meanwhile it ends nothing.
        if (Session* session = Session::current(); session != nullptr) session->endGlance();
        return true;
    });
}
