#include "tessera/platform/objectstore/OrderCursor.h"

#include <algorithm>
#include <utility>

#include "tessera/platform/objectstore/MountedStore.h"
#include "tessera/platform/objectstore/ReadAhead.h"

namespace Platform {
namespace {

constexpr std::uint64_t shortWalk = 16;     // steps; so many are read with their records
constexpr std::uint64_t walkingCost = 8;    // of passing one record, counting from the start being 1
constexpr std::uint64_t longestWalk = 512;  // places read at once

constexpr Direction opposite(Direction direction) {
    return direction == Direction::forward ? Direction::backward : Direction::forward;
}

constexpr std::uint64_t distanceOf(std::int64_t steps) {
    return steps < 0 ? 0 - static_cast<std::uint64_t>(steps) : static_cast<std::uint64_t>(steps);
}

constexpr Direction directionOf(std::int64_t steps) {
    return steps < 0 ? Direction::backward : Direction::forward;
}

}  // namespace

Direction OrderCursor::along(Direction direction) const {
    return order_.descending() ? opposite(direction) : direction;
}

DWORD OrderCursor::open(Session& session) {
    givenUpBatches_ = MountedStore::givenUpBatches();
    return session.engine().openOrder(database_, order_, orderId_);
}

DWORD OrderCursor::refresh(Session& session) {
    if (givenUpBatches_ != MountedStore::givenUpBatches()) {
        forgetBlock();
        index_.reset();
        placeLeft_.reset();
        if (const DWORD error = open(session); error != ERROR_SUCCESS) return error;
    }
    const StoreMoment now = session.moment();
    if (now != moment_) forgetBlock();
    moment_ = now;
    return ERROR_SUCCESS;
}

void OrderCursor::forgetBlock() {
    block_.clear();
    slot_ = 0;
    nextFetch_ = 1;
    singleHolds_ = false;
}

// The position

void OrderCursor::serve(std::size_t slot) {
    slot_ = slot;
    place_ = block_[slot].place;
    where_ = Where::at;
    singleHolds_ = false;
}

void OrderCursor::leavePlace() {
    if (index_ && !placeLeft_) placeLeft_ = std::move(place_);
    forgetBlock();
}

void OrderCursor::toEntry(Entry entry) {
    leavePlace();
    block_.push_back(std::move(entry));
    blockReachedEnd_ = false;
    serve(0);
}

DWORD OrderCursor::runOff() {
    leavePlace();
    where_ = Where::end;
    return ERROR_SEEK;
}

DWORD OrderCursor::read(Session& session, std::string_view& packed) {
    if (const DWORD error = refresh(session); error != ERROR_SUCCESS) return error;
    if (where_ == Where::start) {
        const DWORD error = toIndex(session, 0);
        if (error == ERROR_SEEK) where_ = Where::start;  // a record may come yet
        if (error != ERROR_SUCCESS) return error == ERROR_SEEK ? ERROR_NO_MORE_ITEMS : error;
    }
    if (where_ == Where::end) return ERROR_NO_MORE_ITEMS;
    if (!block_.empty() && !block_[slot_].packed.empty()) {
        packed = block_[slot_].packed;
        return ERROR_SUCCESS;
    }
    if (!singleHolds_) {
        const DWORD error = session.engine().get(database_, place_.record, single_);
        if (error != ERROR_SUCCESS) return error;
        singleHolds_ = true;
    }
    packed = single_;
    return ERROR_SUCCESS;
}

DWORD OrderCursor::toRecord(Session& session, CEOID record) {
    if (const DWORD error = refresh(session); error != ERROR_SUCCESS) return error;
    if (!block_.empty() && block_[slot_].place.record == record) return ERROR_SUCCESS;

    Entry entry;
    const DWORD error = session.engine().get(database_, record, entry.packed);
    if (error != ERROR_SUCCESS) return error;
    entry.place = {session.engine().sortKeys().keyOfRecord(order_, entry.packed), record};
    toEntry(std::move(entry));
    return ERROR_SUCCESS;
}

// By steps

DWORD OrderCursor::moveBy(Session& session, std::int64_t steps) {
    if (const DWORD error = refresh(session); error != ERROR_SUCCESS) return error;
    if (where_ == Where::start) {
        if (const DWORD error = toIndex(session, 0); error != ERROR_SUCCESS) return error;
    }
    if (where_ == Where::end && steps >= 0) return ERROR_SEEK;
    if (steps == 0) {
        std::string_view present;
        return read(session, present);
    }
    return advance(session, directionOf(steps), distanceOf(steps));
}

DWORD OrderCursor::stepOn(Session& session) {
    return where_ == Where::at ? advance(session, Direction::forward, 1) : ERROR_SEEK;
}

DWORD OrderCursor::advance(Session& session, Direction direction, std::uint64_t count) {
    if (!advanceWithinBlock(direction, count)) {
        if (endsWithBlock(direction)) return runOff();
        if (const DWORD error = fetch(session, direction, count); error != ERROR_SUCCESS) return error;
    }
    countSteps(direction, count);
    return ERROR_SUCCESS;
}

bool OrderCursor::advanceWithinBlock(Direction direction, std::uint64_t count) {
    if (block_.empty()) return false;
    const bool onward = direction == blockDirection_;
    const std::size_t left = onward ? block_.size() - 1 - slot_ : slot_;
    if (count > left) return false;
    const auto slots = static_cast<std::size_t>(count);
    serve(onward ? slot_ + slots : slot_ - slots);
    return true;
}

bool OrderCursor::endsWithBlock(Direction direction) const {
    return !block_.empty() && blockReachedEnd_ && direction == blockDirection_;
}

/// Reads a block beyond the position, or just the place to go to when that is far.
DWORD OrderCursor::fetch(Session& session, Direction direction, std::uint64_t count) {
    const Place* from = where_ == Where::at ? &place_ : nullptr;
    if (count > shortWalk) {
        Entry far;
        const DWORD error = placeBeyond(session, from, direction, count, far.place);
        if (error == ERROR_SEEK) return runOff();
        if (error != ERROR_SUCCESS) return error;
        const auto index = std::exchange(index_, std::nullopt);  // it goes along with the position
        toEntry(std::move(far));
        index_ = index;
        return ERROR_SUCCESS;
    }
    if (direction != blockDirection_) nextFetch_ = 1;
    const std::size_t limit = std::max(nextFetch_, static_cast<std::size_t>(count));
    std::vector<Entry> fetched;
    const DWORD error = session.engine().step(orderId_, from, along(direction), limit, Fetch::records, fetched);
    if (error != ERROR_SUCCESS) return error;
    if (fetched.size() < count) return runOff();
    block_ = std::move(fetched);
    blockDirection_ = direction;
    blockReachedEnd_ = block_.size() < limit;
    nextFetch_ = readAheadAfter(block_);
    serve(static_cast<std::size_t>(count) - 1);
    return ERROR_SUCCESS;
}

/// ERROR_SEEK when there are fewer than `count` records beyond.
DWORD OrderCursor::placeBeyond(Session& session, const Place* from, Direction direction, std::uint64_t count,
                               Place& reached) {
    std::vector<Entry> passed;
    for (std::uint64_t left = count; left != 0; left -= passed.size()) {
        const auto limit = static_cast<std::size_t>(std::min(left, longestWalk));
        passed.clear();
        const DWORD error = session.engine().step(orderId_, from, along(direction), limit, Fetch::placesOnly, passed);
        if (error != ERROR_SUCCESS) return error;
        if (passed.size() < limit) return ERROR_SEEK;
        reached = std::move(passed.back().place);
        from = &reached;
    }
    return ERROR_SUCCESS;
}

// By index

DWORD OrderCursor::toIndexFromEnd(Session& session, std::uint64_t index) {
    if (const DWORD error = refresh(session); error != ERROR_SUCCESS) return error;
    return jump(session, index, Direction::backward);
}

DWORD OrderCursor::toIndex(Session& session, std::uint64_t index) {
    if (const DWORD error = refresh(session); error != ERROR_SUCCESS) return error;
    if (indexHolds(session)) {
        const auto steps = static_cast<std::int64_t>(index - *index_);
        const std::uint64_t distance = distanceOf(steps);
        if (distance <= shortWalk || distance <= index / walkingCost) return walkFromIndexed(session, steps);
    }
    std::uint64_t version = 0;  // asked before the jump: what is committed in between makes it out of date
    if (const DWORD error = session.engine().orderVersion(orderId_, version); error != ERROR_SUCCESS) return error;
    if (const DWORD error = jump(session, index, Direction::forward); error != ERROR_SUCCESS) return error;
    index_ = index;
    placeLeft_.reset();
    indexVersion_ = version;
    indexMoment_ = moment_;
    return ERROR_SUCCESS;
}

bool OrderCursor::indexHolds(Session& session) {
    if (!index_) return false;
    if (indexMoment_ == moment_) return true;
    std::uint64_t version = 0;
    if (session.engine().orderVersion(orderId_, version) != ERROR_SUCCESS || version != indexVersion_) {
        index_.reset();
        placeLeft_.reset();
        return false;
    }
    indexMoment_ = moment_;
    return true;
}

/// Goes `steps` from the place whose index is known.
DWORD OrderCursor::walkFromIndexed(Session& session, std::int64_t steps) {
    if (!placeLeft_) return steps == 0 ? ERROR_SUCCESS : advance(session, directionOf(steps), distanceOf(steps));

    Place reached = *placeLeft_;
    if (steps != 0) {
        const DWORD error = placeBeyond(session, &*placeLeft_, directionOf(steps), distanceOf(steps), reached);
        if (error == ERROR_SEEK) return runOff();
        if (error != ERROR_SUCCESS) return error;
    }
    toEntry({std::move(reached), {}});
    placeLeft_.reset();
    countSteps(directionOf(steps), distanceOf(steps));
    return ERROR_SUCCESS;
}

void OrderCursor::countSteps(Direction direction, std::uint64_t count) {
    if (!index_ || placeLeft_) return;
    *index_ = direction == Direction::forward ? *index_ + count : *index_ - count;
}

/// To the record with `count` others before it on the side that `direction` comes from.
DWORD OrderCursor::jump(Session& session, std::uint64_t count, Direction direction) {
    if (count == 0) {
        std::vector<Entry> first;
        const DWORD error = session.engine().step(orderId_, nullptr, along(direction), 1, Fetch::records, first);
        if (error != ERROR_SUCCESS) return error;
        if (first.empty()) return runOff();
        toEntry(std::move(first.front()));
        return ERROR_SUCCESS;
    }
    Entry entry;
    const DWORD error = session.engine().stepTo(orderId_, count, along(direction), entry);
    if (error == ERROR_NO_MORE_ITEMS) return runOff();
    if (error != ERROR_SUCCESS) return error;
    toEntry(std::move(entry));
    return ERROR_SUCCESS;
}

}  // namespace Platform
