#include "tessera/platform/contacts/MatchList.h"

#include <algorithm>

#include "tessera/platform/objectstore/MountedStore.h"

namespace Platform {

namespace {

/// How many bytes of records a list keeps.
constexpr std::size_t keptAtMost = 8u << 20;

/// For more changes than this a new walk is the cheaper way.
constexpr std::size_t changesFollowed = 2'000;

}  // namespace

DWORD MatchList::count(std::size_t& count) {
    Session* session = store_->session();
    if (session == nullptr) return GetLastError();
    const DWORD error = bringUpToDate(*session);
    count = members_.size();
    return error;
}

DWORD MatchList::at(std::size_t position, CEOID& oid, std::string_view& packed) {
    Session* session = store_->session();
    if (session == nullptr) return GetLastError();
    DWORD error = ERROR_KEY_DELETED;
    while (error == ERROR_KEY_DELETED) {  // deleted between the look at the list and the read
        error = bringUpToDate(*session);
        if (error != ERROR_SUCCESS) return error;
        if (position >= members_.size()) return ERROR_NO_MORE_ITEMS;
        const Member& member = members_[order_.descending() ? members_.size() - 1 - position : position];
        oid = member.place.record;
        if (member.packed) {
            packed = *member.packed;
            return ERROR_SUCCESS;
        }
        error = session->engine().get(store_->database(), oid, single_);
        packed = single_;
    }
    return error;
}

DWORD MatchList::bringUpToDate(Session& session) {
    Stamp now;
    now.moment = session.moment();
    now.givenUpBatches = MountedStore::givenUpBatches();
    const bool sameBatches = stamp_ && stamp_->givenUpBatches == now.givenUpBatches;
    if (sameBatches && stamp_->moment == now.moment) return ERROR_SUCCESS;

    DatabaseInfo info;
    if (const DWORD error = session.engine().databaseInfo(store_->database(), info); error != ERROR_SUCCESS) {
        return error;
    }
    now.modified = info.modified;
    if (sameBatches && stamp_->modified == now.modified) {
        stamp_->moment = now.moment;
        return ERROR_SUCCESS;
    }
    if (sameBatches) now.sequence = stamp_->sequence;
    const bool follow = sameBatches && fewChangesAfter(session, now.sequence);
    stamp_.reset();  // what fails from here on leaves a list that has to be made anew
    DWORD error = follow ? followChanges(session, now) : ERROR_NO_MORE_ITEMS;
    while (error == ERROR_NO_MORE_ITEMS)
        error = listAnew(session, now);
    if (error == ERROR_SUCCESS) stamp_ = now;
    return error;
}

bool MatchList::fewChangesAfter(Session& session, std::uint64_t sequence) {
    std::uint64_t last = 0;
    return session.engine().lastChange(last) == ERROR_SUCCESS && last - sequence <= changesFollowed;
}

DWORD MatchList::listAnew(Session& session, Stamp& stamp) {
    members_.clear();
    keptBytes_ = 0;
    if (const DWORD error = session.engine().openOrder(store_->database(), order_, orderId_); error != ERROR_SUCCESS) {
        return error;
    }
    // Taken before the walk: what is written meanwhile is judged once more, which does no harm.
    if (const DWORD error = session.engine().lastChange(stamp.sequence); error != ERROR_SUCCESS) return error;
    // As they were created they lie behind one another, which is much the quicker walk.
    const SortOrder asCreated;
    const SortKeys& keys = session.engine().sortKeys();
    const DWORD error = walkContacts(*store_, asCreated, [&](const Place& place, std::string_view packed) {
        if (passes(restrictions_, packed)) {
            members_.push_back({{keys.keyOfRecord(order_, packed), place.record}, keptRecord(packed)});
        }
        return true;
    });
    std::ranges::sort(members_, {}, &Member::place);
    return error != ERROR_SUCCESS ? error : followChanges(session, stamp);
}

/// ERROR_NO_MORE_ITEMS when the log does not reach back so far.
DWORD MatchList::followChanges(Session& session, Stamp& stamp) {
    std::vector<Change> changes;
    do {
        changes.clear();
        const DWORD error = session.engine().changesAfter(stamp.sequence, changesFollowed, changes);
        if (error != ERROR_SUCCESS) return error;
        for (const Change& change : changes) {
            stamp.sequence = change.sequence;
            if (change.database != store_->database()) continue;
            if (const DWORD judged = judgeAnew(session, change.record); judged != ERROR_SUCCESS) return judged;
        }
    } while (changes.size() == changesFollowed);
    return ERROR_SUCCESS;
}

/// Goes by what the record is now, whatever the change was.
DWORD MatchList::judgeAnew(Session& session, CEOID record) {
    remove(record);
    std::string packed;
    DWORD error = session.engine().get(store_->database(), record, packed);
    if (error == ERROR_SUCCESS) {
        if (!passes(restrictions_, packed)) return ERROR_SUCCESS;
        Place place;
        error = session.engine().placeOf(orderId_, record, place);
        if (error == ERROR_SUCCESS) insert(place, packed);
    }
    return error == ERROR_KEY_DELETED ? ERROR_SUCCESS : error;
}

void MatchList::insert(const Place& place, std::string_view packed) {
    const auto position = std::ranges::lower_bound(members_, place, {}, &Member::place);
    members_.insert(position, {place, keptRecord(packed)});
}

/// Removes all that is listed of a record: twice, if it moved while the walk was under way.
void MatchList::remove(CEOID record) {
    std::erase_if(members_, [&](const Member& member) {
        if (member.place.record != record) return false;
        if (member.packed) keptBytes_ -= member.packed->size();
        return true;
    });
}

std::optional<std::string> MatchList::keptRecord(std::string_view packed) {
    if (!keepRecords_ || keptBytes_ + packed.size() > keptAtMost) return std::nullopt;
    keptBytes_ += packed.size();
    return std::string(packed);
}

}  // namespace Platform
