#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "Store.h"
#include "tessera/platform/objectstore/StoreChanges.h"

namespace Tool {

/// What has become of a contact or a category.
struct RecordChange {
    enum class Of { contact, category };

    Of of = Of::contact;
    StoreChange change;
};

/// The changes to the contacts and the categories, whoever makes them, from the making of this on.
class RecordChanges {
public:
    /// Throws a Failure when the store cannot be read, as the others do.
    explicit RecordChanges(const Store& store);

    /// Those since the last call, in the order in which they were committed. Nothing when there have been more than
    /// the store remembers: it then goes on from now.
    std::optional<std::vector<RecordChange>> next();
    /// What the contact or category is called by now. Empty when it is gone, or has no name.
    CString nameOf(const RecordChange& changed);

private:
    struct Source {
        RecordChange::Of of;
        CEPROPID name;
        DatabaseReader reader;
    };

    void startFromNow();

    const Store& store_;
    std::array<Source, 2> sources_;
    std::uint64_t sequence_ = 0;  ///< Of the newest change that was told of, or passed over.
};

}  // namespace Tool
