#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "VCardProperty.h"
#include "tessera/platform/base/Types.h"

namespace Tool {

/// What a property says, or why that cannot be read.
struct VCardText {
    WString text;         ///< Still with its escapes.
    std::string problem;  ///< Empty when the text can be read.
};

/// What is known of the encoding of a file's texts.
struct FileEncoding {
    std::string name;     ///< Empty: nothing.
    bool isSaid = false;  ///< By the user, who knows better than the bytes.
};

/// Undoes quoted-printable and the encoding of characters: the one that the property names, else UTF-8,
/// that of the file, or what the bytes themselves give away. Every end of a line becomes a line feed.
VCardText textOf(const VCardProperty& property, const FileEncoding& fileEncoding);

/// The bytes of a quoted-printable text; false when it is none.
bool decodeQuotedPrintable(std::string_view text, std::string& bytes);

WString unescaped(WStringView text, VCardVersion version);

/// The parts of a value between separators that are not escaped, still with their own escapes.
std::vector<WString> rawPartsOf(WStringView text, WCHAR separator, VCardVersion version);
/// The same without their escapes.
std::vector<WString> partsOf(WStringView text, WCHAR separator, VCardVersion version);

}  // namespace Tool
