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

constexpr std::size_t anyWidth = 0;
constexpr std::size_t evenWidth = 1;

/// How long a value of a kind may be: that many bytes, any number, or an even number.
struct Width {
    PropertyKind kind;
    std::size_t bytes;
};

constexpr std::array widths{
    Width{kindI2, 2},  Width{kindI4, 4},           Width{kindR8, 8},       Width{kindBool, 2},        Width{kindUI2, 2},
    Width{kindUI4, 4}, Width{kindText, evenWidth}, Width{kindFileTime, 8}, Width{kindBlob, anyWidth},
};

const Width* widthOf(CEPROPID id) {
    const auto found = std::find_if(widths.begin(), widths.end(), [&](const Width& w) { return w.kind == kindOf(id); });
    return found == widths.end() ? nullptr : &*found;
}

bool validValue(CEPROPID id, std::size_t size) {
    const Width* width = widthOf(id);
    if (width == nullptr || size > maxPropertyBytes) return false;
    if (width->bytes == anyWidth) return true;
    return width->bytes == evenWidth ? size % 2 == 0 : size == width->bytes;
}

std::uint32_t littleEndian(std::string_view bytes) {
    std::uint32_t value = 0;
    for (std::size_t i = bytes.size(); i-- > 0;) {
        value = value << 8 | static_cast<BYTE>(bytes[i]);
    }
    return value;
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
    return edit.remove ? widthOf(edit.id) != nullptr : validValue(edit.id, edit.bytes.size());
}

}  // namespace

std::optional<PropertyView> RecordReader::next() {
    if (rest_.empty() || damaged_) return std::nullopt;
    damaged_ = true;  // until the property has proved whole
    if (rest_.size() < headerBytes) return std::nullopt;
    const CEPROPID id = littleEndian(rest_.substr(0, 4));
    const std::size_t size = littleEndian(rest_.substr(4, 2));
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
