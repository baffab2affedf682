#include <csignal>
#include <cstdio>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

// Runs a service of a Unix socket, asks it one line and ends it: ask SERVICE SOCKET LINE
// Prints the answer when all of that went well.

namespace {

/// Starts the service and waits until it has said something on standard output.
pid_t start(const char* service, const char* socketPath) {
    int output[2];
    if (pipe(output) != 0) return -1;
    const pid_t child = fork();
    if (child == 0) {
        dup2(output[1], STDOUT_FILENO);
        execl(service, service, socketPath, static_cast<char*>(nullptr));
        _exit(127);
    }
    close(output[1]);
    char said = 0;
    while (said != '\n' && read(output[0], &said, 1) == 1) {
    }
    return child;
}

/// "" when there is no answer.
std::string answerTo(const std::string& line, const std::string& socketPath) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    socketPath.copy(address.sun_path, sizeof address.sun_path - 1);
    const int service = socket(AF_UNIX, SOCK_STREAM, 0);
    const auto size = static_cast<ssize_t>(line.size());
    if (connect(service, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) return "";
    if (write(service, line.data(), line.size()) != size) return "";
    std::string answer;
    char byte = 0;
    while (!answer.ends_with('\n') && read(service, &byte, 1) == 1)
        answer += byte;
    return answer;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) return 2;
    const pid_t service = start(argv[1], argv[2]);
    if (service < 0) return 1;
    const std::string answer = answerTo(std::string(argv[3]) + "\n", argv[2]);

    kill(service, SIGTERM);
    int status = -1;
    waitpid(service, &status, 0);
    if (status != 0 || answer.empty()) return 1;
    std::fputs(answer.c_str(), stdout);
    return 0;
}
