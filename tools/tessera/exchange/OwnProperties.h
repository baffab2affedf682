#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "ContactDraft.h"
#include "tessera/platform/base/Types.h"

namespace Tool {

/// A property of cards for a field that only our phone books have.
struct OwnProperty {
    std::string_view name;
    PhoneBook::PBDBAttrID field;
};

inline constexpr std::array<OwnProperty, 6> ownProperties = {{
    {"X-TESSERA-AVATAR", PhoneBook::PBDBATTR_AVATAR},
    {"X-TESSERA-PHOTO", PhoneBook::PBDBATTR_PHOTO},
    {"X-TESSERA-BELL", PhoneBook::PBDBATTR_BELL},
    {"X-TESSERA-CALLING-SCREEN", PhoneBook::PBDBATTR_CALLINGSCREEN},
    {"X-TESSERA-SPEED-DIAL", PhoneBook::PBDBATTR_PRIVATE},
    {"X-TESSERA-PRIMARY", PhoneBook::PBDBATTR_PRIMARYTELNO},
}};
/// Where the categories of a card do not give the group and the categories just as they are.
inline constexpr std::string_view ownGroup = "X-TESSERA-GROUP";
inline constexpr std::string_view ownCategories = "X-TESSERA-CATEGORIES";

/// Those of one card.
struct OwnFields {
    std::optional<WString> group;
    std::optional<WString> categories;
};

/// Whether it is one of these.
bool isOwnProperty(std::string_view name);

/// Puts one into the draft, or what of it cannot be put there before all is read into `fields`.
void takeOwnProperty(std::string_view name, const WString& text, ContactDraft& draft, OwnFields& fields);

/// Puts a text into a field that is a text or a number; a text that is no number there becomes a remark.
void putText(ContactDraft& draft, PhoneBook::PBDBAttrID field, WStringView text);

}  // namespace Tool
