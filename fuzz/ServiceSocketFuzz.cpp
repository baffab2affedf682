// The socket of the example service, asked by four clients at once. The input is pieces, each up to a bar: a character
// that says who sends it and what follows, and the bytes that are sent. 'a' to 'd' send and read the answers; 'A' to
// 'D' say as well that nothing more comes; '0' to '3' hang up, their answers unread. A client that is gone comes back
// as a new one. A backslash makes the next byte one that is sent, whatever it is.

#define main callerIdServiceMain
#include "examples/caller_id_service.cpp"  // all of it but its main, with the names that only it sees
#undef main

#include <future>
#include <memory>
#include <optional>
#include <sys/eventfd.h>
#include <thread>
#include <utility>
#include <vector>

#include "fuzz/FuzzedInput.h"
#include "tests/examples/Caller.h"
#include "tests/support/Builders.h"
#include "tests/support/TemporaryStore.h"

using caller_id_service::Caller;
using fuzz::require;

namespace {

constexpr std::string_view knownNumber = "010-2345-6789";
constexpr std::string_view knownAnswer = "김민수\twaltz.mid";

/// The answers to the numbers that somebody in the phone book has, as they reduce.
const std::map<std::u16string, std::string> answers = {
    {u"01023456789", std::string(knownAnswer)},
    {u"0101", "of a group\tfriends.mid"},
    {u"0102", "a b c [31m d  \t ]0;x "},
    {u"*123#", "unknown\t"},
};

void fill(PhoneBookDBMgr& phoneBook) {
    using testing_support::contact;
    PBGroupInfo friends;
    friends.strName = u"친구";
    friends.strBell = u"friends.mid";
    require(phoneBook.insertAvailablePBGroup(&friends, true) == S_OK, "the group is made");
    for (const contact& each :
         {contact().name(u"김민수").mobile(u"010-2345-6789").bell(u"waltz.mid"),
          contact().name(u"of a group").home(u"010-1").group(u"친구"),
          contact().name(u"a\nb\tc\u001B[31m\u2028d\r\u009B").mobile(u"010-2").bell(u"\u001B]0;x\a"),
          contact().name(u"unknown").business(u"*123#")}) {
        PBRecord record = each.record();
        DWORD oid = 0;
        require(phoneBook.insertPBRecord(record, &oid) == S_OK, "the contact is added");
    }
}

/// The service on a thread of its own, over a store in memory.
class RunningService {
public:
    RunningService() {
        std::promise<void> listens;
        thread_ = std::thread([this, &listens] { serve(listens); });
        listens.get_future().wait();
    }
    ~RunningService() {
        const std::uint64_t signal = 1;
        require(write(signals_, &signal, sizeof signal) == sizeof signal, "the service can be told to end");
        thread_.join();
        close(signals_);
    }
    RunningService(const RunningService&) = delete;
    RunningService& operator=(const RunningService&) = delete;

    std::string socket() const { return (folder_ / "callers").string(); }

private:
    void serve(std::promise<void>& listens) {
        PhoneBookDBMgr phoneBook;
        require(phoneBook.initDB(true) == S_OK && phoneBook.openDB(nullptr) == S_OK, "the phone book opens");
        fill(phoneBook);
        const int listener = listenAt(socket());
        listens.set_value();
        Service(phoneBook, listener, signals_).run();
        close(listener);
    }

    testing_support::TemporaryFolder folder_;
    testing_support::MemoryStoreMount store_;
    int signals_ = eventfd(0, EFD_CLOEXEC);
    std::thread thread_;
};

/// What the service says to a line, by the rule in its first comment.
std::string answerByTheRule(const std::string& line) {
    if (line.size() > 128) return "error: line too long";
    const auto text = textOfUtf8(line);
    const std::u16string number(text ? PhoneBookDBMgr::makeCNIP(*text).view() : std::u16string_view());
    if (number.empty()) return "error: not a number";
    const auto answer = answers.find(number);
    return answer == answers.end() ? "unknown" : answer->second;
}

bool isPlain(std::string_view answer) {
    const auto text = textOfUtf8(answer);
    return text && std::ranges::count(text->view(), u'\t') <= 1 &&
           std::ranges::none_of(text->view(), [](WCHAR ch) { return ch != u'\t' && isObeyed(ch); });
}

/// A client, and the line that it is in the middle of.
class Client {
public:
    explicit Client(const std::string& socket) : caller_(socket) {}

    void send(const std::string& bytes) {
        require(caller_.send(bytes), "a client that reads its answers is not dropped");
    }

    void checkAnswersTo(const std::string& bytes) {
        for (const char byte : bytes) {
            if (byte != '\n') {
                line_ += byte;
                continue;
            }
            const auto answer = caller_.line();
            require(answer.has_value(), "a line is answered");
            require(*answer == answerByTheRule(line_), "with the answer to this line of this client");
            require(isPlain(*answer), "which is one line of text and nothing else");
            line_.clear();
        }
    }

    void checkEnd() {
        caller_.endSending();
        require(caller_.rest().empty(), "nothing is answered but lines");
    }

private:
    Caller caller_;
    std::string line_;
};

std::string takePiece(fuzz::FuzzedInput& input) {
    std::string piece;
    while (!input.atEnd()) {
        const auto byte = static_cast<char>(input.byte());
        if (byte == '|') break;
        piece += byte == '\\' ? static_cast<char>(input.byte()) : byte;
    }
    return piece;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const RunningService service;
    static Caller bystander(service.socket());
    fuzz::FuzzedInput input(data, size);
    std::array<std::optional<Client>, 4> clients;
    while (!input.atEnd()) {
        const auto who = static_cast<char>(input.byte());
        std::optional<Client>& client = clients[static_cast<unsigned char>(who >= 'A' ? who - 'A' : who) % 4];
        if (!client) client.emplace(service.socket());
        const std::string piece = takePiece(input);
        client->send(piece);
        const bool hangsUp = who >= '0' && who <= '3';
        const bool ends = who >= 'A' && who <= 'D';
        if (!hangsUp) client->checkAnswersTo(piece);
        if (ends) client->checkEnd();
        if (hangsUp || ends) client.reset();
        require(bystander.ask(std::string(knownNumber)) == knownAnswer, "another client is answered meanwhile");
    }
    for (auto& client : clients) {
        if (client) client->checkEnd();
    }
    return 0;
}
