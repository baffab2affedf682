#pragma once

#include <string>

namespace Tool {

/// All bytes of a file, or of a pipe; of standard input when the path is "-". Throws a Failure that says why it cannot
/// be read, is no file, or is larger than anything that this program reads.
std::string contentOf(const std::string& path);

/// What people are told that it is: the path, or "standard input".
std::string nameOfSource(const std::string& path);

}  // namespace Tool
