#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "Failure.h"
#include "tessera/platform/base/CString.h"
#include "tessera/platform/base/Types.h"

namespace Tool {

/// An argument of the command line as text; `name` is what the user calls it. Throws a Failure of wrong
/// usage for what is not UTF-8.
CString textArgument(const std::string& name, const std::string& value);

/// A number, decimal or with 0x hexadecimal, of 32 bits; nothing for any other text.
std::optional<DWORD> numberOf(std::string_view text);

/// The same of the command line. Throws a Failure of wrong usage for anything else.
DWORD numberArgument(const std::string& name, const std::string& value);

/// What one of several words stands for. Throws a Failure of wrong usage, which lists them, for another word.
template <class Value>
Value choiceArgument(const std::string& name, const std::string& word, const std::map<std::string, Value>& choices) {
    const auto found = choices.find(word);
    if (found != choices.end()) return found->second;
    std::string list;
    for (const auto& [each, value] : choices)
        list += (list.empty() ? "" : ", ") + each;
    throw wrongUsage(name + " wants one of " + list + ", not \"" + word + "\"");
}

}  // namespace Tool
