#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "tessera/platform/engine/Record.h"
#include "tessera/platform/objectstore/CeDB.h"

// Between the CEPROPVALs of the calls and the bytes that are stored.

namespace Platform {

/// The stored form of one value. Numbers are kept here; texts and blobs stay where the caller has them.
class StoredValue {
public:
    /// ERROR_INVALID_PARAMETER when the value points nowhere or its kind does not exist.
    [[nodiscard]] DWORD set(const CEPROPVAL& value);
    /// Valid while this and the value that it was made of are.
    std::string_view bytes() const { return inPlace_ ? std::string_view(number_.data(), width_) : outside_; }

private:
    void setNumber(std::uint64_t number, std::size_t width);

    std::array<char, 8> number_{};
    std::size_t width_ = 0;
    bool inPlace_ = true;
    std::string_view outside_;
};

/// The edits that a write asks for. Valid while the properties are.
class StoredEdits {
public:
    [[nodiscard]] DWORD set(std::span<const CEPROPVAL> props);
    std::span<const Edit> edits() const { return edits_; }

private:
    std::vector<StoredValue> values_;
    std::vector<Edit> edits_;
};

/// What a record takes in a buffer of CEPROPVALs.
struct BufferNeed {
    std::size_t props = 0;
    std::size_t bytes = 0;
};
/// ERROR_FILE_CORRUPT when the bytes are not a record.
[[nodiscard]] DWORD measureRecord(std::string_view packed, BufferNeed& need);

/// Writes the CEPROPVALs of a record, then what they point to, into a buffer as large as measured.
void unpackRecord(std::string_view packed, const BufferNeed& need, BYTE* buffer);

}  // namespace Platform
