// Says who is calling, for a softphone or an exchange: caller_id_service SOCKET
//
// A client of the Unix socket sends one number a line and gets one line for each: the caller's name, a tab and the
// ring tone (empty when there is none); or "unknown"; or "error: ..." for what is no number, or longer than 128 bytes.
// The ring tone is the contact's own, else the one that the contact's group has for calls. A client that leaves answers
// unread until there is no room for more is dropped, and so is the 65th. The phone book is the one that TESSERA_STORE
// names; what other programs do to its contacts and categories is followed meanwhile. SIGTERM and SIGINT end it.

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <exception>
#include <filesystem>
#include <iostream>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/epoll.h>
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <system_error>
#include <tessera/phonebook/PhoneBookDBMgr.h>
#include <tessera/platform/base/Unicode.h>
#include <tessera/platform/objectstore/ObjectStore.h>
#include <tessera/platform/windows/Messages.h>
#include <unistd.h>

using namespace PhoneBook;

namespace {

constexpr std::size_t longestLine = 128;
constexpr std::size_t mostClients = 64;
constexpr int changesAtOnce = 8;

int checked(int result, const std::string& what) {
    if (result < 0) throw std::system_error(errno, std::generic_category(), what);
    return result;
}

/// Whether a terminal, or who reads lines, would obey the character instead of showing it: controls, what ends a line,
/// and what turns the direction of writing.
bool isObeyed(WCHAR ch) {
    return ch < 0x20 || (ch >= 0x7F && ch <= 0x9F) || ch == 0x61C || ch == 0x200E || ch == 0x200F ||
           (ch >= 0x2028 && ch <= 0x202E) || (ch >= 0x2066 && ch <= 0x2069);
}

/// A name or a ring tone is one field of one line, whatever is in it.
std::string fieldOf(const CString& text) {
    std::u16string field(text.view());
    std::ranges::replace_if(field, isObeyed, u' ');
    return utf8Of(field);
}

/// What people are told, names of files included.
std::string shown(const std::string& utf8) {
    return fieldOf(textOfUtf8(utf8).value_or(CString(u"(not UTF-8)")));
}

CString ringToneOf(PhoneBookDBMgr& phoneBook, const PBRecord& caller) {
    if (!caller.strBell.IsEmpty() || caller.strGroup.IsEmpty()) return caller.strBell;
    PBGroupInfo group;
    return SUCCEEDED(phoneBook.queryAvailablePBGroup(caller.strGroup, &group)) ? group.strBell : CString();
}

std::string answerTo(PhoneBookDBMgr& phoneBook, std::string_view line) {
    const auto text = textOfUtf8(line);
    const CString number = text ? PhoneBookDBMgr::makeCNIP(*text) : CString();
    if (number.IsEmpty()) return "error: not a number";

    PBRecord caller;  // the contact is reported along with fields of the phone book's own, such as the group
    for (const PBDBAttrID wanted : {PBDBATTR_NAME, PBDBATTR_GROUP, PBDBATTR_BELL})
        caller.dwCITypeMask |= adwCITypeMaskMap_[wanted];
    DWORD contact = 0;
    if (FAILED(phoneBook.queryCallerInfo(number, &caller, &contact)) || contact == 0) return "unknown";
    return fieldOf(caller.strName) + "\t" + fieldOf(ringToneOf(phoneBook, caller));
}

class Service {
public:
    Service(PhoneBookDBMgr& phoneBook, int listener, int signals)
        : phoneBook_(phoneBook), listener_(listener), signals_(signals) {
        for (const int fd : {listener_, signals_, messageQueueFd()})
            watch(fd);
    }

    /// Until a signal comes.
    void run() {
        std::array<epoll_event, 16> ready;
        while (true) {
            const int count = epoll_wait(epoll_, ready.data(), ready.size(), isBehind_ ? 0 : -1);
            if (errno != EINTR) checked(count, "waiting");
            follow();  // first, so that no answer is older than its question
            for (int i = 0; i < count; ++i) {
                const int fd = ready[static_cast<std::size_t>(i)].data.fd;
                if (fd == signals_) return;
                if (fd == listener_) admit();
                if (clients_.contains(fd) && !serve(fd)) drop(fd);
            }
        }
    }

private:
    /// What the present line of a client is so far.
    struct Client {
        std::string line;
        bool isTooLong = false;
    };

    void watch(int fd) {
        epoll_event event{.events = EPOLLIN, .data = {.fd = fd}};
        checked(epoll_ctl(epoll_, EPOLL_CTL_ADD, fd, &event), "watching");
    }

    /// Pumps until nothing is left. After so many changes it comes back for the rest: an import makes no caller wait.
    void follow() {
        MSG message;
        for (int i = 0; i < changesAtOnce; ++i) {
            isBehind_ = PeekMessage(&message) != FALSE;
            if (!isBehind_) return;
            DispatchMessage(&message);
        }
    }

    void admit() {
        const int fd = accept4(listener_, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
        if (fd < 0) return;
        clients_[fd];
        watch(fd);
        if (clients_.size() > mostClients) drop(fd);
    }

    /// False when the client has hung up, or leaves so many answers unread that there is no room for more.
    bool serve(int fd) {
        std::array<char, 512> block;
        const ssize_t count = recv(fd, block.data(), block.size(), 0);
        if (count < 0 && errno == EAGAIN) return true;
        if (count <= 0) return false;
        const std::string answers = answersTo(clients_[fd], {block.data(), static_cast<std::size_t>(count)});
        return send(fd, answers.data(), answers.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(answers.size());
    }

    std::string answersTo(Client& client, std::string_view bytes) {
        std::string answers;
        for (const char byte : bytes) {
            if (byte == '\n') {
                answers += client.isTooLong ? "error: line too long" : answerTo(phoneBook_, client.line);
                answers += '\n';
                client = {};
            } else if (client.line.size() < longestLine) {
                client.line += byte;
            } else {
                client.isTooLong = true;
            }
        }
        return answers;
    }

    void drop(int fd) {
        clients_.erase(fd);
        close(fd);
    }

    PhoneBookDBMgr& phoneBook_;
    int listener_;
    int signals_;
    int epoll_ = checked(epoll_create1(EPOLL_CLOEXEC), "epoll");
    std::map<int, Client> clients_;  ///< By socket.
    bool isBehind_ = false;
};

/// A descriptor that is readable when the service is to end.
int catchSignals() {
    sigset_t ending;
    sigemptyset(&ending);
    sigaddset(&ending, SIGTERM);
    sigaddset(&ending, SIGINT);
    sigprocmask(SIG_BLOCK, &ending, nullptr);
    return checked(signalfd(-1, &ending, SFD_CLOEXEC), "signals");
}

/// A listening socket for the user alone.
int listenAt(const std::string& path) {
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    if (path.size() >= sizeof address.sun_path) throw std::length_error(path + ": too long for a socket's path");
    path.copy(address.sun_path, path.size());
    const auto* place = reinterpret_cast<const sockaddr*>(&address);

    // A socket at which nobody answers was left behind by a service that was killed.
    const int visitor = checked(socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0), "socket");
    const bool isRefused = connect(visitor, place, sizeof address) != 0 && errno == ECONNREFUSED;
    close(visitor);
    if (isRefused && std::filesystem::is_socket(path)) unlink(path.c_str());

    umask(0177);  // now, not a chmod later: between the two anybody could come in
    const int listener = checked(socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0), "socket");
    checked(bind(listener, place, sizeof address), path);
    checked(listen(listener, SOMAXCONN), path);
    return listener;
}

void serveAt(const char* path) {
    const int signals = catchSignals();
    PhoneBookDBMgr phoneBook;
    // With "true" it has a window, which changes are told to: it follows them while this thread pumps.
    if (FAILED(phoneBook.initDB(true)) || FAILED(phoneBook.openDB(nullptr)) || phoneBook.GetSafeHwnd() == 0)
        throw std::runtime_error(ObjectStore::errorText());
    const int listener = listenAt(path);

    std::cout << "listening on " << shown(path) << std::endl;
    Service(phoneBook, listener, signals).run();
    unlink(path);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: caller_id_service SOCKET\n";
        return 2;
    }
    try {
        serveAt(argv[1]);
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "caller_id_service: " << shown(error.what()) << '\n';
        return 1;
    }
}
