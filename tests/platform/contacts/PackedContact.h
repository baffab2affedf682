#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "tessera/platform/base/COleDateTime.h"
#include "tessera/platform/contacts/ContactFields.h"
#include "tessera/platform/engine/Record.h"

namespace testing_support {

/// Builds the packed record of a contact, as the store would keep it.
class PackedContact {
public:
    PackedContact& with(Platform::ContactField field, WStringView text) {
        std::string bytes;
        for (const WCHAR unit : text) {
            bytes += static_cast<char>(unit & 0xFF);
            bytes += static_cast<char>(unit >> 8);
        }
        return withBytes(field, bytes);
    }

    PackedContact& bornOn(int year, int month, int day) {
        FILETIME time;
        if (!fileTimeOfDate(COleDateTime(year, month, day).date(), time)) throw std::invalid_argument("no such day");
        std::string bytes;
        for (int shift = 0; shift < 64; shift += 8)
            bytes += static_cast<char>(ticksOf(time) >> shift & 0xFF);
        return withBytes(Platform::ContactField::birthday, bytes);
    }

    std::string_view packed() const { return packed_; }

private:
    PackedContact& withBytes(Platform::ContactField field, std::string_view bytes) {
        const Platform::Edit edit{Platform::definitionOf(field).property, bytes, false};
        std::string result;
        if (Platform::applyEdits(packed_, {&edit, 1}, result) != ERROR_SUCCESS) throw std::invalid_argument("property");
        packed_ = result;
        return *this;
    }

    std::string packed_;
};

}  // namespace testing_support
