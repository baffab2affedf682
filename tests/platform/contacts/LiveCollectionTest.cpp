#include <atomic>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tessera/platform/contacts/ContactProperties.h"
#include "tessera/platform/objectstore/ObjectStore.h"
#include "tests/platform/contacts/ContactsFixture.h"
#include "tests/support/TemporaryStore.h"

using namespace testing_support;

namespace {

/// Adds, renames and deletes contacts whose names begin with "w" until told to stop.
void writeUntil(const std::atomic<bool>& stop, std::atomic<int>& rounds) {
    const ContactsSession session;
    std::vector<CEOID> own;
    for (int i = 0; !stop; ++i) {
        own.push_back(session.add(i % 2 == 0 ? TEXT("w even") : TEXT("w odd")));
        session.rename(own[own.size() / 2], i % 3 == 0 ? TEXT("wa") : TEXT("wz"));
        if (own.size() > 20) {
            session.remove(own.front());
            own.erase(own.begin());
        }
        ++rounds;
    }
}

void expectEveryLookToBeSound(const ComPtr<IPOutlookItemCollection>& steady,
                              const ComPtr<IPOutlookItemCollection>& moving, const std::vector<CEOID>& lasting) {
    ASSERT_EQ(oidsOf(steady), lasting);
    const int count = countOf(moving);
    for (int i = 1; i <= count; ++i) {
        IDispatch* item = nullptr;
        const HRESULT result = moving->Item(i, &item);
        if (result == E_INVALIDARG) continue;  // there are fewer by now
        ASSERT_EQ(result, S_OK);
        ASSERT_TRUE(nameOf(asContact(item)).starts_with(TEXT("w")));
    }
}

/// Looks at collections of a store while another thread writes in it.
void readWhileAnotherThreadWrites() {
    const ContactsSession session;
    std::vector<CEOID> lasting;
    for (const auto* name : {TEXT("m1"), TEXT("m2"), TEXT("m3")})
        lasting.push_back(session.add(name));
    const auto whole = session.items();
    const auto steady = restricted(whole, TEXT("[FileAs] >= \"m\" and [FileAs] < \"n\""));
    const auto moving = restricted(whole, TEXT("[FileAs] >= \"w\""));
    std::atomic<bool> stop = false;
    std::atomic<int> rounds = 0;
    std::thread writer(writeUntil, std::cref(stop), std::ref(rounds));

    while (rounds < 60 && !testing::Test::HasFatalFailure())
        expectEveryLookToBeSound(steady, moving, lasting);
    stop = true;
    writer.join();

    const std::vector<CEOID> all = oidsOf(whole);
    EXPECT_EQ(all, RawContacts(ContactProperty::fileAs).oids());
    EXPECT_EQ(oidsOf(moving), std::vector<CEOID>(all.begin() + 3, all.end()));
}

}  // namespace

TEST(LiveCollection, AnswersSoundlyWhileAnotherThreadWritesOnDisk) {
    const TemporaryStore store;
    readWhileAnotherThreadWrites();
}

TEST(LiveCollection, AnswersSoundlyWhileAnotherThreadWritesInMemory) {
    const MemoryStoreMount store;
    readWhileAnotherThreadWrites();
}

TEST(LiveCollection, SeesAnotherThreadsBatchAsAWhole) {
    const TemporaryStore store;
    const ContactsSession session;
    const auto whole = session.items();
    const auto narrowed = restricted(whole, TEXT("[FileAs] >= \"b\""));
    ASSERT_EQ(countOf(narrowed), 0);
    int seenInside = -1;

    std::thread writer([&] {
        const ContactsSession theirs;
        ObjectStoreBatch batch;
        theirs.add(TEXT("Bea"));
        theirs.add(TEXT("Carl"));
        std::thread([&] { seenInside = countOf(ContactsSession().items()); }).join();
        EXPECT_TRUE(batch.end());
    });
    writer.join();

    EXPECT_EQ(seenInside, 0);
    EXPECT_EQ(countOf(narrowed), 2);
    EXPECT_EQ(countOf(whole), 2);
}
