#include <unistd.h>

#include "tests/support/SystemNames.h"

namespace testing_support {

const std::string boldFileName = "김's \"phone\" \x1B book\n전화 😀.db";
const std::string zoneOfSeoul = "Asia/Seoul";

std::string asHolderOfALock(const std::string& program) {
    return " (" + program + ", process " + std::to_string(::getpid()) + ")";
}

}  // namespace testing_support
