#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tessera/platform/engine/RecordEngine.h"
#include "tessera/platform/port/Locale.h"

// What a store is, said as plainly as can be: maps of records, sorted anew for every question by
// comparing the values themselves. Nothing of it makes keys, keeps an order or packs a record.

namespace engine_testing {

using Platform::Direction;
using Platform::SortOrder;

/// A record's properties in the order in which they were first written.
using ModelRecord = std::vector<std::pair<CEPROPID, std::string>>;

inline const std::string* valueOf(const ModelRecord& record, CEPROPID id) {
    const auto found = std::find_if(record.begin(), record.end(), [&](const auto& each) { return each.first == id; });
    return found == record.end() ? nullptr : &found->second;
}

/// A place in an order: the value that the record there has or had, if any.
struct ModelPlace {
    std::optional<std::string> value;
    CEOID record = 0;
};

/// Compares places of one order.
class PlaceComparison {
public:
    PlaceComparison(const SortOrder& order, const std::string& locale)
        : order_(order), collator_(locale, (order.flags & Platform::sortCaseInsensitive) != 0) {}

    /// Negative, 0 or positive.
    int compareValues(const std::optional<std::string>& a, const std::optional<std::string>& b) const {
        const bool unknownFirst = (order_.flags & Platform::sortUnknownFirst) != 0;
        if (!a || !b) return (a ? 1 : 0) == (b ? 1 : 0) ? 0 : (a.has_value() == unknownFirst ? 1 : -1);
        switch (Platform::kindOf(order_.property)) {
            case Platform::kindI2:
                return compareNumbers<std::int16_t>(*a, *b);
            case Platform::kindI4:
                return compareNumbers<std::int32_t>(*a, *b);
            case Platform::kindR8:
                return compareReals(*a, *b);
            case Platform::kindBool:
                return int{number<std::uint16_t>(*a) != 0} - int{number<std::uint16_t>(*b) != 0};
            case Platform::kindUI2:
                return compareNumbers<std::uint16_t>(*a, *b);
            case Platform::kindUI4:
                return compareNumbers<std::uint32_t>(*a, *b);
            case Platform::kindFileTime:
                return compareNumbers<std::uint64_t>(*a, *b);
            default:
                return compareTexts(*a, *b);
        }
    }

    int compare(const ModelPlace& a, const ModelPlace& b) const {
        const int values = order_.property == 0 ? 0 : compareValues(a.value, b.value);
        if (values != 0) return values;
        return a.record == b.record ? 0 : (a.record < b.record ? -1 : 1);
    }

private:
    template <typename Number>
    static Number number(const std::string& bytes) {
        std::uint64_t value = 0;
        for (std::size_t i = sizeof(Number); i-- > 0;) {
            value = value << 8 | static_cast<unsigned char>(bytes[i]);
        }
        return static_cast<Number>(value);
    }
    template <typename Number>
    static int compareNumbers(const std::string& a, const std::string& b) {
        return int{number<Number>(a) > number<Number>(b)} - int{number<Number>(a) < number<Number>(b)};
    }
    static int compareReals(const std::string& a, const std::string& b) {
        const auto left = std::bit_cast<double>(number<std::uint64_t>(a));
        const auto right = std::bit_cast<double>(number<std::uint64_t>(b));
        return int{left > right} - int{left < right};
    }
    static WString text(const std::string& bytes) {
        WString text;
        for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
            text.push_back(static_cast<WCHAR>(number<std::uint16_t>(bytes.substr(i, 2))));
        }
        return text;
    }
    int compareTexts(const std::string& a, const std::string& b) const {
        const WString left = text(a);
        const WString right = text(b);
        const int collated = collator_.sortKey(left).compare(collator_.sortKey(right));
        return collated != 0 ? collated : left.compare(right);
    }

    SortOrder order_;
    Platform::port::Collator collator_;
};

struct ModelOrder {
    SortOrder order;
    std::uint64_t version = 0;  ///< As last answered.
    bool moved = false;         ///< Since then.
};

struct ModelDatabase {
    WString name;
    std::vector<SortOrder> declared;
    std::map<CEOID, ModelRecord> records;
    std::map<Platform::OrderId, ModelOrder> orders;  ///< Those that were opened.
    std::uint64_t modified = 0;                      ///< As last answered.
    bool written = true;                             ///< Since then.
};

struct ModelChange {
    CEOID database = 0;
    CEOID record = 0;
    Platform::ChangeKind kind = Platform::ChangeKind::created;
    std::uint64_t origin = 0;
};

/// All of a store. A unit is a copy.
struct Model {
    std::map<CEOID, ModelDatabase> databases;
    std::set<CEOID> given;  ///< All identifiers there ever were.
    std::vector<ModelChange> log;
};

inline ModelPlace placeIn(const SortOrder& order, CEOID record, const ModelRecord& properties) {
    const std::string* value = valueOf(properties, order.property);
    return {value == nullptr ? std::nullopt : std::optional(*value), record};
}

/// The places of the records that `wanted` accepts, sorted in that direction.
template <typename Wanted>
std::vector<ModelPlace> sortedPlaces(const ModelDatabase& database, const SortOrder& order, Direction direction,
                                     const std::string& locale, Wanted&& wanted) {
    const PlaceComparison comparison(order, locale);
    std::vector<ModelPlace> places;
    for (const auto& [record, properties] : database.records) {
        if (wanted(placeIn(order, record, properties), properties)) {
            places.push_back(placeIn(order, record, properties));
        }
    }
    std::sort(places.begin(), places.end(),
              [&](const ModelPlace& a, const ModelPlace& b) { return comparison.compare(a, b) < 0; });
    if (direction == Direction::backward) std::reverse(places.begin(), places.end());
    return places;
}

/// Writes one property into a record of the model.
inline void writeProperty(ModelRecord& record, CEPROPID id, const std::optional<std::string>& value) {
    const auto found = std::find_if(record.begin(), record.end(), [&](const auto& each) { return each.first == id; });
    if (!value) {
        if (found != record.end()) record.erase(found);
    } else if (found != record.end()) {
        found->second = *value;
    } else {
        record.emplace_back(id, *value);
    }
}

}  // namespace engine_testing
