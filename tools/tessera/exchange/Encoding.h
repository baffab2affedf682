#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "../port/Encodings.h"
#include "tessera/platform/base/Types.h"

namespace Tool {

using port::Decoded;

/// Whether text can be read that is said to be in an encoding of this name.
bool isKnownEncoding(const std::string& name);

/// The encoding's name is one that files give; see `isKnownEncoding`. A byte-order mark is a character like others.
Decoded decode(std::string_view bytes, const std::string& encoding);

/// The same when all or nothing is wanted.
std::optional<WString> decodeWhole(std::string_view bytes, const std::string& encoding);

/// What bytes give away of their encoding by themselves.
struct RecognisedEncoding {
    const char* name;
    std::size_t markLength = 0;  ///< Bytes of the byte-order mark in front.
};

/// UTF-8, UTF-16LE, UTF-16BE or CP949; nothing where it would be a guess.
std::optional<RecognisedEncoding> recogniseEncoding(std::string_view bytes);

/// The likeliest encoding by statistics, only to name it to people; empty when there is none,
/// or the system has no such statistics.
std::string guessEncoding(std::string_view bytes);

}  // namespace Tool
