#pragma once

#include <cstddef>
#include <variant>
#include <vector>

#include "tessera/Export.h"
#include "tessera/platform/base/CString.h"
#include "tessera/platform/base/Collections.h"
#include "tessera/platform/objectstore/CeDB.h"

/// One typed property of a record: an ident, a type, a flags word, and a value of that type.
///
/// A property made without a value holds the zero value of its type. The default property is empty: it
/// stands for "no property" wherever one is answered. Reading a value as another type gives that type's
/// zero value. Value semantics.
class TESSERA_API CCeDBProp : public CObject {
public:
    /// The nine types; the number is not that of the CEVT kind.
    enum enType : int {
        typeI2 = 0,        ///< 16 bits, signed.
        typeUI2 = 1,       ///< 16 bits, unsigned.
        typeI4 = 2,        ///< 32 bits, signed.
        typeUI4 = 3,       ///< 32 bits, unsigned.
        typeFileTime = 4,  ///< A FILETIME.
        typeText = 5,      ///< UTF-16 text.
        typeBlob = 6,      ///< Bytes.
        typeBool = 7,      ///< True or false.
        typeR8 = 8,        ///< A double.
    };

    CCeDBProp() = default;
    /// A property of that type, with its zero value.
    explicit CCeDBProp(enType type, WORD ident = 0, WORD flags = 0);

    /// @{
    /// A property of that ident, type and value, without flags. Bytes are copied.
    static CCeDBProp ofI2(WORD ident, std::int16_t value);
    static CCeDBProp ofUI2(WORD ident, WORD value);
    static CCeDBProp ofI4(WORD ident, LONG value);
    static CCeDBProp ofUI4(WORD ident, DWORD value);
    static CCeDBProp ofFileTime(WORD ident, const FILETIME& value);
    static CCeDBProp ofText(WORD ident, CString value);
    static CCeDBProp ofBlob(WORD ident, const void* bytes, std::size_t count);
    static CCeDBProp ofBool(WORD ident, bool value);
    static CCeDBProp ofR8(WORD ident, double value);
    /// @}
    /// The property that a database handed out; empty when its kind is not one of the nine.
    static CCeDBProp ofPropVal(const CEPROPVAL& value);

    /// True for the default property only.
    bool isEmpty() const { return std::holds_alternative<std::monostate>(value_); }
    enType getType() const { return type_; }  ///< typeUI4 for the empty property.
    WORD getIdent() const { return ident_; }  ///< The high half of its CEPROPID.
    WORD getFlags() const { return flags_; }  ///< CEDB_SORT_*, or CEDB_PROPDELETE.
    /// CEDB_SORT_* for an order, CEDB_PROPDELETE to take the property away in a write.
    void setFlags(WORD flags) { flags_ = flags; }
    /// The ident in the high 16 bits, the CEVT kind of the type in the low 16 bits; 0 for a type that is none
    /// of the nine.
    CEPROPID getPropId() const;

    /// @{
    /// The value; the zero value of that type when it is of another.
    std::int16_t getI2() const;
    WORD getUI2() const;
    LONG getI4() const;
    DWORD getUI4() const;
    FILETIME getFileTime() const;
    /// The same text object at each call, so that a caller can tell one value from an equal one.
    const CString& getText() const;
    const std::vector<std::byte>& getBlob() const;
    bool getBool() const;
    double getR8() const;
    /// @}

    /// The form in which a database takes it; it points into this property.
    CEPROPVAL propVal() const;

    /// The same ident, type and value; the flags do not count.
    friend bool operator==(const CCeDBProp& left, const CCeDBProp& right) {
        return left.getPropId() == right.getPropId() && left.value_ == right.value_;
    }

private:
    using Value = std::variant<std::monostate, std::int16_t, WORD, LONG, DWORD, FILETIME, CString,
                               std::vector<std::byte>, bool, double>;

    CCeDBProp(enType type, WORD ident, Value value);

    enType type_ = typeUI4;
    WORD ident_ = 0;
    WORD flags_ = 0;
    Value value_;
};
