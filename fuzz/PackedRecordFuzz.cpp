// Packed records. The first two bytes of the input are the length of the record, which follows; the rest is
// edits: a byte whose lowest bit says "remove", an identifier, a length, and, unless it removes, the value.

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "fuzz/FuzzedInput.h"
#include "tessera/platform/base/Results.h"
#include "tessera/platform/engine/Record.h"

using fuzz::FuzzedInput;
using fuzz::require;
using Platform::Edit;
using Platform::PropertyView;

namespace {

using Properties = std::vector<std::pair<CEPROPID, std::string>>;

std::uint32_t littleEndian(FuzzedInput& input, int width) {
    std::uint32_t value = 0;
    for (int i = 0; i < width; ++i)
        value |= static_cast<std::uint32_t>(input.byte()) << (8 * i);
    return value;
}

bool isAllowed(CEPROPID id, std::size_t size) {
    switch (id & 0xFFFF) {
        case 2:
        case 11:
        case 18:
            return size == 2;
        case 3:
        case 19:
            return size == 4;
        case 5:
        case 64:
            return size == 8;
        case 31:
            return size % 2 == 0 && size <= 65'471;
        case 65:
            return size <= 65'471;
        default:
            return false;
    }
}

/// What a record holds; nothing beyond the first property that is not whole.
Properties plainlyRead(std::string_view packed, bool& whole) {
    Properties properties;
    FuzzedInput input(reinterpret_cast<const std::uint8_t*>(packed.data()), packed.size());
    whole = true;
    for (std::size_t left = packed.size(); left > 0;) {
        const CEPROPID id = littleEndian(input, 4);
        const std::size_t size = littleEndian(input, 2);
        whole = left >= 6 && left - 6 >= size && isAllowed(id, size);
        if (!whole) break;
        properties.emplace_back(id, input.bytes(size));
        left -= 6 + size;
    }
    return properties;
}

auto placeOf(Properties& properties, CEPROPID id) {
    return std::ranges::find(properties, id, &Properties::value_type::first);
}

Properties read(std::string_view packed, bool& whole) {
    Properties properties;
    Platform::RecordReader reader(packed);
    while (const auto property = reader.next())
        properties.emplace_back(property->id, property->bytes);
    whole = !reader.damaged();
    return properties;
}

std::vector<Edit> editsThatWrite(const Properties& properties) {
    std::vector<Edit> edits;
    for (const auto& [id, bytes] : properties)
        edits.push_back({id, bytes, false});
    return edits;
}

void checkReading(std::string_view packed, Properties& properties, bool whole) {
    bool readWhole = false;
    require(read(packed, readWhole) == properties, "the reader sees what a plain reading sees");
    require(readWhole == whole, "and knows a damaged record");
    std::set<CEPROPID> ids;
    for (const auto& [id, bytes] : properties) {
        const auto found = Platform::findProperty(packed, id);
        require(found.has_value() && found->id == id, "a property that is there is found");
        require(found->bytes == placeOf(properties, id)->second, "with its value");
        ids.insert(id);
    }
    if (!whole || ids.size() != properties.size()) return;

    std::string written = "from before";
    require(Platform::applyEdits({}, editsThatWrite(properties), written) == ERROR_SUCCESS, "what was read is written");
    require(written == packed, "and gives the same record");
}

void checkEdits(std::string_view packed, Properties properties, bool whole, const std::vector<Edit>& edits) {
    bool allowed = true;
    std::size_t valueBytes = 0;
    for (const Edit& edit : edits) {
        static constexpr std::size_t sizes[] = {0, 2, 4, 8};
        allowed = allowed && (edit.remove ? std::ranges::any_of(sizes, [&](auto n) { return isAllowed(edit.id, n); })
                                          : isAllowed(edit.id, edit.bytes.size()));
        const auto place = placeOf(properties, edit.id);
        const bool there = place != properties.end();
        if (edit.remove) {
            if (there) properties.erase(place);
        } else if (there) {
            place->second = edit.bytes;
        } else {
            properties.emplace_back(edit.id, edit.bytes);
        }
    }
    for (const auto& [id, bytes] : properties)
        valueBytes += bytes.size();

    std::string result = "from before";
    const DWORD error = Platform::applyEdits(packed, edits, result);
    const bool fits = valueBytes <= Platform::maxRecordBytes;
    require((error == ERROR_SUCCESS) == (allowed && whole && fits), "only sound edits of a sound record are made");
    if (error != ERROR_SUCCESS) {
        require(result == "from before", "edits that are not made leave the result alone");
        require(error == (allowed && !whole ? ERROR_FILE_CORRUPT : ERROR_INVALID_PARAMETER), "and say why");
        return;
    }
    bool resultWhole = false;
    require(read(result, resultWhole) == properties && resultWhole, "edits do what they say, in order");
    std::string again;
    require(Platform::applyEdits(result, {}, again) == ERROR_SUCCESS && again == result, "no edit changes nothing");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedInput input(data, size);
    const std::size_t recordSize = littleEndian(input, 2);
    const std::string_view packed = input.bytes(recordSize);
    bool whole = false;
    Properties properties = plainlyRead(packed, whole);
    checkReading(packed, properties, whole);

    std::vector<Edit> edits;
    while (!input.atEnd()) {
        Edit edit;
        edit.remove = (input.byte() & 1) != 0;
        edit.id = littleEndian(input, 4);
        if (!edit.remove) {
            const std::size_t valueSize = littleEndian(input, 2);
            edit.bytes = input.bytes(valueSize);
        }
        edits.push_back(edit);
    }
    checkEdits(packed, std::move(properties), whole, edits);
    return 0;
}
