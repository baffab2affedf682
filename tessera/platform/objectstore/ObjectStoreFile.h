#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tessera/Export.h"
#include "tessera/platform/base/Types.h"
#include "tessera/platform/objectstore/ObjectStore.h"

/// A store's file as a whole: examined, copied, saved from damage. The store may be mounted, here and elsewhere, and
/// others may write to it meanwhile. Of the options, `sharedFolder` and `writerWait` matter here. Paths are UTF-8.
///
/// All answer FALSE with the last error set, and ObjectStore::errorText saying why, when they could not do their work:
/// a file that is missing, is no store, is of a newer format, is in a folder that others may write to, or may not be
/// used.
class TESSERA_API ObjectStoreFile {
public:
    /// How much is looked at.
    enum class Depth {
        quick,  ///< The file's structure, and what the store's tables count.
        full,   ///< Also every index, every record, and its place in every sort order.
    };

    /// Examines a store and changes nothing.
    /// @param findings becomes a sentence for each thing that is wrong; empty: the store is sound
    static BOOL check(const std::string& path, Depth depth, std::vector<std::string>& findings,
                      const ObjectStore::Options& options = ObjectStore::environmentOptions());

    /// Copies a store, as it is at one moment, into a new file that only its owner may use. A copy of a damaged store
    /// is as damaged. ERROR_ALREADY_EXISTS when `to` is there; a copy that fails leaves nothing.
    static BOOL backUp(const std::string& path, const std::string& to,
                       const ObjectStore::Options& options = ObjectStore::environmentOptions());

    /// What was saved from a damaged store, and what was not.
    struct Recovery {
        std::uint64_t databases = 0;      ///< How many databases were saved.
        std::uint64_t records = 0;        ///< How many records were saved, of all databases.
        std::vector<std::string> losses;  ///< What is lost, a sentence's end each; empty: all is saved.
    };

    /// Makes a new store of every record that can still be read from a damaged one, each under its own identifier. The
    /// damaged file stays as it is; nobody should write to it meanwhile. The log of changes starts anew.
    /// ERROR_ALREADY_EXISTS when `to` is there, ERROR_BAD_FORMAT when nothing in the file is of a store.
    static BOOL recover(const std::string& damaged, const std::string& to, Recovery& recovery,
                        const ObjectStore::Options& options = ObjectStore::environmentOptions());
};
