#pragma once

#include <string>

namespace Tool {

/// All bytes of a file, or of a pipe. Throws a Failure that says why it cannot be read, is no file, or is larger
/// than anything that this program reads.
std::string contentOf(const std::string& path);

}  // namespace Tool
