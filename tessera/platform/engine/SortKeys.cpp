#include "tessera/platform/engine/SortKeys.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

#include "tessera/platform/port/Locale.h"

// A key starts with a byte that says whether the record has the property. A number follows with its
// most significant byte first, its sign bit turned over where it has one. A text follows as the
// collation's key (which holds no zero byte), a zero byte, and the code units, high byte first.

namespace Platform {
namespace {

constexpr char lackingFirst = 0x10;
constexpr char present = 0x20;
constexpr char lackingLast = 0x30;

/// Told apart by version(): raise it when keys are made differently, or a store's format changes, so that programs
/// which have a store open when a newer one upgrades it no longer write to it.
constexpr std::string_view keyFormat = "2";

std::uint64_t littleEndian(std::string_view bytes) {
    std::uint64_t value = 0;
    for (std::size_t i = bytes.size(); i-- > 0;) {
        value = value << 8 | static_cast<BYTE>(bytes[i]);
    }
    return value;
}

std::string numberKey(std::uint64_t value, int width) {
    std::string key(1, present);
    for (int shift = 8 * (width - 1); shift >= 0; shift -= 8) {
        key.push_back(static_cast<char>(static_cast<BYTE>(value >> shift)));
    }
    return key;
}

std::string signedKey(std::string_view value) {
    const int width = static_cast<int>(value.size());
    return numberKey(littleEndian(value) ^ (std::uint64_t{1} << (8 * width - 1)), width);
}

/// The two zeros are one value; what is not a number comes after all numbers.
std::string realKey(std::string_view value) {
    double number = std::bit_cast<double>(littleEndian(value));
    if (number == 0) number = 0;
    if (std::isnan(number)) number = std::numeric_limits<double>::quiet_NaN();
    constexpr std::uint64_t sign = std::uint64_t{1} << 63;
    const auto bits = std::bit_cast<std::uint64_t>(number);
    return numberKey((bits & sign) != 0 ? ~bits : bits | sign, 8);
}

std::string textKey(const port::Collator& collator, std::string_view value) {
    const WString text = unpackedText(value);
    std::string key(1, present);
    collator.appendSortKey(text, key);
    key += '\0';
    for (const WCHAR unit : text) {
        key.push_back(static_cast<char>(static_cast<BYTE>(unit >> 8)));
        key.push_back(static_cast<char>(static_cast<BYTE>(unit)));
    }
    return key;
}

}  // namespace

struct SortKeys::Collators {
    explicit Collators(const std::string& name) : locale(name), exact(name, false) {}

    /// Made when an order first asks for it: most stores have no order without case.
    const port::Collator& of(const SortOrder& order) {
        if ((order.flags & sortCaseInsensitive) == 0) return exact;
        if (!caseless) caseless = std::make_unique<port::Collator>(locale, true);
        return *caseless;
    }

    std::string locale;
    port::Collator exact;
    std::unique_ptr<port::Collator> caseless;
};

SortKeys::SortKeys(const std::string& locale) : collators_(std::make_unique<Collators>(locale)) {}

SortKeys::~SortKeys() = default;

std::optional<std::string> SortKeys::keyOf(const SortOrder& order, std::string_view value) const {
    const auto wide = [&](std::size_t width) { return value.size() == width; };
    switch (kindOf(order.property)) {
        case kindI2:
            return wide(2) ? std::optional(signedKey(value)) : std::nullopt;
        case kindI4:
            return wide(4) ? std::optional(signedKey(value)) : std::nullopt;
        case kindR8:
            return wide(8) ? std::optional(realKey(value)) : std::nullopt;
        case kindBool:  // whatever is not zero is true
            return wide(2) ? std::optional(numberKey(littleEndian(value) != 0, 1)) : std::nullopt;
        case kindUI2:
            return wide(2) ? std::optional(numberKey(littleEndian(value), 2)) : std::nullopt;
        case kindUI4:
            return wide(4) ? std::optional(numberKey(littleEndian(value), 4)) : std::nullopt;
        case kindFileTime:
            return wide(8) ? std::optional(numberKey(littleEndian(value), 8)) : std::nullopt;
        case kindText:
            return value.size() % 2 == 0 ? std::optional(textKey(collators_->of(order), value)) : std::nullopt;
        case kindBlob:
            return std::nullopt;
    }
    return std::nullopt;
}

std::string SortKeys::keyOfRecord(const SortOrder& order, std::string_view packed) const {
    if (order.property == 0) return {};
    if (const auto property = findProperty(packed, order.property)) {
        if (auto key = keyOf(order, property->bytes)) return *std::move(key);
    }
    return std::string(1, (order.flags & sortUnknownFirst) != 0 ? lackingFirst : lackingLast);
}

std::string SortKeys::version() const {
    return std::string(keyFormat) + ";" + collators_->exact.version();
}

}  // namespace Platform
