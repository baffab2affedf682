#include "WindowsErrors.h"

#include <cerrno>
#include <system_error>

#include "WindowsSystem.h"

namespace Tool::port {

int errnoOf(unsigned long systemError) {
    switch (systemError) {
        // Nobody reads any more. The C library takes some of these for a wrong argument.
        case ERROR_BROKEN_PIPE:
        case ERROR_NO_DATA:
        case ERROR_PIPE_NOT_CONNECTED:
            return EPIPE;
        default:
            break;
    }
    const std::error_code error(static_cast<int>(systemError), std::system_category());
    const std::error_condition condition = error.default_error_condition();
    return condition.category() == std::generic_category() ? condition.value() : EIO;
}

}  // namespace Tool::port
