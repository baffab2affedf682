#pragma once

#include "Command.h"
#include "Failure.h"

namespace Tool {

/// Says what is wrong with a command line that could not be parsed, and what would be right.
Failure usageFailure(const Command& program, const CLI::ParseError& stop);

}  // namespace Tool
