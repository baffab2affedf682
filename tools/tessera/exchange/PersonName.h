#pragma once

#include <string>
#include <string_view>

namespace Tool {

/// A name in parts, as cards and tables have it.
struct PersonName {
    std::u16string family{};
    std::u16string given{};
    std::u16string middle{};
    std::u16string prefix{};
    std::u16string suffix{};

    /// The whole name: in Korean, Chinese and Japanese the family name first and without blanks, else last.
    std::u16string whole() const;
};

/// Takes a whole name apart the way the phone book itself does: "Kim, Anna" and "Anna Kim" have the family name Kim,
/// a name of one word is all given name, and in a script other than Latin the family name comes first.
PersonName partsOfName(std::u16string_view name);

}  // namespace Tool
