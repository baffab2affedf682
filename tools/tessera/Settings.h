#pragma once

#include <string>

namespace Tool {

/// What holds for every command.
struct Settings {
    std::string storePath;  ///< Empty: where the environment says.
    bool json = false;
};

}  // namespace Tool
