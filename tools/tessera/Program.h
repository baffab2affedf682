#pragma once

#include "Commands.h"
#include "Settings.h"

namespace Tool {

/// The text of the tool itself.
CommandText programText();

/// Adds the options that hold for every command, and all commands.
void defineProgram(Command& program, Settings& settings, Action& chosen);

}  // namespace Tool
