#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

#include "tessera/platform/base/Types.h"
#include "tessera/platform/contacts/ContactProperties.h"

namespace Platform {

/// The fields of a contact; the values index `contactFields`.
enum class ContactField : std::size_t {
    fileAs,
    firstName,
    lastName,
    categories,
    mobileTelephoneNumber,
    homeTelephoneNumber,
    businessTelephoneNumber,
    email1Address,
    pagerNumber,
    businessFaxNumber,
    body,
    birthday,
};

struct ContactFieldDef {
    ContactField field;
    std::u16string_view name;
    CEPROPID property;
};

inline constexpr std::array contactFields = {
    ContactFieldDef{ContactField::fileAs, u"FileAs", ContactProperty::fileAs},
    ContactFieldDef{ContactField::firstName, u"FirstName", ContactProperty::firstName},
    ContactFieldDef{ContactField::lastName, u"LastName", ContactProperty::lastName},
    ContactFieldDef{ContactField::categories, u"Categories", ContactProperty::categories},
    ContactFieldDef{ContactField::mobileTelephoneNumber, u"MobileTelephoneNumber",
                    ContactProperty::mobileTelephoneNumber},
    ContactFieldDef{ContactField::homeTelephoneNumber, u"HomeTelephoneNumber", ContactProperty::homeTelephoneNumber},
    ContactFieldDef{ContactField::businessTelephoneNumber, u"BusinessTelephoneNumber",
                    ContactProperty::businessTelephoneNumber},
    ContactFieldDef{ContactField::email1Address, u"Email1Address", ContactProperty::email1Address},
    ContactFieldDef{ContactField::pagerNumber, u"PagerNumber", ContactProperty::pagerNumber},
    ContactFieldDef{ContactField::businessFaxNumber, u"BusinessFaxNumber", ContactProperty::businessFaxNumber},
    ContactFieldDef{ContactField::body, u"Body", ContactProperty::body},
    ContactFieldDef{ContactField::birthday, u"Birthday", ContactProperty::birthday},
};

constexpr bool contactFieldsStandInOrder() {
    for (std::size_t i = 0; i < contactFields.size(); ++i) {
        if (contactFields[i].field != static_cast<ContactField>(i)) return false;
    }
    return true;
}
static_assert(contactFieldsStandInOrder());

constexpr const ContactFieldDef& definitionOf(ContactField field) {
    return contactFields[static_cast<std::size_t>(field)];
}

/// The text in upper case as far as ASCII goes: what the letter case of names and keywords is judged by.
constexpr WCHAR asciiUpper(WCHAR unit) {
    return unit >= u'a' && unit <= u'z' ? static_cast<WCHAR>(unit - u'a' + u'A') : unit;
}

constexpr bool equalInAnyCase(std::u16string_view left, std::u16string_view right) {
    if (left.size() != right.size()) return false;
    for (std::size_t i = 0; i < left.size(); ++i) {
        if (asciiUpper(left[i]) != asciiUpper(right[i])) return false;
    }
    return true;
}

/// The field of that name, in any case.
constexpr std::optional<ContactField> contactFieldNamed(std::u16string_view name) {
    for (const ContactFieldDef& definition : contactFields) {
        if (equalInAnyCase(definition.name, name)) return definition.field;
    }
    return std::nullopt;
}

}  // namespace Platform
