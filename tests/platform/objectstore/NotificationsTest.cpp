#include <future>
#include <thread>

#include <gmock/gmock.h>

#include "tessera/platform/objectstore/ObjectStore.h"
#include "tessera/platform/port/WaitSet.h"
#include "tessera/platform/windows/Messages.h"
#include "tests/platform/objectstore/ListeningWindow.h"
#include "tests/platform/objectstore/StoreTest.h"

namespace objectstore_test {
namespace {

using Platform::port::isReadable;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr UINT created = 0x401;
constexpr UINT deleted = 0x403;
constexpr UINT changed = 0x406;

CEOID addElsewhere(const WCHAR* database = TEXT("Rows")) {
    CEOID oid = 0;
    std::thread([&] { oid = OpenDatabase(database).add(Row().number(1)); }).join();
    return oid;
}

class Notifications : public StoreTest {
protected:
    Notifications() {
        makeDatabase(TEXT("Rows"));
        makeDatabase(TEXT("Others"));
    }
};
INSTANTIATE_TEST_SUITE_P(BothStores, Notifications, bothStores, nameOfKind);

TEST_P(Notifications, TellOfEachRecordThatAnotherThreadWritesInTheOrderOfTheWriting) {
    ListeningWindow window;
    const Subscription subscription(TEXT("Rows"), window, 7);
    CEOID first = 0;
    CEOID second = 0;
    std::thread([&] {
        OpenDatabase rows(TEXT("Rows"));
        first = rows.add(Row().number(1));
        second = rows.add(Row().number(2));
        rows.write(first, Row().number(3));
        rows.erase(second);
    }).join();

    EXPECT_THAT(window.hear(), ElementsAre(Heard(7, created, first), Heard(7, created, second),
                                           Heard(7, changed, first), Heard(7, deleted, second)));
    EXPECT_THAT(window.hear(), IsEmpty());
}

TEST_P(Notifications, AreNotOfWhatTheWindowsOwnThreadDoes) {
    ListeningWindow window;
    const Subscription subscription(TEXT("Rows"), window);

    OpenDatabase(TEXT("Rows")).add(Row().number(1));
    EXPECT_THAT(window.hear(), IsEmpty());
    const CEOID theirs = addElsewhere();
    OpenDatabase(TEXT("Rows")).add(Row().number(1));

    EXPECT_THAT(window.hear(), ElementsAre(Heard(0, created, theirs)));
}

TEST_P(Notifications, AreOfTheDatabaseThatTheHandleIsOpenOn) {
    ListeningWindow window;
    const Subscription rows(TEXT("Rows"), window, 1);
    const Subscription others(TEXT("Others"), window, 2);
    const Subscription rowsAgain(TEXT("Rows"), window, 3);

    const CEOID other = addElsewhere(TEXT("Others"));
    const CEOID row = addElsewhere(TEXT("Rows"));

    EXPECT_THAT(window.hear(), ElementsAre(Heard(2, created, other), Heard(1, created, row), Heard(3, created, row)));
}

TEST_P(Notifications, BeginWithTheOpeningOfTheHandle) {
    ListeningWindow window;
    addElsewhere();
    const Subscription early(TEXT("Rows"), window, 1);
    const CEOID second = addElsewhere();
    const Subscription late(TEXT("Rows"), window, 2);
    const CEOID third = addElsewhere();

    EXPECT_THAT(window.hear(),
                ElementsAre(Heard(1, created, second), Heard(1, created, third), Heard(2, created, third)));
}

TEST_P(Notifications, OfABatchComeWhenItHasEnded) {
    ListeningWindow window;
    const Subscription subscription(TEXT("Rows"), window);
    std::promise<void> written;
    std::promise<void> heardSoFar;
    std::thread writer([&] {
        OpenDatabase rows(TEXT("Rows"));
        const ObjectStoreBatch batch;
        rows.add(Row().number(1));
        rows.add(Row().number(2));
        written.set_value();
        heardSoFar.get_future().wait();
    });
    written.get_future().wait();
    EXPECT_THAT(window.hear(), IsEmpty());
    heardSoFar.set_value();

    EXPECT_EQ(window.hear(2).size(), 2u);
    writer.join();
}

TEST_P(Notifications, WaitForTheEndOfABatchOfTheThreadsOwn) {
    ListeningWindow window;
    const Subscription subscription(TEXT("Rows"), window);
    const CEOID theirs = addElsewhere();
    {
        const ObjectStoreBatch batch;
        OpenDatabase(TEXT("Rows")).add(Row().number(1));
        EXPECT_THAT(window.hear(), IsEmpty());
    }
    EXPECT_THAT(window.hear(), ElementsAre(Heard(0, created, theirs)));
}

TEST_P(Notifications, EndWithTheHandle) {
    ListeningWindow window;
    {
        const Subscription subscription(TEXT("Rows"), window);
        addElsewhere();
        EXPECT_EQ(window.hear().size(), 1u);
    }
    addElsewhere();
    EXPECT_THAT(window.hear(), IsEmpty());

    const Subscription again(TEXT("Rows"), window);
    addElsewhere();
    EXPECT_EQ(window.hear().size(), 1u);
}

TEST_P(Notifications, EndWithTheWindowAndWhatWaitsIsFreed) {
    ListeningWindow staying;
    auto ending = std::make_unique<ListeningWindow>();
    const Subscription first(TEXT("Rows"), *ending, 1);
    const Subscription second(TEXT("Rows"), staying, 2);
    addElsewhere();
    MSG message;
    ASSERT_TRUE(PeekMessage(&message));  // all are in the queue now, one of the ending window's taken out of it
    DispatchMessage(&message);
    addElsewhere();

    ending.reset();

    addElsewhere();
    for (const Heard& heard : staying.hear())
        EXPECT_EQ(std::get<0>(heard), 2u);
}

TEST_P(Notifications, WakeAThreadThatWaits) {
    ListeningWindow window;
    const Subscription subscription(TEXT("Rows"), window);
    CEOID theirs = 0;
    std::thread other([&] { theirs = OpenDatabase(TEXT("Rows")).add(Row().number(1)); });

    const auto heard = window.hear(1);

    other.join();
    EXPECT_THAT(heard, ElementsAre(Heard(0, created, theirs)));
}

TEST_P(Notifications, MakeTheQueuesDescriptorReadableUntilTheyArePumped) {
    ListeningWindow window;
    const Subscription subscription(TEXT("Rows"), window);
    window.hear();
    EXPECT_FALSE(isReadable(messageQueueFd()));

    addElsewhere();
    EXPECT_TRUE(isReadable(messageQueueFd()));

    EXPECT_EQ(window.hear().size(), 1u);
    EXPECT_FALSE(isReadable(messageQueueFd()));
}

TEST_P(Notifications, ComeOnTheWindowsThreadWhereverTheHandleWasOpened) {
    ListeningWindow window;
    std::unique_ptr<Subscription> subscription;
    std::thread([&] { subscription = std::make_unique<Subscription>(TEXT("Rows"), window, 5); }).join();

    const CEOID theirs = addElsewhere();

    EXPECT_THAT(window.hear(), ElementsAre(Heard(5, created, theirs)));
}

TEST_P(Notifications, NoneIsLostOfManyAtOnce) {
    constexpr int many = 2'000;
    ListeningWindow window;
    const Subscription subscription(TEXT("Rows"), window);
    std::thread([&] {
        OpenDatabase rows(TEXT("Rows"));
        const ObjectStoreBatch batch;
        for (int i = 0; i < many; ++i)
            rows.add(Row().number(i));
    }).join();

    const std::vector<Heard> heard = window.hear();

    EXPECT_EQ(heard.size(), std::size_t{many});
    EXPECT_TRUE(std::ranges::is_sorted(heard));
}

TEST_P(Notifications, AreNotHeldBackByManyChangesThatConcernNoWindow) {
    ListeningWindow window;
    const Subscription subscription(TEXT("Rows"), window);
    CEOID row = 0;
    std::thread([&] {
        OpenDatabase rows(TEXT("Rows"));
        OpenDatabase others(TEXT("Others"));
        const ObjectStoreBatch batch;
        for (int i = 0; i < 2'000; ++i)
            others.add(Row().number(i));
        row = rows.add(Row().number(1));
    }).join();

    EXPECT_THAT(window.hear(), ElementsAre(Heard(0, created, row)));
}

TEST_P(Notifications, GoOnWithTheOldestThatTheLogKeepsAfterALongSilence) {
    ListeningWindow window;
    const Subscription subscription(TEXT("Rows"), window);
    CEOID last = 0;
    std::thread([&] {
        OpenDatabase rows(TEXT("Rows"));
        OpenDatabase others(TEXT("Others"));
        const ObjectStoreBatch batch;
        for (int i = 0; i < 200; ++i)
            rows.add(Row().number(i));
        const CEOID other = others.add(Row().number(0));
        for (int i = 1; i < 99'900; ++i)
            others.write(other, Row().number(i));
        last = rows.add(Row().number(200));
    }).join();

    const std::vector<Heard> heard = window.hear();

    EXPECT_EQ(heard.size(), 100u) << "of the last 100,000 changes";
    EXPECT_EQ(heard.back(), Heard(0, created, last));
}

TEST_P(Notifications, OfAWindowThatDoesNotExistAreNoError) {
    auto window = std::make_unique<ListeningWindow>();
    window->DestroyWindow();
    const Subscription subscription(TEXT("Rows"), *window);
    addElsewhere();
    EXPECT_THAT(window->hear(), IsEmpty());
}

TEST(NotificationsOfAnotherStore, ComeAfterTheFirstOneWasLetGo) {
    ListeningWindow window;
    auto first = std::make_unique<testing_support::MemoryStoreMount>();
    makeDatabase(TEXT("Rows"));
    auto subscription = std::make_unique<Subscription>(TEXT("Rows"), window, 1);
    addElsewhere();
    first.reset();

    const testing_support::MemoryStoreMount second;
    makeDatabase(TEXT("Rows"));
    addElsewhere();
    EXPECT_THAT(window.hear(), IsEmpty());
    subscription.reset();
    const Subscription again(TEXT("Rows"), window, 2);
    addElsewhere();
    EXPECT_EQ(window.hear().size(), 1u);
}

}  // namespace
}  // namespace objectstore_test
