#include "tessera/platform/objectstore/CCeDBProp.h"

#include <array>
#include <utility>

namespace {

/// The kind of each type, in the order of enType.
constexpr std::array<WORD, 9> kinds = {CEVT_I2,     CEVT_UI2,  CEVT_I4,   CEVT_UI4, CEVT_FILETIME,
                                       CEVT_LPWSTR, CEVT_BLOB, CEVT_BOOL, CEVT_R8};
static_assert(kinds[CCeDBProp::typeI2] == CEVT_I2 && kinds[CCeDBProp::typeUI2] == CEVT_UI2);
static_assert(kinds[CCeDBProp::typeI4] == CEVT_I4 && kinds[CCeDBProp::typeUI4] == CEVT_UI4);
static_assert(kinds[CCeDBProp::typeFileTime] == CEVT_FILETIME && kinds[CCeDBProp::typeText] == CEVT_LPWSTR);
static_assert(kinds[CCeDBProp::typeBlob] == CEVT_BLOB && kinds[CCeDBProp::typeBool] == CEVT_BOOL);
static_assert(kinds[CCeDBProp::typeR8] == CEVT_R8);

constexpr WORD kindOfPropId(CEPROPID id) {
    return static_cast<WORD>(id);
}

template <class Type, class Value>
Type valueAs(const Value& value) {
    const Type* held = std::get_if<Type>(&value);
    return held == nullptr ? Type{} : *held;
}

/// The same, for the values that are answered by reference.
template <class Type, class Value>
const Type& heldAs(const Value& value) {
    static const Type nothing;
    const Type* held = std::get_if<Type>(&value);
    return held == nullptr ? nothing : *held;
}

std::vector<std::byte> bytesFrom(const void* bytes, std::size_t count) {
    const auto* first = static_cast<const std::byte*>(bytes);
    return first == nullptr ? std::vector<std::byte>() : std::vector<std::byte>(first, first + count);
}

}  // namespace

CCeDBProp::CCeDBProp(enType type, WORD ident, WORD flags) : type_(type), ident_(ident), flags_(flags) {
    switch (type) {
        case typeI2:
            value_ = std::int16_t{0};
            break;
        case typeUI2:
            value_ = WORD{0};
            break;
        case typeI4:
            value_ = LONG{0};
            break;
        case typeUI4:
            value_ = DWORD{0};
            break;
        case typeFileTime:
            value_ = FILETIME{};
            break;
        case typeText:
            value_ = CString();
            break;
        case typeBlob:
            value_ = std::vector<std::byte>();
            break;
        case typeBool:
            value_ = false;
            break;
        case typeR8:
            value_ = 0.0;
            break;
    }
}

CCeDBProp::CCeDBProp(enType type, WORD ident, Value value) : type_(type), ident_(ident), value_(std::move(value)) {}

CCeDBProp CCeDBProp::ofI2(WORD ident, std::int16_t value) {
    return {typeI2, ident, Value(value)};
}

CCeDBProp CCeDBProp::ofUI2(WORD ident, WORD value) {
    return {typeUI2, ident, Value(value)};
}

CCeDBProp CCeDBProp::ofI4(WORD ident, LONG value) {
    return {typeI4, ident, Value(value)};
}

CCeDBProp CCeDBProp::ofUI4(WORD ident, DWORD value) {
    return {typeUI4, ident, Value(value)};
}

CCeDBProp CCeDBProp::ofFileTime(WORD ident, const FILETIME& value) {
    return {typeFileTime, ident, Value(value)};
}

CCeDBProp CCeDBProp::ofText(WORD ident, CString value) {
    return {typeText, ident, Value(std::move(value))};
}

CCeDBProp CCeDBProp::ofBlob(WORD ident, const void* bytes, std::size_t count) {
    return {typeBlob, ident, Value(bytesFrom(bytes, count))};
}

CCeDBProp CCeDBProp::ofBool(WORD ident, bool value) {
    return {typeBool, ident, Value(value)};
}

CCeDBProp CCeDBProp::ofR8(WORD ident, double value) {
    return {typeR8, ident, Value(value)};
}

CCeDBProp CCeDBProp::ofPropVal(const CEPROPVAL& value) {
    const WORD ident = identOf(value.propid);
    switch (kindOfPropId(value.propid)) {
        case CEVT_I2:
            return ofI2(ident, value.val.iVal);
        case CEVT_UI2:
            return ofUI2(ident, value.val.uiVal);
        case CEVT_I4:
            return ofI4(ident, value.val.lVal);
        case CEVT_UI4:
            return ofUI4(ident, value.val.ulVal);
        case CEVT_FILETIME:
            return ofFileTime(ident, value.val.filetime);
        case CEVT_LPWSTR:
            return ofText(ident, CString(value.val.lpwstr));
        case CEVT_BLOB:
            return ofBlob(ident, value.val.blob.lpb, value.val.blob.dwCount);
        case CEVT_BOOL:
            return ofBool(ident, value.val.boolVal != FALSE);
        case CEVT_R8:
            return ofR8(ident, value.val.dblVal);
        default:
            return {};
    }
}

CEPROPID CCeDBProp::getPropId() const {
    const auto type = static_cast<std::size_t>(type_);
    return type < kinds.size() ? makePropId(ident_, kinds[type]) : 0;
}

std::int16_t CCeDBProp::getI2() const {
    return valueAs<std::int16_t>(value_);
}

WORD CCeDBProp::getUI2() const {
    return valueAs<WORD>(value_);
}

LONG CCeDBProp::getI4() const {
    return valueAs<LONG>(value_);
}

DWORD CCeDBProp::getUI4() const {
    return valueAs<DWORD>(value_);
}

FILETIME CCeDBProp::getFileTime() const {
    return valueAs<FILETIME>(value_);
}

const CString& CCeDBProp::getText() const {
    return heldAs<CString>(value_);
}

const std::vector<std::byte>& CCeDBProp::getBlob() const {
    return heldAs<std::vector<std::byte>>(value_);
}

bool CCeDBProp::getBool() const {
    return valueAs<bool>(value_);
}

double CCeDBProp::getR8() const {
    return valueAs<double>(value_);
}

CEPROPVAL CCeDBProp::propVal() const {
    CEPROPVAL value;
    value.propid = isEmpty() ? 0 : getPropId();
    value.wFlags = flags_;
    CEVALUNION& val = value.val;
    switch (type_) {
        case typeI2:
            val.iVal = getI2();
            break;
        case typeUI2:
            val.uiVal = getUI2();
            break;
        case typeI4:
            val.lVal = getI4();
            break;
        case typeUI4:
            val.ulVal = getUI4();
            break;
        case typeFileTime:
            val.filetime = getFileTime();
            break;
        case typeText:  // the calls read what it points to and do not write
            val.lpwstr = const_cast<WCHAR*>(static_cast<const WCHAR*>(getText()));
            break;
        case typeBlob:
            val.blob.dwCount = static_cast<DWORD>(getBlob().size());
            val.blob.lpb = reinterpret_cast<BYTE*>(const_cast<std::byte*>(getBlob().data()));
            break;
        case typeBool:
            val.boolVal = getBool() ? TRUE : FALSE;
            break;
        case typeR8:
            val.dblVal = getR8();
            break;
    }
    return value;
}
