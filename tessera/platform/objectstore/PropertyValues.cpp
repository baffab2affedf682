#include "tessera/platform/objectstore/PropertyValues.h"

#include <bit>
#include <cstring>

namespace Platform {
namespace {

std::uint64_t numberOf(std::string_view bytes) {
    std::uint64_t number = 0;
    for (std::size_t i = bytes.size(); i-- > 0;) {
        number = number << 8 | static_cast<BYTE>(bytes[i]);
    }
    return number;
}

/// The room that a value takes behind the CEPROPVALs, kept even so that texts stay aligned.
std::size_t tailOf(const PropertyView& property) {
    switch (kindOf(property.id)) {
        case kindText:
            return property.bytes.size() + sizeof(WCHAR);
        case kindBlob:
            return property.bytes.size() + property.bytes.size() % 2;
        default:
            return 0;
    }
}

/// Copies a text or a blob to `tail`; a text gets its zero character.
BYTE* copyTail(const PropertyView& property, BYTE* tail) {
    std::memset(tail, 0, tailOf(property));
    if (!property.bytes.empty()) std::memcpy(tail, property.bytes.data(), property.bytes.size());
    return tail;
}

void setValue(const PropertyView& property, BYTE* tail, CEVALUNION& value) {
    switch (kindOf(property.id)) {
        case kindI2:
            value.iVal = static_cast<std::int16_t>(numberOf(property.bytes));
            return;
        case kindUI2:
            value.uiVal = static_cast<std::uint16_t>(numberOf(property.bytes));
            return;
        case kindI4:
            value.lVal = static_cast<std::int32_t>(numberOf(property.bytes));
            return;
        case kindUI4:
            value.ulVal = static_cast<std::uint32_t>(numberOf(property.bytes));
            return;
        case kindR8:
            value.dblVal = std::bit_cast<double>(numberOf(property.bytes));
            return;
        case kindBool:
            value.boolVal = numberOf(property.bytes) != 0 ? TRUE : FALSE;
            return;
        case kindFileTime:
            value.filetime = fileTimeOf(numberOf(property.bytes));
            return;
        case kindText:
            value.lpwstr = reinterpret_cast<WCHAR*>(copyTail(property, tail));
            return;
        case kindBlob:
            value.blob = {static_cast<DWORD>(property.bytes.size()), copyTail(property, tail)};
            return;
    }
}

}  // namespace

void StoredValue::setNumber(std::uint64_t number, std::size_t width) {
    inPlace_ = true;
    width_ = width;
    for (std::size_t i = 0; i < width; ++i) {
        number_[i] = static_cast<char>(static_cast<BYTE>(number >> (8 * i)));
    }
}

DWORD StoredValue::set(const CEPROPVAL& value) {
    switch (kindOf(value.propid)) {
        case kindI2:
            setNumber(static_cast<std::uint16_t>(value.val.iVal), 2);
            return ERROR_SUCCESS;
        case kindUI2:
            setNumber(value.val.uiVal, 2);
            return ERROR_SUCCESS;
        case kindI4:
            setNumber(static_cast<std::uint32_t>(value.val.lVal), 4);
            return ERROR_SUCCESS;
        case kindUI4:
            setNumber(value.val.ulVal, 4);
            return ERROR_SUCCESS;
        case kindR8:
            setNumber(std::bit_cast<std::uint64_t>(value.val.dblVal), 8);
            return ERROR_SUCCESS;
        case kindBool:
            setNumber(value.val.boolVal != FALSE, 2);
            return ERROR_SUCCESS;
        case kindFileTime:
            setNumber(ticksOf(value.val.filetime), 8);
            return ERROR_SUCCESS;
        case kindText:
            if (value.val.lpwstr == nullptr) return ERROR_INVALID_PARAMETER;
            inPlace_ = false;
            outside_ = packedText(value.val.lpwstr);
            return ERROR_SUCCESS;
        case kindBlob:
            if (value.val.blob.lpb == nullptr && value.val.blob.dwCount != 0) return ERROR_INVALID_PARAMETER;
            inPlace_ = false;
            outside_ = {reinterpret_cast<const char*>(value.val.blob.lpb), value.val.blob.dwCount};
            return ERROR_SUCCESS;
    }
    return ERROR_INVALID_PARAMETER;
}

DWORD StoredEdits::set(std::span<const CEPROPVAL> props) {
    values_.resize(props.size());
    edits_.clear();
    edits_.reserve(props.size());
    for (std::size_t i = 0; i < props.size(); ++i) {
        Edit edit{props[i].propid, {}, (props[i].wFlags & CEDB_PROPDELETE) != 0};
        if (!edit.remove) {
            if (const DWORD error = values_[i].set(props[i]); error != ERROR_SUCCESS) return error;
            edit.bytes = values_[i].bytes();
        }
        edits_.push_back(edit);
    }
    return ERROR_SUCCESS;
}

DWORD measureRecord(std::string_view packed, BufferNeed& need) {
    need = {};
    RecordReader reader(packed);
    while (const auto property = reader.next()) {
        ++need.props;
        need.bytes += sizeof(CEPROPVAL) + tailOf(*property);
    }
    return reader.damaged() ? ERROR_FILE_CORRUPT : ERROR_SUCCESS;
}

void unpackRecord(std::string_view packed, const BufferNeed& need, BYTE* buffer) {
    BYTE* tail = buffer + need.props * sizeof(CEPROPVAL);
    RecordReader reader(packed);
    for (BYTE* at = buffer; const auto property = reader.next(); at += sizeof(CEPROPVAL)) {
        CEPROPVAL value;
        value.propid = property->id;
        setValue(*property, tail, value.val);
        std::memcpy(at, &value, sizeof value);
        tail += tailOf(*property);
    }
}

}  // namespace Platform
