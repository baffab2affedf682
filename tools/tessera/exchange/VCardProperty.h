#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace Tool {

/// The versions differ in how lines are folded and values are written.
enum class VCardVersion { v21, v30, v40 };

/// A line of a card taken apart, its value as the file has it: in some encoding, maybe in quoted-printable.
struct VCardProperty {
    struct Parameter {
        std::string name;  ///< In upper case; "TYPE" for a word without a name, as old cards have it.
        std::string value;
    };

    int line = 0;  ///< In the file, where it begins.
    std::string group;
    std::string name;  ///< In upper case.
    std::vector<Parameter> parameters;
    std::string value;

    /// The first value of a parameter; empty when there is none.
    std::string_view parameter(std::string_view wanted) const;
    /// Every word of its types, in upper case.
    std::set<std::string> types() const;
    bool isQuotedPrintable() const;
    bool isBase64() const;
};

/// Nothing for a line that is none of a card.
std::optional<VCardProperty> propertyOf(std::string_view line);

/// The part of a line in front of the colon that its value stands behind; all of a line that has none.
std::string_view frontOf(std::string_view line);

/// A line such as "BEGIN:VCARD", in any case and with any blanks. A byte-order mark may stand before it, as in files
/// that were put together of several.
bool beginsCard(std::string_view line);
/// The same of "END:VCARD".
bool endsCard(std::string_view line);

std::string upperCase(std::string_view ascii);

}  // namespace Tool
