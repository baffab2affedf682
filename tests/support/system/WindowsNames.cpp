#include "tests/support/SystemNames.h"

namespace testing_support {

const std::string boldFileName = "김's %TMP% ^&; (phone) book 전화 😀.db";
const std::string zoneOfSeoul = "KST-9";

std::string asHolderOfALock(const std::string& /*program*/) {
    return {};
}

}  // namespace testing_support
