#include <algorithm>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tessera/platform/contacts/ContactProperties.h"
#include "tessera/platform/objectstore/ObjectStore.h"
#include "tests/platform/contacts/CollationOracle.h"
#include "tests/platform/contacts/ContactsFixture.h"
#include "tests/support/TemporaryStore.h"

using namespace testing_support;

namespace {

/// Names of one to four letters out of several scripts, so that prefixes, cases and equal names abound.
WString anyName(std::mt19937& random) {
    static constexpr WStringView letters =
        TEXT("aAbBzZ09 -_\u00e9\u00c9\u00e0\u00df\u0131\u0416\u0436\uac00\uae40\ubc15\u3131\u4e00");
    WString name;
    for (auto length = 1 + random() % 4; length > 0; --length)
        name += letters[random() % letters.size()];
    return name;
}

}  // namespace

TEST(CollectionOrder, ThreeThousandContactsStandAsTheStoresCollationSortsThem) {
    const TemporaryStore store;
    const ContactsSession session;
    const CollationOracle oracle(ContactProperty::fileAs);
    std::mt19937 random(20240305);
    std::vector<std::pair<std::string, CEOID>> expected;
    {
        ObjectStoreBatch batch;
        for (int i = 0; i < 3'000; ++i) {
            const WString name = i % 100 == 0 ? TEXT("") : anyName(random);
            const CEOID oid = session.add(name);
            expected.emplace_back(oracle.keyOf(name), oid);
        }
        ASSERT_TRUE(batch.end());
    }
    std::ranges::sort(expected);
    std::vector<CEOID> ascending;
    for (const auto& [key, oid] : expected)
        ascending.push_back(oid);

    const auto items = session.items();
    EXPECT_EQ(oidsOf(items), ascending);
    EXPECT_EQ(RawContacts(ContactProperty::fileAs).oids(), ascending);
    require(items->Sort(bstr(TEXT("FileAs")).get(), TRUE));
    std::ranges::reverse(ascending);
    EXPECT_EQ(oidsOf(items), ascending);

    const auto visitedAnyhow = session.items();
    for (int i = 0; i < 500; ++i) {
        const auto index = random() % ascending.size();
        ASSERT_EQ(oidOf(itemOf(visitedAnyhow, static_cast<int>(index) + 1)), ascending[ascending.size() - 1 - index]);
    }
}
