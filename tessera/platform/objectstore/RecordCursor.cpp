#include "tessera/platform/objectstore/RecordCursor.h"

#include "tessera/platform/base/Results.h"
#include "tessera/platform/objectstore/ReadAhead.h"

namespace Platform {

DWORD RecordCursor::open(WStringView database, const SortOrder& order) {
    if (const DWORD error = session_.engine().findDatabase(database, database_); error != ERROR_SUCCESS) return error;
    direction_ = order.descending() ? Direction::backward : Direction::forward;
    begun_ = false;
    return session_.engine().openOrder(database_, order, order_);
}

DWORD RecordCursor::nextBlock(std::span<const Entry>& entries) {
    const Place* from = begun_ ? &last_ : nullptr;
    const DWORD error = session_.engine().step(order_, from, direction_, limit_, Fetch::records, block_);
    if (error != ERROR_SUCCESS) return error;
    if (!block_.empty()) {
        begun_ = true;
        last_ = block_.back().place;
        limit_ = readAheadAfter(block_);
    }
    entries = block_;
    return ERROR_SUCCESS;
}

}  // namespace Platform
