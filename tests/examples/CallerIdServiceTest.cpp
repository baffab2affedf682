#include <chrono>
#include <fstream>
#include <poll.h>
#include <sys/stat.h>

#include <gmock/gmock.h>

#include "tessera/platform/windows/CWnd.h"
#include "tessera/platform/windows/Messages.h"
#include "tests/examples/CallerIdService.h"
#include "tests/phonebook/GroupRows.h"
#include "tests/platform/contacts/ContactsFixture.h"
#include "tests/support/ScopedUmask.h"

// The service follows what another process, this one, does to the phone book.

namespace caller_id_service {
namespace {

using namespace PhoneBook;
using groups_test::addCategory;
using groups_test::deleteCategory;
using groups_test::groupsOfContacts;
using groups_test::storedGroups;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;
using testing_support::bstr;
using testing_support::contact;
using testing_support::ContactsSession;
using testing_support::oidOf;
using testing_support::Outcome;
using testing_support::Process;
using testing_support::require;

Process startedUnder(mode_t mask, const testing_support::Command& command) {
    const testing_support::ScopedUmask umask(mask);
    return Process(command);
}

void giveRingTone(PhoneBookDBMgr& manager, DWORD groupId, const WCHAR* bell) {
    PBGroupInfo group;
    require(manager.getAvailablePBGroup(groupId, &group));
    group.strBell = bell;
    require(manager.writeAvailablePBGroup(groupId, &group, 0));
}

/// A contact as a program that knows nothing of phone books makes it.
CEOID addPlainContact(const WCHAR* name, const WCHAR* mobile, const WCHAR* categories) {
    const auto made = ContactsSession().newContact();
    require(made->put_FileAs(bstr(name).get()));
    require(made->put_MobileTelephoneNumber(bstr(mobile).get()));
    require(made->put_Categories(bstr(categories).get()));
    require(made->Save());
    return oidOf(made);
}

/// Waits for what others write into a manager's tables.
class ChangeListener {
public:
    explicit ChangeListener(PhoneBookDBMgr& manager) {
        window_.CreateEx(0, AfxRegisterWndClass(0), u"listener", 0, 0, 0, 0, 0, 0, 0, nullptr);
        require(manager.closeDB());
        require(manager.openDB(&window_));
    }

    /// False when nothing has changed in all that time.
    bool awaitChange() const {
        pollfd change{messageQueueFd(), POLLIN, 0};
        if (::poll(&change, 1, static_cast<int>(std::chrono::milliseconds(patience).count())) <= 0) return false;
        const CENOTIFYREQUEST request{};
        MSG message;
        while (PeekMessage(&message))
            CeFreeNotification(&request, reinterpret_cast<CENOTIFICATION*>(message.lParam));
        return true;
    }

private:
    CWnd window_;
};

}  // namespace

TEST(CallerIdService, AnswersWithTheNameAndTheContactsOwnRingTone) {
    ServedPhoneBook served;
    served.phoneBook().add(contact().name(u"김민수").mobile(u"010-2345-6789").bell(u"waltz.mid"));
    Caller caller(served.socket());

    EXPECT_EQ(caller.ask("010-2345-6789"), "김민수\twaltz.mid");
    EXPECT_EQ(caller.ask("+82 10-2345-6789"), "김민수\twaltz.mid");
    EXPECT_EQ(caller.ask("010-2345-6780"), "unknown");
}

TEST(CallerIdService, AnswersWithTheGroupsRingToneWhenTheContactHasNone) {
    ServedPhoneBook served;
    PBGroupInfo friends;
    friends.strName = u"친구";
    friends.strBell = u"friends.mid";
    require(served->insertAvailablePBGroup(&friends, true));
    served.phoneBook().add(contact().name(u"of the group").mobile(u"010-1").group(u"친구"));
    served.phoneBook().add(contact().name(u"with its own").mobile(u"010-2").group(u"친구").bell(u"own.mid"));
    served.phoneBook().add(contact().name(u"of no group").mobile(u"010-3"));
    Caller caller(served.socket());

    EXPECT_EQ(caller.ask("0101"), "of the group\tfriends.mid");
    EXPECT_EQ(caller.ask("0102"), "with its own\town.mid");
    EXPECT_EQ(caller.ask("0103"), "of no group\t");
}

TEST(CallerIdService, DoesNotKnowANumberThatIsOnlyPartOfAnother) {
    ServedPhoneBook served;
    served.phoneBook().add(contact().name(u"longer").mobile(u"010-2345-6789"));
    Caller caller(served.socket());

    EXPECT_EQ(caller.ask("2345"), "unknown");
}

TEST(CallerIdService, KnowsContactsAsTheyComeChangeAndGo) {
    ServedPhoneBook served;
    Caller caller(served.socket());
    const std::string before = caller.ask("010-1234-5678");
    const DWORD oid = served.phoneBook().add(contact().name(u"first").mobile(u"010-1234-5678"));
    const std::string added = caller.ask("010-1234-5678");
    PBRecord renamed = contact().name(u"second").mobile(u"010-1234-5678").bell(u"new.mid").record();
    require(served->updatePBRecord(oid, renamed));
    const std::string changed = caller.ask("010-1234-5678");
    require(served->deletePBRecord(oid));

    EXPECT_EQ(before, "unknown");
    EXPECT_EQ(added, "first\t");
    EXPECT_EQ(changed, "second\tnew.mid");
    EXPECT_EQ(caller.ask("010-1234-5678"), "unknown");
}

TEST(CallerIdService, GivesAContactOfAnotherProgramTheGroupOfItsFirstCategory) {
    ServedPhoneBook served;
    PBGroupInfo friends;
    friends.strName = u"친구";
    friends.strBell = u"friends.mid";
    require(served->insertAvailablePBGroup(&friends, true));
    Caller caller(served.socket());
    const CEOID oid = addPlainContact(u"plain", u"010-1234-5678", u"친구, golf");

    EXPECT_EQ(caller.ask("010-1234-5678"), "plain\tfriends.mid");
    EXPECT_THAT(groupsOfContacts(served.phoneBook().manager()), ElementsAre(Pair(oid, CString(u"친구"))));
}

TEST(CallerIdService, MakesAGroupOfANewCategoryAndDeletesItWithTheCategory) {
    ServedPhoneBook served;
    Caller caller(served.socket());
    const CEOID category = addCategory(u"choir", 40);
    ASSERT_EQ(caller.ask("010-1"), "unknown");  // it has followed what was written before it was asked
    ASSERT_EQ(storedGroups(served.phoneBook().manager()).size(), 1u);
    giveRingTone(served.phoneBook().manager(), 40, u"song.mid");
    served.phoneBook().add(contact().name(u"singer").mobile(u"010-1").group(u"choir"));

    EXPECT_EQ(caller.ask("010-1"), "singer\tsong.mid");
    deleteCategory(category);
    EXPECT_EQ(caller.ask("010-1"), "singer\t");
    EXPECT_THAT(storedGroups(served.phoneBook().manager()), IsEmpty());
}

TEST(CallerIdService, FreesTheSpeedDialSlotsOfAContactThatAnotherProgramDeletes) {
    ServedPhoneBook served;
    const DWORD oid = served.phoneBook().add(contact().name(u"dialled").mobile(u"010-1"));
    SpeedDialInfo slot;
    slot.dwOID = oid;
    slot.dwTelType = 0x4;
    slot.strTelNo = u"010-1";
    require(served->writeSpeedDialInfo(5, &slot));
    Caller caller(served.socket());
    ContactsSession().remove(oid);

    EXPECT_EQ(caller.ask("010-1"), "unknown");
    EXPECT_EQ(served->querySpeedDialInfo(5, &slot, false), E_FAIL);
    EXPECT_THAT(groupsOfContacts(served.phoneBook().manager()), IsEmpty());
}

// More changes than the service, or the store's log, hands out in one go. Nobody asks meanwhile, and only the last one
// gives it something to write: nothing but its own going on wakes it.
TEST(CallerIdService, FollowsAnImportToItsEnd) {
    ServedPhoneBook served;
    const ChangeListener listener(served.phoneBook().manager());
    {
        const ObjectStoreBatch import;
        for (int i = 0; i < 599; ++i)
            addPlainContact(u"imported", u"010-1", u"");
        addPlainContact(u"the last", u"010-2", u"친구");
    }
    while (groupsOfContacts(served.phoneBook().manager()).empty())
        ASSERT_TRUE(listener.awaitChange());

    EXPECT_EQ(Caller(served.socket()).ask("010-2"), "the last\t");
}

TEST(CallerIdService, EndsWithASignalAndTakesItsSocketWithIt) {
    ServedPhoneBook served;
    Caller caller(served.socket());
    ASSERT_EQ(caller.ask("010-1"), "unknown");

    served.service().terminate();
    const Outcome outcome = served.service().wait();

    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(caller.line(), std::nullopt);
    EXPECT_FALSE(std::filesystem::exists(served.socket()));
}

TEST(CallerIdService, TakesThePlaceOfOneThatWasKilled) {
    ServedPhoneBook served;
    served.service().kill();
    served.service().wait();
    ASSERT_TRUE(std::filesystem::is_socket(served.socket()));

    Process next(serviceAt(served.socket(), served.store()));
    awaitListening(next);

    EXPECT_EQ(Caller(served.socket()).ask("010-1"), "unknown");
}

TEST(CallerIdService, DoesNotTakeThePlaceOfOneThatRuns) {
    ServedPhoneBook served;

    const Outcome second = testing_support::run(serviceAt(served.socket(), served.store()));

    EXPECT_EQ(second.status, 1);
    EXPECT_THAT(second.err, HasSubstr("Address already in use"));
    EXPECT_EQ(Caller(served.socket()).ask("010-1"), "unknown");
}

TEST(CallerIdService, DoesNotTakeThePlaceOfAFile) {
    const testing_support::TemporaryFolder folder;
    const auto file = folder / "letter";
    std::ofstream(file) << "Dear";

    const Outcome outcome = testing_support::run(serviceAt(file, folder / "store.db"));

    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr(file.string()));
    EXPECT_EQ(std::filesystem::file_size(file), 4u);
}

TEST(CallerIdService, SaysWhyItCannotOpenThePhoneBook) {
    const testing_support::TemporaryFolder folder;
    std::ofstream(folder / "store.db") << "this is no store";

    const Outcome outcome = testing_support::run(serviceAt(folder / "callers", folder / "store.db"));

    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("store.db"));
    EXPECT_FALSE(std::filesystem::exists(folder / "callers"));
}

TEST(CallerIdService, WantsAPathThatASocketCanHave) {
    const testing_support::TemporaryFolder folder;

    const Outcome none = testing_support::run({.program = CALLER_ID_SERVICE, .arguments = {}});
    const Outcome tooLong =
        testing_support::run(serviceAt(folder / std::string(sizeof(sockaddr_un), 'c'), folder / "store.db"));

    EXPECT_EQ(none.status, 2);
    EXPECT_THAT(none.err, HasSubstr("usage"));
    EXPECT_EQ(tooLong.status, 1);
    EXPECT_THAT(tooLong.err, HasSubstr("too long"));
}

TEST(CallerIdService, LetsNobodyElseInWhateverTheUmask) {
    for (const mode_t mask : {0000, 0022, 0777}) {
        const testing_support::TemporaryFolder folder;
        Process service = startedUnder(mask, serviceAt(folder / "callers", folder / "store.db"));
        awaitListening(service);

        EXPECT_EQ(std::filesystem::status(folder / "callers").permissions(), std::filesystem::perms(0600)) << mask;
        EXPECT_EQ(Caller(folder / "callers").ask("010-1"), "unknown");
    }
}

TEST(CallerIdService, TellsTheTerminalNothingThatItWouldObey) {
    const testing_support::TemporaryFolder folder;
    const auto socket = folder / "\x1B[31m\nred\xC2\x9B";
    Process service(serviceAt(socket, folder / "store.db"));
    std::string said;
    while (!said.ends_with('\n'))
        said += service.read(patience).value_or("(ended)\n");

    const Outcome second = testing_support::run(serviceAt(socket, folder / "store.db"));
    const Outcome odd = testing_support::run(serviceAt(folder / "\x1B[31m\xFF/no", folder / "store.db"));

    EXPECT_EQ(said, "listening on " + (folder / " [31m red ").string() + "\n");
    EXPECT_EQ(second.err, "caller_id_service: " + (folder / " [31m red ").string() + ": Address already in use\n");
    EXPECT_EQ(odd.err, "caller_id_service: (not UTF-8)\n");
}

}  // namespace caller_id_service
