#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "tessera/phonebook/model/PBAttributes.h"
#include "tests/phonebook/model/PrimaryNumbers.h"

namespace PhoneBook {
namespace {

RC_GTEST_PROP(PrimaryTelNoFlag, FollowsItsDefinition, (DWORD mask, DWORD stated)) {
    const DWORD flag = getPrimaryTelNoFlag(recordWith(mask, stated));

    if ((mask & 0x00400000) != 0 && (stated & 0xC1C) != 0) {
        RC_ASSERT(flag == stated);
    } else if ((mask & 0xC1C) == 0) {
        RC_ASSERT(flag == 0u);
    } else {
        const DWORD numbers = mask & 0xC1C;
        RC_ASSERT(flag == (numbers & (~numbers + 1)));  // the flags stand in the order of their bits
    }
}

}  // namespace
}  // namespace PhoneBook
