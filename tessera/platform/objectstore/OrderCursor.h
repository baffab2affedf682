#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tessera/platform/engine/RecordEngine.h"
#include "tessera/platform/objectstore/Session.h"

namespace Platform {

/// A position in one order of a database, moved along it.
///
/// The position is a place in the order: what happens to the record there does not move it. While it is
/// moved in steps, records are read ahead in growing blocks, which serve as long as nobody writes.
/// Moves answer ERROR_SEEK when they run off either end, and the position is then the end; after any
/// other failure it is where it was. One thread.
class OrderCursor {
public:
    /// A new cursor stands on the record that is the first when the cursor is first used.
    OrderCursor(CEOID database, const SortOrder& order) : database_(database), order_(order) {}

    [[nodiscard]] DWORD open(Session& session);
    /// To be called before asking the engine on this cursor's behalf: forgets what no longer holds.
    [[nodiscard]] DWORD refresh(Session& session);

    [[nodiscard]] DWORD toIndex(Session& session, std::uint64_t index);
    /// Counted from the end, 0 being the last record.
    [[nodiscard]] DWORD toIndexFromEnd(Session& session, std::uint64_t index);
    /// Forward or, when negative, back. 0 asks whether the record last reached is still there.
    [[nodiscard]] DWORD moveBy(Session& session, std::int64_t steps);
    /// One step forward right after a read, from what that read found.
    [[nodiscard]] DWORD stepOn(Session& session);
    /// ERROR_KEY_DELETED when there is no such record.
    [[nodiscard]] DWORD toRecord(Session& session, CEOID record);
    void toEntry(Entry entry);
    [[nodiscard]] DWORD runOff();

    /// The record at the position, valid until the cursor is next used. ERROR_NO_MORE_ITEMS at the end,
    /// ERROR_KEY_DELETED when the record is gone.
    [[nodiscard]] DWORD read(Session& session, std::string_view& packed);

    /// The record last reached; 0 when there is none.
    CEOID record() const { return where_ == Where::at ? place_.record : 0; }
    /// Where it was reached; to be asked only when there is one.
    const Place& place() const { return place_; }

    const SortOrder& order() const { return order_; }
    OrderId orderId() const { return orderId_; }
    /// The engine's direction for going that way along this order.
    Direction along(Direction direction) const;

private:
    enum class Where { start, at, end };

    [[nodiscard]] DWORD jump(Session& session, std::uint64_t count, Direction direction);
    [[nodiscard]] DWORD walkFromIndexed(Session& session, std::int64_t steps);
    [[nodiscard]] DWORD advance(Session& session, Direction direction, std::uint64_t count);
    [[nodiscard]] DWORD fetch(Session& session, Direction direction, std::uint64_t count);
    [[nodiscard]] DWORD placeBeyond(Session& session, const Place* from, Direction direction, std::uint64_t count,
                                    Place& reached);
    bool advanceWithinBlock(Direction direction, std::uint64_t count);
    bool endsWithBlock(Direction direction) const;
    void serve(std::size_t slot);
    void forgetBlock();

    bool indexHolds(Session& session);
    void leavePlace();
    void countSteps(Direction direction, std::uint64_t count);

    CEOID database_;
    SortOrder order_;
    OrderId orderId_ = 0;
    std::uint64_t givenUpBatches_ = 0;

    Where where_ = Where::start;
    Place place_;

    // The entries around the position as of moment_, in the direction of their fetching. When there
    // are any, the one at slot_ is the record at the position.
    StoreMoment moment_;
    std::vector<Entry> block_;
    Direction blockDirection_ = Direction::forward;
    bool blockReachedEnd_ = false;
    std::size_t slot_ = 0;
    std::size_t nextFetch_ = 1;

    // The record at the position, when it was read by itself.
    std::string single_;
    bool singleHolds_ = false;

    // How many records stand before a place, as of indexVersion_ of the order: the place of the position,
    // or the one that it left since.
    std::optional<std::uint64_t> index_;
    std::optional<Place> placeLeft_;
    std::uint64_t indexVersion_ = 0;
    StoreMoment indexMoment_;
};

}  // namespace Platform
