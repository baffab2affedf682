#include "tests/support/Privacy.h"

namespace testing_support {

bool isPrivate(const std::filesystem::path& path) {
    using std::filesystem::perms;
    const std::filesystem::file_status status = std::filesystem::status(path);
    const bool isFolder = std::filesystem::is_directory(status);
    return status.permissions() == (isFolder ? perms::owner_all : perms::owner_read | perms::owner_write);
}

}  // namespace testing_support
