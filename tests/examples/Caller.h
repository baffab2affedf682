#pragma once

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace caller_id_service {

/// Longer than anything takes: what has not come by then does not come.
inline constexpr std::chrono::seconds patience{30};

/// A program that asks the service; it waits for answers no longer than `patience`.
class Caller {
public:
    explicit Caller(const std::filesystem::path& path) : socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path.native().copy(address.sun_path, sizeof address.sun_path - 1);
        const timeval wait{patience.count(), 0};
        ::setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &wait, sizeof wait);
        ::setsockopt(socket_, SOL_SOCKET, SO_SNDTIMEO, &wait, sizeof wait);
        if (::connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
            throw std::runtime_error("nobody listens at " + path.string());
    }
    ~Caller() { ::close(socket_); }
    Caller(const Caller&) = delete;
    Caller& operator=(const Caller&) = delete;

    /// False when the service has hung up.
    bool send(std::string_view bytes) const {
        while (!bytes.empty()) {
            const ssize_t count = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
            if (count < 0 && errno == EINTR) continue;
            if (count < 0) return false;
            bytes.remove_prefix(static_cast<std::size_t>(count));
        }
        return true;
    }

    /// The next line without its end; nothing when the service has hung up.
    std::optional<std::string> line() {
        std::size_t end = 0;
        while ((end = received_.find('\n')) == std::string::npos) {
            if (!receive()) return std::nullopt;
        }
        const std::string line = received_.substr(0, end);
        received_.erase(0, end + 1);
        return line;
    }

    /// Says that nothing more comes; answers are still taken.
    void endSending() const { ::shutdown(socket_, SHUT_WR); }

    /// All that is still to come until the service hangs up.
    std::string rest() {
        while (receive()) {
        }
        return std::exchange(received_, {});
    }

    std::string ask(const std::string& number) {
        send(number + "\n");
        return line().value_or("hung up");
    }
    std::vector<std::string> lines(std::size_t count) {
        std::vector<std::string> lines;
        while (lines.size() < count)
            lines.push_back(line().value_or("hung up"));
        return lines;
    }

private:
    /// False when the service has hung up.
    bool receive() {
        char block[4096];
        ssize_t count = 0;
        do {
            count = ::recv(socket_, block, sizeof block, 0);
        } while (count < 0 && errno == EINTR);
        if (count < 0 && errno == EAGAIN) throw std::runtime_error("the service does not answer");
        if (count <= 0) return false;
        received_.append(block, static_cast<std::size_t>(count));
        return true;
    }

    int socket_;
    std::string received_;
};

}  // namespace caller_id_service
