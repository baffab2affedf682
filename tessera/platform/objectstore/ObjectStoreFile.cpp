#include "tessera/platform/objectstore/ObjectStoreFile.h"

#include <filesystem>
#include <utility>

#include "tessera/platform/engine/StoreFile.h"
#include "tessera/platform/objectstore/Boundary.h"
#include "tessera/platform/objectstore/StorePlace.h"
#include "tessera/platform/port/Locale.h"

using namespace Platform;

namespace {

std::filesystem::path fileOf(const std::string& path) {
    return std::u8string(path.begin(), path.end());
}

BOOL answer(DWORD error) {
    return error == ERROR_SUCCESS ? TRUE : failWith(error, FALSE);
}

}  // namespace

BOOL ObjectStoreFile::check(const std::string& path, Depth depth, std::vector<std::string>& findings,
                            const ObjectStore::Options& options) {
    const CheckDepth wanted = depth == Depth::full ? CheckDepth::full : CheckDepth::quick;
    return guarded(FALSE,
                   [&] { return answer(checkSqliteStore(fileOf(path), engineOptions(options), wanted, findings)); });
}

BOOL ObjectStoreFile::backUp(const std::string& path, const std::string& to, const ObjectStore::Options& options) {
    return guarded(FALSE, [&] { return answer(backUpSqliteStore(fileOf(path), engineOptions(options), fileOf(to))); });
}

BOOL ObjectStoreFile::recover(const std::string& damaged, const std::string& to, Recovery& recovery,
                              const ObjectStore::Options& options) {
    return guarded(FALSE, [&] {
        StoreRecovery saved;
        const DWORD error =
            recoverSqliteStore(fileOf(damaged), engineOptions(options), fileOf(to), port::userCollationLocale(), saved);
        if (error == ERROR_SUCCESS) recovery = {saved.databases, saved.records, std::move(saved.losses)};
        return answer(error);
    });
}
