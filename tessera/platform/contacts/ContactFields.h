#pragma once

#include <array>
#include <cstddef>
#include <optional>

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
    WStringView name;
    CEPROPID property;
};

inline constexpr std::array contactFields = {
    ContactFieldDef{ContactField::fileAs, TEXT("FileAs"), ContactProperty::fileAs},
    ContactFieldDef{ContactField::firstName, TEXT("FirstName"), ContactProperty::firstName},
    ContactFieldDef{ContactField::lastName, TEXT("LastName"), ContactProperty::lastName},
    ContactFieldDef{ContactField::categories, TEXT("Categories"), ContactProperty::categories},
    ContactFieldDef{ContactField::mobileTelephoneNumber, TEXT("MobileTelephoneNumber"),
                    ContactProperty::mobileTelephoneNumber},
    ContactFieldDef{ContactField::homeTelephoneNumber, TEXT("HomeTelephoneNumber"),
                    ContactProperty::homeTelephoneNumber},
    ContactFieldDef{ContactField::businessTelephoneNumber, TEXT("BusinessTelephoneNumber"),
                    ContactProperty::businessTelephoneNumber},
    ContactFieldDef{ContactField::email1Address, TEXT("Email1Address"), ContactProperty::email1Address},
    ContactFieldDef{ContactField::pagerNumber, TEXT("PagerNumber"), ContactProperty::pagerNumber},
    ContactFieldDef{ContactField::businessFaxNumber, TEXT("BusinessFaxNumber"), ContactProperty::businessFaxNumber},
    ContactFieldDef{ContactField::body, TEXT("Body"), ContactProperty::body},
    ContactFieldDef{ContactField::birthday, TEXT("Birthday"), ContactProperty::birthday},
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

constexpr bool equalInAnyCase(WStringView left, WStringView right) {
    if (left.size() != right.size()) return false;
    for (std::size_t i = 0; i < left.size(); ++i) {
        if (asciiUpper(left[i]) != asciiUpper(right[i])) return false;
    }
    return true;
}

/// The field of that name, in any case.
constexpr std::optional<ContactField> contactFieldNamed(WStringView name) {
    for (const ContactFieldDef& definition : contactFields) {
        if (equalInAnyCase(definition.name, name)) return definition.field;
    }
    return std::nullopt;
}

}  // namespace Platform
