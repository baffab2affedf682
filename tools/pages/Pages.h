#pragma once

#include <string>

#include "../tessera/Command.h"

// The texts that people and shells read of the tool, made of its commands.

namespace Pages {

/// The manual: the page that `frame` is, with the lines @OPTIONS@, @SYNOPSIS@, @COMMANDS@ and @EXAMPLES@ replaced.
/// In the language of mdoc. Throws when the frame lacks one of them.
std::string manual(const Tool::Command& program, const std::string& frame);

/// Completion of the command line for bash.
std::string bashCompletion(const Tool::Command& program);

/// The same for zsh.
std::string zshCompletion(const Tool::Command& program);

}  // namespace Pages
