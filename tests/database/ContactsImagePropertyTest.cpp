#include <cstddef>
#include <numeric>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "tests/database/ScannedContacts.h"

namespace Database {
namespace {

RC_GTEST_PROP(ContactsImage, HoldsWhoeverWasPutWhateverTheOrderOfIdentifiers, ()) {
    std::vector<DWORD> oids(*rc::gen::inRange<std::size_t>(0, 30));
    std::iota(oids.begin(), oids.end(), DWORD{1});
    ContactsImage image;
    std::vector<DWORD> expected;
    for (const std::size_t size = oids.size(); expected.size() < size;) {
        const auto next = oids.begin() + *rc::gen::inRange<std::ptrdiff_t>(0, static_cast<std::ptrdiff_t>(oids.size()));
        image.append(scanned(*next, std::string(1 + expected.size(), 'n')));
        expected.push_back(*next);
        oids.erase(next);
    }
    RC_ASSERT(everybody(image) == expected);

    const auto gone = *rc::gen::container<std::vector<DWORD>>(rc::gen::inRange<DWORD>(1, 40));
    for (const DWORD oid : gone) {
        image.remove(oid);
        std::erase(expected, oid);
    }
    RC_ASSERT(everybody(image) == expected);
}

}  // namespace
}  // namespace Database
