#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "tessera/platform/base/Types.h"

namespace Platform {

/// What a stored property can be: the low word of its identifier.
enum PropertyKind : WORD {
    kindI2 = 2,
    kindI4 = 3,
    kindR8 = 5,
    kindBool = 11,
    kindUI2 = 18,
    kindUI4 = 19,
    kindText = 31,
    kindFileTime = 64,
    kindBlob = 65,
};

constexpr PropertyKind kindOf(CEPROPID id) {
    return static_cast<PropertyKind>(static_cast<WORD>(id));
}

/// A property's value is bytes, little-endian, whose meaning its kind gives: 2 bytes for I2, UI2 and
/// BOOL, 4 for I4 and UI4, 8 for R8 and FILETIME, UTF-16 code units without a terminator for text.
struct PropertyView {
    CEPROPID id = 0;
    std::string_view bytes;

    friend bool operator==(const PropertyView&, const PropertyView&) = default;
};

/// The bytes that stand for a text: its own, which must outlive them.
std::string_view packedText(WStringView text);
WString unpackedText(std::string_view bytes);

/// One change to a record: a property set, or taken away.
struct Edit {
    CEPROPID id = 0;
    std::string_view bytes;
    bool remove = false;
};

inline constexpr std::size_t maxPropertyBytes = 65'471;
inline constexpr std::size_t maxRecordBytes = 131'072;
inline constexpr std::size_t maxProperties = 65'535;  ///< What the calls can count.

/// Reads the properties of a packed record, in the order in which they were first written.
/// The views point into the packed bytes, which must outlive them.
class RecordReader {
public:
    explicit RecordReader(std::string_view packed) : rest_(packed) {}

    /// The next property; nothing at the end, and nothing when the bytes are damaged.
    std::optional<PropertyView> next();
    /// True when the bytes ended or continued in a way that no record does.
    bool damaged() const { return damaged_; }

private:
    std::string_view rest_;
    bool damaged_ = false;
};

/// The property of that identifier, if the packed record has it.
std::optional<PropertyView> findProperty(std::string_view packed, CEPROPID id);

/// The record after the edits: a named property is replaced where it stands or added at the end, the
/// others stay. ERROR_INVALID_PARAMETER, and `result` untouched, when a value has a wrong width for its
/// kind, the kind is unknown, or a property or the record would be larger than the limits or the record have
/// too many properties.
[[nodiscard]] DWORD applyEdits(std::string_view packed, std::span<const Edit> edits, std::string& result);

}  // namespace Platform
