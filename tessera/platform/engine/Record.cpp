#include "tessera/platform/engine/Record.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <vector>

#include "tessera/platform/base/Results.h"

// A packed record is its properties one after another: the identifier in 4 bytes, the length of the
// value in 2, the value; all little-endian.

namespace Platform {
namespace {

constexpr std::size_t headerBytes = 6;
static_assert(maxPropertyBytes <= 0xFFFF, "a length is written in two bytes");
static_assert(std::endian::native == std::endian::little, "numbers and texts are packed as they stand in memory");

/// As many as a contact or another record of the phone book has at most.
constexpr std::size_t usualProperties = 16;

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

template <class Number>
Number numberAt(const char* at) {
    Number number;
    std::memcpy(&number, at, sizeof number);
    return number;
}

std::string pack(std::span<const PropertyView> properties, std::size_t valueBytes) {
    std::string packed;
    packed.reserve(valueBytes + properties.size() * headerBytes);
    for (const PropertyView& property : properties) {
        const auto length = static_cast<std::uint16_t>(property.bytes.size());
        std::array<char, headerBytes> header;
        std::memcpy(header.data(), &property.id, sizeof property.id);
        std::memcpy(header.data() + sizeof property.id, &length, sizeof length);
        packed.append(header.data(), header.size());
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

std::string_view packedText(WStringView text) {
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(WCHAR)};
}

WString unpackedText(std::string_view bytes) {
    WString text(bytes.size() / sizeof(WCHAR), u'\0');
    std::memcpy(text.data(), bytes.data(), text.size() * sizeof(WCHAR));
    return text;
}

std::optional<PropertyView> RecordReader::next() {
    if (rest_.empty() || damaged_) return std::nullopt;
    damaged_ = true;  // until the property has proved whole
    if (rest_.size() < headerBytes) return std::nullopt;
    const auto id = numberAt<CEPROPID>(rest_.data());
    const std::size_t size = numberAt<std::uint16_t>(rest_.data() + sizeof id);
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
    properties.reserve(edits.size() + usualProperties);
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
