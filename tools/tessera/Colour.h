#pragma once

#include <string>

#include "Settings.h"

namespace Tool {

/// What stands out from the text around it.
enum class Accent { heading, match, error };

/// Whether what is written for people is to have colours: on a terminal that has them, unless the user does not want
/// any (NO_COLOR), or as the command line says. With JSON never.
bool outputHasColour(const Settings& settings);
bool errorHasColour(const Settings& settings);

/// A displayable text as it stands out; as it is without colours.
std::string accented(const std::string& text, Accent accent, bool hasColour);

}  // namespace Tool
