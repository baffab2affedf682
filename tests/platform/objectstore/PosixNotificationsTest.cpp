#include <sys/wait.h>
#include <unistd.h>

#include "tessera/platform/objectstore/ObjectStore.h"
#include "tests/platform/objectstore/ListeningWindow.h"
#include "tests/platform/objectstore/StoreTest.h"

namespace objectstore_test {
namespace {

using testing_support::quickOptions;
using testing_support::TemporaryFolder;

TEST(NotificationsOfAnotherProcess, WakeAThreadThatWaits) {
    const TemporaryFolder folder;
    const std::string path = (folder / "store.db").string();
    int go[2];
    ASSERT_EQ(::pipe(go), 0);
    const pid_t child = ::fork();  // before this process has a store open
    if (child == 0) {
        char told = 0;
        if (::read(go[0], &told, 1) != 1 || ObjectStore::mount(path, quickOptions()) == FALSE) ::_exit(1);
        const CEOID made = OpenDatabase(TEXT("Rows")).add(Row().number(1));
        ObjectStore::unmount();
        ::_exit(made == 0 ? 1 : 0);
    }
    ASSERT_TRUE(ObjectStore::mount(path, quickOptions()));
    makeDatabase(TEXT("Rows"));
    {
        ListeningWindow window;
        const Subscription subscription(TEXT("Rows"), window, 9);
        ASSERT_EQ(::write(go[1], "!", 1), 1);

        const auto heard = window.hear(1);

        ASSERT_EQ(heard.size(), 1u);
        EXPECT_EQ(std::get<0>(heard.front()), 9u);
        EXPECT_EQ(OpenDatabase(TEXT("Rows")).readRecord(std::get<2>(heard.front())).number(), 1);
        int status = -1;
        ::waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    ObjectStore::unmount();
    ::close(go[0]);
    ::close(go[1]);
}

}  // namespace
}  // namespace objectstore_test
