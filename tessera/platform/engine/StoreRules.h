#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "tessera/platform/engine/RecordEngine.h"

// What every engine holds to, whatever it keeps its records in.

namespace Platform {

/// The last identifier that is given to a record or a database.
inline constexpr std::uint64_t lastIdentifier = 0xFFFF'FFFE;

inline constexpr std::size_t maxDeclaredOrders = 4;

/// The name as it is kept: its first 31 characters.
WStringView keptName(WStringView name);
/// What two names that are the same without case have in common.
WString foldedName(WStringView name);

/// Whether the property has an order: every known kind but a blob, and 0 for the order of creation.
bool hasOrder(CEPROPID property);
/// What distinguishes an order from others of a database: its direction does not, nor case unless
/// it is an order of text.
SortOrder canonicalOrder(const SortOrder& order);
/// Whether a record's place in the order is the same before and after an edit, judged without making keys.
bool samePlace(const SortOrder& order, std::string_view before, std::string_view after);

/// An order of creation needs no keys and is not kept: its identifier is made from its database's.
constexpr OrderId creationOrderOf(CEOID database) {
    return -OrderId{database};
}
constexpr bool isCreationOrder(OrderId order) {
    return order < 0;
}
constexpr CEOID databaseOfCreationOrder(OrderId order) {
    return static_cast<CEOID>(-order);
}

/// Whether the packed bytes read as a record from end to end.
bool wholeRecord(std::string_view packed);

/// The time of a change: now, but always later than the one before it.
std::uint64_t ticksAfter(std::uint64_t previous);
/// A mark that no other engine object has, in this or another process; never 0.
std::uint64_t newOrigin();

/// The databases that a new store holds; their identifiers are 1 and 2.
struct SystemDatabase {
    WStringView name;
    std::span<const SortOrder> orders;
};
inline constexpr SortOrder contactOrder{0x4013'0000 | kindText, 0};
inline constexpr std::array systemDatabases{
    SystemDatabase{TEXT("Contacts Database"), {&contactOrder, 1}},
    SystemDatabase{TEXT("\\Categories Database"), {}},
};
[[nodiscard]] DWORD createSystemDatabases(RecordEngine& engine);

// Failures that leave everything as it was: each sets the thread's store error and answers its code.

[[nodiscard]] DWORD checkNewDatabase(WStringView name, std::span<const SortOrder> orders);
[[nodiscard]] DWORD noSuchDatabase();
[[nodiscard]] DWORD noSuchOrder();
[[nodiscard]] DWORD noSuchRecord();
[[nodiscard]] DWORD nameTaken();
[[nodiscard]] DWORD noOrderOnBlob();
[[nodiscard]] DWORD ordersOfTwoDatabases();
[[nodiscard]] DWORD nothingFurther();
[[nodiscard]] DWORD logStartsLater();
[[nodiscard]] DWORD unfitProperties();
[[nodiscard]] DWORD identifiersUsedUp();

}  // namespace Platform
