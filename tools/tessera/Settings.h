#pragma once

#include <string>

namespace Tool {

/// What holds for every command.
struct Settings {
    enum class Colour { automatic, always, never };

    std::string storePath;  ///< Empty: where the environment says.
    bool json = false;
    Colour colour = Colour::automatic;
};

}  // namespace Tool
