#pragma once

#include "tessera/platform/base/Types.h"

namespace Tool {

/// A name in parts, as cards and tables have it.
struct PersonName {
    WString family{};
    WString given{};
    WString middle{};
    WString prefix{};
    WString suffix{};

    /// The whole name: in Korean, Chinese and Japanese the family name first and without blanks, else last.
    WString whole() const;
};

/// Takes a whole name apart the way the phone book itself does: "Kim, Anna" and "Anna Kim" have the family name Kim,
/// a name of one word is all given name, and in a script other than Latin the family name comes first.
PersonName partsOfName(WStringView name);

}  // namespace Tool
