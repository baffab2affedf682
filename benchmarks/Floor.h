#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "benchmarks/ContactsFloor.h"
#include "benchmarks/People.h"

// What the same work costs with nothing in between: files for hand-written SQL, and memory for a single pass over it.

namespace benchmarks {

/// A file that holds these people, made when first asked for; and another one, for who changes them.
std::filesystem::path floorOf(const People& people);
std::filesystem::path floorToChange(const People& people);
/// The one that stays open for the next benchmark.
ContactsFloor& warmFloor(const std::filesystem::path& file);
void closeFloor();

/// All reduced numbers behind one another, a zero after each.
std::string packedNumbers(const People& people);
/// All names in lower case, packed the same way.
std::u16string packedNames(const People& people);
/// The initial consonants of all names, a zero before each.
std::u16string packedInitials(const People& people);

/// How often a text stands in what is packed, by one pass over it.
int timesIn(std::string_view packed, std::string_view text);
int timesIn(std::u16string_view packed, std::u16string_view text);

}  // namespace benchmarks
