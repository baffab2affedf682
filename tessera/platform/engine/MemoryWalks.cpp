#include <algorithm>
#include <iterator>

#include "tessera/platform/engine/ContactNumbers.h"
#include "tessera/platform/engine/MemoryEngine.h"
#include "tessera/platform/engine/StoreError.h"
#include "tessera/platform/engine/StoreRules.h"

namespace Platform {

const MemoryDatabase* MemoryEngine::findByOrder(OrderId order) {
    for (const auto& [id, database] : state().databases) {
        if (database->orders.contains(order)) return database.get();
    }
    return nullptr;
}

const MemoryOrder* MemoryEngine::findOrder(OrderId order) {
    const MemoryDatabase* database = findByOrder(order);
    return database == nullptr ? nullptr : &database->orders.at(order);
}

MemoryOrder& MemoryEngine::buildOrder(MemoryDatabase& database, OrderId id, const SortOrder& order) const {
    MemoryOrder& built = database.orders[id];
    built.order = order;
    for (const auto& [record, packed] : database.records) {
        built.places.insert({keys_.keyOfRecord(order, packed), record});
    }
    return built;
}

std::optional<OrderId> MemoryEngine::existingOrder(const MemoryDatabase& database, const SortOrder& wanted) {
    for (const auto& [id, order] : database.orders) {
        if (order.order == wanted) return id;
    }
    return std::nullopt;
}

DWORD MemoryEngine::openOrder(CEOID database, const SortOrder& order, OrderId& id) {
    if (!hasOrder(order.property)) return noOrderOnBlob();
    const SortOrder wanted = canonicalOrder(order);
    std::optional<OrderId> existing;
    {
        const Lock lock(shared_->mutex);
        const MemoryDatabase* found = find(database);
        if (found == nullptr) return noSuchDatabase();
        existing = existingOrder(*found, wanted);
    }
    if (existing) {
        id = *existing;
        return ERROR_SUCCESS;
    }
    return writing([&]() -> DWORD {
        MemoryDatabase* found = findToWrite(database);
        if (found == nullptr) return noSuchDatabase();
        existing = existingOrder(*found, wanted);  // another may have built it meanwhile
        id = existing ? *existing : state().nextOrder++;
        if (!existing) buildOrder(*found, id, wanted);
        return ERROR_SUCCESS;
    });
}

DWORD MemoryEngine::step(OrderId order, const Place* from, Direction direction, std::size_t limit, Fetch fetch,
                         std::vector<Entry>& entries) {
    entries.clear();
    const Lock lock(shared_->mutex);
    const MemoryDatabase* database = findByOrder(order);
    if (database == nullptr) return noSuchOrder();
    const auto take = [&](auto place, auto end) {
        for (; place != end && entries.size() < limit; ++place) {
            entries.push_back({*place, fetch == Fetch::records ? database->records.at(place->record) : std::string()});
        }
    };
    const std::set<Place>& places = database->orders.at(order).places;
    if (direction == Direction::forward) {
        take(from == nullptr ? places.begin() : places.upper_bound(*from), places.end());
    } else {
        take(std::make_reverse_iterator(from == nullptr ? places.end() : places.lower_bound(*from)), places.rend());
    }
    return ERROR_SUCCESS;
}

DWORD MemoryEngine::stepTo(OrderId order, std::uint64_t index, Direction direction, Entry& entry) {
    const Lock lock(shared_->mutex);
    const MemoryOrder* found = findOrder(order);
    if (found == nullptr) return noSuchOrder();
    if (index >= found->places.size()) return nothingFurther();
    const auto distance = static_cast<std::ptrdiff_t>(index);
    entry.place = direction == Direction::forward ? *std::next(found->places.begin(), distance)
                                                  : *std::next(found->places.rbegin(), distance);
    entry.packed.clear();
    return ERROR_SUCCESS;
}

DWORD MemoryEngine::findEqual(OrderId by, std::string_view key, OrderId along, Direction direction, Place& found) {
    const Lock lock(shared_->mutex);
    const MemoryDatabase* database = findByOrder(by);
    if (database == nullptr || findByOrder(along) == nullptr) return noSuchOrder();
    if (findByOrder(along) != database) return ordersOfTwoDatabases();

    std::set<Place> equal;
    const std::set<Place>& places = database->orders.at(by).places;
    for (auto place = places.lower_bound({std::string(key), 0}); place != places.end() && place->key == key; ++place) {
        const std::string& packed = database->records.at(place->record);
        equal.insert({keys_.keyOfRecord(database->orders.at(along).order, packed), place->record});
    }
    if (equal.empty()) return nothingFurther();
    found = direction == Direction::forward ? *equal.begin() : *equal.rbegin();
    return ERROR_SUCCESS;
}

DWORD MemoryEngine::findNumber(std::string_view number, const SortOrder& along, CEOID& record) {
    const Lock lock(shared_->mutex);
    std::set<Place> holders;
    for (const auto& [database, found] : state().databases) {
        if (!keepsNumbers(found->info.name)) continue;
        for (const auto& [id, packed] : found->records) {
            if (std::ranges::binary_search(reducedNumbers(packed), number))
                holders.insert({keys_.keyOfRecord(along, packed), id});
        }
    }
    if (holders.empty()) return nothingFurther();
    record = holders.begin()->record;
    return ERROR_SUCCESS;
}

DWORD MemoryEngine::placeOf(OrderId order, CEOID record, Place& place) {
    const Lock lock(shared_->mutex);
    const MemoryDatabase* database = findByOrder(order);
    if (database == nullptr) return noSuchOrder();
    const auto found = database->records.find(record);
    if (found == database->records.end()) return noSuchRecord();
    place = {keys_.keyOfRecord(database->orders.at(order).order, found->second), record};
    return ERROR_SUCCESS;
}

DWORD MemoryEngine::orderVersion(OrderId order, std::uint64_t& version) {
    const Lock lock(shared_->mutex);
    const MemoryOrder* found = findOrder(order);
    if (found == nullptr) return noSuchOrder();
    version = found->version;
    return ERROR_SUCCESS;
}

std::uint64_t MemoryEngine::storeVersion() {
    const Lock lock(shared_->mutex);
    return shared_->commits;
}

DWORD MemoryEngine::changesAfter(std::uint64_t sequence, std::size_t limit, std::vector<Change>& changes) {
    changes.clear();
    const Lock lock(shared_->mutex);
    const auto take = [&](const auto& log) {
        for (const Change& change : log) {
            if (change.sequence > sequence && changes.size() < limit) changes.push_back(change);
        }
    };
    take(shared_->log);
    take(written_);
    const bool gap = !changes.empty() && changes.front().sequence != sequence + 1;
    if (gap) changes.clear();
    return gap ? logStartsLater() : ERROR_SUCCESS;
}

DWORD MemoryEngine::lastChange(std::uint64_t& sequence) {
    const Lock lock(shared_->mutex);
    sequence = state().lastChange;
    return ERROR_SUCCESS;
}

}  // namespace Platform
