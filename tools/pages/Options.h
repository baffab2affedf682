#pragma once

#include <string>
#include <vector>

#include "../tessera/Command.h"

// What the pages tell of a command's options and arguments.

namespace Pages {

using Tool::Command;

/// In the order in which they were added, without --help.
std::vector<const CLI::Option*> optionsOf(const Command& command);
std::vector<const CLI::Option*> argumentsOf(const Command& command);

/// "--store"
std::string nameOf(const CLI::Option& option);
/// Whether another word follows it on the command line.
bool takesValue(const CLI::Option& option);
/// Whether an argument stands for one word or more.
bool takesMany(const CLI::Option& argument);

/// The commands that do something, in their order: the families' members instead of the families.
std::vector<const Command*> leavesOf(const Command& program);

/// The words with blanks between them.
std::string joined(const std::vector<std::string>& words);

/// The text with each of the characters behind a backslash.
std::string escaped(const std::string& text, const std::string& characters);

}  // namespace Pages
