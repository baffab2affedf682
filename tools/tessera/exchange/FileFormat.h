#pragma once

#include <map>
#include <string>

#include "SourceText.h"

namespace Tool {

/// What a file of contacts is written in.
enum class FileFormat {
    tessera,  ///< The library's own: values at the places that they have, quotes that hold no ends of lines.
    vcard,
    csv  ///< A table with headings, as other programs write it.
};

/// By their names on the command line.
inline const std::map<std::string, FileFormat> fileFormats = {
    {"tessera", FileFormat::tessera}, {"vcard", FileFormat::vcard}, {"csv", FileFormat::csv}};

/// The first line of a file of our own is a header, whatever it holds: one that begins as ours does is recognised by
/// that, another single word by what stands at the places below it. Throws a Failure that names the file when it is
/// none of these.
FileFormat recogniseFormat(const SourceText& source);

}  // namespace Tool
