#include "tessera/platform/objectstore/DatabaseHandle.h"

#include <algorithm>
#include <iterator>

#include "tessera/platform/objectstore/MountedStore.h"
#include "tessera/platform/objectstore/PropertyValues.h"

namespace Platform {
namespace {

/// A value that is sought: its key in an order on its property.
struct Sought {
    SortOrder by;
    std::string key;

    bool along(const SortOrder& order) const { return by.property == order.property; }
};

/// A value of the order's own property is sought as that order sees it.
DWORD soughtValue(Session& session, std::uintptr_t value, const SortOrder& order, Sought& sought) {
    const auto* wanted = reinterpret_cast<const CEPROPVAL*>(value);
    if (wanted == nullptr) return ERROR_INVALID_PARAMETER;
    StoredValue stored;
    if (const DWORD error = stored.set(*wanted); error != ERROR_SUCCESS) return error;
    const SortOrder by{wanted->propid, wanted->propid == order.property ? order.flags : 0};
    auto key = session.engine().sortKeys().keyOf(by, stored.bytes());
    if (!key) return ERROR_INVALID_PARAMETER;
    sought = {by, *std::move(key)};
    return ERROR_SUCCESS;
}

}  // namespace

struct DatabaseHandle::Seek {
    DWORD type;
    DWORD (DatabaseHandle::*make)(Session&, Value);
};

constexpr DatabaseHandle::Seek DatabaseHandle::seeks[] = {
    {CEDB_SEEK_CEOID, &DatabaseHandle::seekRecord},
    {CEDB_SEEK_BEGINNING, &DatabaseHandle::seekBeginning},
    {CEDB_SEEK_END, &DatabaseHandle::seekEnd},
    {CEDB_SEEK_CURRENT, &DatabaseHandle::seekCurrent},
    {CEDB_SEEK_VALUESMALLER, &DatabaseHandle::seekSmaller},
    {CEDB_SEEK_VALUEFIRSTEQUAL, &DatabaseHandle::seekFirstEqual},
    {CEDB_SEEK_VALUEGREATER, &DatabaseHandle::seekGreater},
    {CEDB_SEEK_VALUENEXTEQUAL, &DatabaseHandle::seekNextEqual},
};

DatabaseHandle::DatabaseHandle(const Opening& opening, const SortOrder& order)
    : database_(opening.database),
      autoIncrement_(opening.autoIncrement),
      request_(opening.request),
      cursor_(opening.database, order) {}

std::shared_ptr<DatabaseHandle> DatabaseHandle::open(Session& session, const Opening& opening, DWORD& error) {
    DatabaseInfo info;
    error = session.engine().databaseInfo(opening.database, info);
    if (error != ERROR_SUCCESS) return nullptr;

    SortOrder order = opening.order;
    if (order.property == 0) order = info.declaredOrders.empty() ? SortOrder{} : info.declaredOrders.front();
    std::shared_ptr<DatabaseHandle> opened(new DatabaseHandle(opening, order));
    error = opened->cursor_.open(session);
    return error == ERROR_SUCCESS ? opened : nullptr;
}

DWORD DatabaseHandle::orGone(Session& session, DWORD error) {
    if (error == ERROR_SUCCESS || error == ERROR_INVALID_PARAMETER) return error;
    DatabaseInfo info;
    return session.engine().databaseInfo(database_, info) == ERROR_FILE_NOT_FOUND ? ERROR_INVALID_HANDLE : error;
}

// Records

DWORD DatabaseHandle::read(Session& session, std::string_view& packed) {
    return orGone(session, cursor_.read(session, packed));
}

void DatabaseHandle::moveOn(Session& session) {
    if (autoIncrement_) static_cast<void>(cursor_.stepOn(session));
}

DWORD DatabaseHandle::write(Session& session, CEOID& record, std::span<const Edit> edits) {
    return orGone(session, session.put(database_, record, edits));
}

DWORD DatabaseHandle::erase(Session& session, CEOID record) {
    return orGone(session, session.erase(database_, record));
}

// Seeks by place

DWORD DatabaseHandle::seek(Session& session, DWORD seekType, std::uintptr_t value, DWORD* index) {
    const auto* wanted = std::find_if(std::begin(seeks), std::end(seeks),
                                      [seekType](const Seek& seek) { return seek.type == seekType; });
    if (wanted == std::end(seeks)) return ERROR_INVALID_PARAMETER;
    if (const DWORD error = (this->*wanted->make)(session, value); error != ERROR_SUCCESS) {
        return orGone(session, error);
    }
    if (index == nullptr) return ERROR_SUCCESS;
    *index = seekType == CEDB_SEEK_BEGINNING ? static_cast<DWORD>(value) : 0;
    return seekType == CEDB_SEEK_END ? indexFromEnd(session, value, *index) : ERROR_SUCCESS;
}

DWORD DatabaseHandle::seekRecord(Session& session, Value value) {
    return cursor_.toRecord(session, static_cast<CEOID>(value));
}

DWORD DatabaseHandle::seekBeginning(Session& session, Value value) {
    return cursor_.toIndex(session, static_cast<DWORD>(value));
}

DWORD DatabaseHandle::seekEnd(Session& session, Value value) {
    return cursor_.toIndexFromEnd(session, static_cast<DWORD>(value));
}

DWORD DatabaseHandle::seekCurrent(Session& session, Value value) {
    return cursor_.moveBy(session, static_cast<std::int32_t>(static_cast<DWORD>(value)));
}

DWORD DatabaseHandle::indexFromEnd(Session& session, std::uint64_t fromEnd, DWORD& index) {
    DatabaseInfo info;
    const DWORD error = session.engine().databaseInfo(database_, info);
    if (error == ERROR_SUCCESS) index = info.records - 1 - static_cast<DWORD>(fromEnd);
    return error;
}

// Seeks by value

DWORD DatabaseHandle::seekFirstEqual(Session& session, Value value) {
    if (const DWORD error = cursor_.refresh(session); error != ERROR_SUCCESS) return error;
    Sought sought;
    if (const DWORD error = soughtValue(session, value, cursor_.order(), sought); error != ERROR_SUCCESS) return error;
    return sought.along(cursor_.order()) ? firstEqualAlong(session, sought.key)
                                         : firstEqualAcross(session, sought.by.property, sought.key);
}

DWORD DatabaseHandle::firstEqualAlong(Session& session, const std::string& key) {
    const Direction forward = cursor_.along(Direction::forward);
    const Place before{key, forward == Direction::forward ? 0 : CEOID{0xFFFFFFFF}};
    std::vector<Entry> found;
    const DWORD error = session.engine().step(cursor_.orderId(), &before, forward, 1, Fetch::records, found);
    if (error != ERROR_SUCCESS) return error;
    if (found.empty() || found.front().place.key != key) return cursor_.runOff();
    cursor_.toEntry(std::move(found.front()));
    return ERROR_SUCCESS;
}

DWORD DatabaseHandle::firstEqualAcross(Session& session, CEPROPID property, const std::string& key) {
    OrderId by = 0;
    if (const DWORD error = orderOf(session, property, by); error != ERROR_SUCCESS) return error;
    Entry found;
    const DWORD error =
        session.engine().findEqual(by, key, cursor_.orderId(), cursor_.along(Direction::forward), found.place);
    if (error == ERROR_NO_MORE_ITEMS) return cursor_.runOff();
    if (error != ERROR_SUCCESS) return error;
    cursor_.toEntry(std::move(found));
    return ERROR_SUCCESS;
}

DWORD DatabaseHandle::orderOf(Session& session, CEPROPID property, OrderId& order) {
    if (otherOrdersAsOf_ != MountedStore::givenUpBatches()) otherOrders_.clear();
    otherOrdersAsOf_ = MountedStore::givenUpBatches();
    for (const auto& [known, id] : otherOrders_) {
        if (known == property) {
            order = id;
            return ERROR_SUCCESS;
        }
    }
    const DWORD error = session.engine().openOrder(database_, {property, 0}, order);
    if (error == ERROR_SUCCESS) otherOrders_.emplace_back(property, order);
    return error;
}

DWORD DatabaseHandle::seekNextEqual(Session& session, Value value) {
    Sought sought;
    if (const DWORD error = soughtValue(session, value, cursor_.order(), sought); error != ERROR_SUCCESS) return error;
    if (const DWORD error = cursor_.moveBy(session, 1); error != ERROR_SUCCESS) return error;
    if (sought.along(cursor_.order())) return cursor_.place().key == sought.key ? ERROR_SUCCESS : cursor_.runOff();

    std::string_view packed;
    if (const DWORD error = cursor_.read(session, packed); error != ERROR_SUCCESS) return error;
    const std::string key = session.engine().sortKeys().keyOfRecord(sought.by, packed);
    return key == sought.key ? ERROR_SUCCESS : cursor_.runOff();
}

/// The largest value that is smaller; of equal ones the record nearest to the value's own place.
DWORD DatabaseHandle::seekSmaller(Session& session, Value value) {
    if (const DWORD error = cursor_.refresh(session); error != ERROR_SUCCESS) return error;
    Sought sought;
    if (const DWORD error = soughtValue(session, value, cursor_.order(), sought); error != ERROR_SUCCESS) return error;
    if (!sought.along(cursor_.order())) return ERROR_INVALID_PARAMETER;
    return seekBeside(session, sought.key, Direction::backward);
}

/// The first equal record, else the smallest value that is greater: an equal one counts, and is meant to.
DWORD DatabaseHandle::seekGreater(Session& session, Value value) {
    if (const DWORD error = cursor_.refresh(session); error != ERROR_SUCCESS) return error;
    Sought sought;
    if (const DWORD error = soughtValue(session, value, cursor_.order(), sought); error != ERROR_SUCCESS) return error;
    if (!sought.along(cursor_.order())) return ERROR_INVALID_PARAMETER;
    if (const DWORD error = firstEqualAlong(session, sought.key); error != ERROR_SEEK) return error;
    return seekBeside(session, sought.key, Direction::forward);
}

DWORD DatabaseHandle::seekBeside(Session& session, const std::string& key, Direction engineDirection) {
    const Place place{key, 0};
    std::vector<Entry> found;
    const DWORD error = session.engine().step(cursor_.orderId(), &place, engineDirection, 1, Fetch::records, found);
    if (error != ERROR_SUCCESS) return error;
    const std::string lacking = session.engine().sortKeys().keyOfRecord(cursor_.order(), {});
    if (found.empty() || found.front().place.key == lacking) return cursor_.runOff();  // it has no value at all
    cursor_.toEntry(std::move(found.front()));
    return ERROR_SUCCESS;
}

}  // namespace Platform
