#include "tessera/platform/engine/Record.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "tessera/platform/base/Results.h"

// A packed record is its properties one after another: the identifier in 4 bytes, the length of the
// value in 2, the value; all little-endian.

namespace Platform {
namespace {

constexpr std::size_t headerBytes = 6;
static_assert(maxPropertyBytes <= 0xFFFF, "a length is written in two bytes");

constexpr std::size_t noSuchKind = 0;
constexpr std::size_t anyWidth = 100;
constexpr std::size_t evenWidth = 101;

/// How long a value of each kind may be: that many bytes, any number, or an even number.
constexpr auto widths = [] {
    std::array<BYTE, kindBlob + 1> table{};
    for (const PropertyKind kind : {kindI2, kindBool, kindUI2})
        table[kind] = 2;
    for (const PropertyKind kind : {kindI4, kindUI4})
        table[kind] = 4;
    for (const PropertyKind kind : {kindR8, kindFileTime})
        table[kind] = 8;
    table[kindText] = evenWidth;
    table[kindBlob] = anyWidth;
    return table;
}();

std::size_t widthOf(CEPROPID id) {
    return kindOf(id) < widths.size() ? widths[kindOf(id)] : noSuchKind;
}

bool validValue(CEPROPID id, std::size_t size) {
    const std::size_t width = widthOf(id);
    if (width == noSuchKind || size > maxPropertyBytes) return false;
    if (width == anyWidth) return true;
    return width == evenWidth ? size % 2 == 0 : size == width;
}

/// The two bytes at `at`.
std::uint32_t littleEndian16(const char* at) {
    return static_cast<std::uint32_t>(static_cast<BYTE>(at[0]) | static_cast<BYTE>(at[1]) << 8);
}

void appendLittleEndian(std::string& bytes, std::uint32_t value, int width) {
    for (int i = 0; i < width; ++i, value >>= 8) {
        bytes.push_back(static_cast<char>(static_cast<BYTE>(value)));
    }
}

std::string pack(std::span<const PropertyView> properties, std::size_t valueBytes) {
    std::string packed;
    packed.reserve(valueBytes + properties.size() * headerBytes);
    for (const PropertyView& property : properties) {
        appendLittleEndian(packed, property.id, 4);
        appendLittleEndian(packed, static_cast<std::uint32_t>(property.bytes.size()), 2);
        packed += property.bytes;
    }
    return packed;
}

void applyEdit(std::vector<PropertyView>& properties, const Edit& edit) {
    const auto place = std::find_if(properties.begin(), properties.end(),
                                    [&](const PropertyView& property) { return property.id == edit.id; });
    if (edit.remove) {
        if (place != properties.end()) properties.erase(place);
    } else if (place != properties.end()) {
        place->bytes = edit.bytes;
    } else {
        properties.push_back({edit.id, edit.bytes});
    }
}

bool validEdit(const Edit& edit) {
    return edit.remove ? widthOf(edit.id) != noSuchKind : validValue(edit.id, edit.bytes.size());
}

}  // namespace

std::optional<PropertyView> RecordReader::next() {
    if (rest_.empty() || damaged_) return std::nullopt;
    damaged_ = true;  // until the property has proved whole
    if (rest_.size() < headerBytes) return std::nullopt;
    const CEPROPID id = littleEndian16(rest_.data()) | littleEndian16(rest_.data() + 2) << 16;
    const std::size_t size = littleEndian16(rest_.data() + 4);
    if (size > rest_.size() - headerBytes || !validValue(id, size)) return std::nullopt;
    const PropertyView property{id, rest_.substr(headerBytes, size)};
    rest_.remove_prefix(headerBytes + size);
    damaged_ = false;
    return property;
}

std::optional<PropertyView> findProperty(std::string_view packed, CEPROPID id) {
    RecordReader reader(packed);
    while (const auto property = reader.next()) {
        if (property->id == id) return property;
    }
    return std::nullopt;
}

DWORD applyEdits(std::string_view packed, std::span<const Edit> edits, std::string& result) {
    if (!std::all_of(edits.begin(), edits.end(), validEdit)) return ERROR_INVALID_PARAMETER;

    std::vector<PropertyView> properties;
    RecordReader reader(packed);
    while (const auto property = reader.next()) {
        properties.push_back(*property);
    }
    if (reader.damaged()) return ERROR_FILE_CORRUPT;

    for (const Edit& edit : edits) {
        applyEdit(properties, edit);
    }
    if (properties.size() > maxProperties) return ERROR_INVALID_PARAMETER;
    std::size_t valueBytes = 0;
    for (const PropertyView& property : properties) {
        valueBytes += property.bytes.size();
    }
    if (valueBytes > maxRecordBytes) return ERROR_INVALID_PARAMETER;
    result = pack(properties, valueBytes);
    return ERROR_SUCCESS;
}

}  // namespace Platform
