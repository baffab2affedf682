#include <cstdint>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "tests/database/schema/ShownText.h"

namespace Database {
namespace {

RC_GTEST_PROP(PropText, NumbersReadAsThePrintedForm, (std::int16_t i2, WORD ui2, LONG i4, DWORD ui4, double r8)) {
    RC_ASSERT(shown(CCeDBProp::ofI2(1, i2)) == printed("%d", i2));
    RC_ASSERT(shown(CCeDBProp::ofUI2(1, ui2)) == printed("0x%04x", ui2));
    RC_ASSERT(shown(CCeDBProp::ofI4(1, i4)) == printed("%d", i4));
    RC_ASSERT(shown(CCeDBProp::ofUI4(1, ui4)) == printed("0x%08x", ui4));
    RC_ASSERT(shown(CCeDBProp::ofR8(1, r8)) == printed("%f", r8));
}

}  // namespace
}  // namespace Database
