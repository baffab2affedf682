#pragma once

#include <string>
#include <vector>

#include "Command.h"
#include "Failure.h"

namespace Tool {

/// Says what is wrong with a command line that could not be parsed, and what would be right.
Failure usageFailure(const Command& program, const CLI::ParseError& stop, const std::vector<std::string>& line);

}  // namespace Tool
