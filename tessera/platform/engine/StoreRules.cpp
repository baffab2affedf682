#include "tessera/platform/engine/StoreRules.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <random>

#include "tessera/platform/engine/StoreError.h"
#include "tessera/platform/port/Locale.h"

namespace Platform {
namespace {

constexpr std::size_t maxNameLength = 31;

/// The platform's clock counts from 1601, the system's from 1970.
constexpr std::uint64_t ticksFrom1601To1970 = 116'444'736'000'000'000;

}  // namespace

WStringView keptName(WStringView name) {
    return name.substr(0, maxNameLength);
}

WString foldedName(WStringView name) {
    WString folded(keptName(name));
    std::transform(folded.begin(), folded.end(), folded.begin(), port::upperCase);
    return folded;
}

bool hasOrder(CEPROPID property) {
    switch (kindOf(property)) {
        case kindI2:
        case kindI4:
        case kindR8:
        case kindBool:
        case kindUI2:
        case kindUI4:
        case kindText:
        case kindFileTime:
            return true;
        case kindBlob:
            return false;
    }
    return property == 0;
}

SortOrder canonicalOrder(const SortOrder& order) {
    const DWORD telling =
        kindOf(order.property) == kindText ? sortCaseInsensitive | sortUnknownFirst : sortUnknownFirst;
    return {order.property, order.property == 0 ? 0 : order.flags & telling};
}

bool samePlace(const SortOrder& order, std::string_view before, std::string_view after) {
    return findProperty(before, order.property) == findProperty(after, order.property);
}

bool wholeRecord(std::string_view packed) {
    RecordReader reader(packed);
    while (reader.next()) {
    }
    return !reader.damaged();
}

std::uint64_t ticksAfter(std::uint64_t previous) {
    using Ticks = std::chrono::duration<std::uint64_t, std::ratio<1, 10'000'000>>;
    const auto since1970 = std::chrono::system_clock::now().time_since_epoch();
    const std::uint64_t now = std::chrono::duration_cast<Ticks>(since1970).count() + ticksFrom1601To1970;
    return std::max(now, previous + 1);
}

std::uint64_t newOrigin() {
    std::random_device random;
    return std::uint64_t{random()} << 32 | random() | 1;
}

DWORD createSystemDatabases(RecordEngine& engine) {
    if (const DWORD error = engine.beginUnit()) return error;
    for (const SystemDatabase& system : systemDatabases) {
        CEOID database = 0;
        if (const DWORD error = engine.createDatabase(system.name, 0, system.orders, database)) return error;
    }
    return engine.endUnit();
}

DWORD checkNewDatabase(WStringView name, std::span<const SortOrder> orders) {
    if (name.empty()) return setStoreError(ERROR_INVALID_PARAMETER, "a database needs a name");
    if (orders.size() > maxDeclaredOrders) {
        return setStoreError(ERROR_INVALID_PARAMETER, "a database declares at most four sort orders");
    }
    const bool orderly =
        std::all_of(orders.begin(), orders.end(), [](const SortOrder& order) { return hasOrder(order.property); });
    return orderly ? ERROR_SUCCESS : noOrderOnBlob();
}

DWORD noSuchDatabase() {
    return setStoreError(ERROR_FILE_NOT_FOUND, "there is no such database");
}

DWORD noSuchOrder() {
    return setStoreError(ERROR_FILE_NOT_FOUND, "there is no such sort order: its database is gone");
}

DWORD noSuchRecord() {
    return setStoreError(ERROR_KEY_DELETED, "there is no such record");
}

DWORD nameTaken() {
    return setStoreError(ERROR_ALREADY_EXISTS, "a database of that name exists");
}

DWORD noOrderOnBlob() {
    return setStoreError(ERROR_INVALID_PARAMETER, "a property of that kind has no sort order");
}

DWORD ordersOfTwoDatabases() {
    return setStoreError(ERROR_INVALID_PARAMETER, "the two sort orders are of different databases");
}

DWORD nothingFurther() {
    return setStoreError(ERROR_NO_MORE_ITEMS, "there is no such entry");
}

DWORD logStartsLater() {
    return setStoreError(ERROR_NO_MORE_ITEMS, "the change log starts later");
}

DWORD unfitProperties() {
    return setStoreError(ERROR_INVALID_PARAMETER, "a property is of no known kind, of a wrong length, or too large");
}

DWORD identifiersUsedUp() {
    return setStoreError(ERROR_DISK_FULL, "the store has given away all its identifiers");
}

}  // namespace Platform
