#pragma once

#include <csignal>
#include <cstdint>
#include <exception>
#include <functional>
#include <iostream>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <type_traits>
#include <unistd.h>
#include <utility>
#include <vector>

namespace testing_support {

/// A line between two processes: each reads what the other one writes.
class Line {
public:
    Line() = default;
    Line(int in, int out) : in_(in), out_(out) {}
    Line(Line&& other) noexcept : in_(std::exchange(other.in_, -1)), out_(std::exchange(other.out_, -1)) {}
    Line& operator=(Line&& other) noexcept {
        std::swap(in_, other.in_);
        std::swap(out_, other.out_);
        return *this;
    }
    ~Line() { hangUp(); }

    void hangUp() {
        for (int* end : {&in_, &out_}) {
            if (*end >= 0) ::close(std::exchange(*end, -1));
        }
    }

    template <class Value>
    void say(const Value& value) {
        sayBytes(&value, sizeof value);
    }
    template <class Value>
    void say(const std::vector<Value>& values) {
        say(values.size());
        sayBytes(values.data(), values.size() * sizeof(Value));
    }
    /// Waits for it. Throws when the other process has ended.
    template <class Value>
    Value hear() {
        static_assert(std::is_trivially_copyable_v<Value>);
        Value value;
        hearBytes(&value, sizeof value);
        return value;
    }
    template <class Value>
    std::vector<Value> hearAll() {
        std::vector<Value> values(hear<std::size_t>());
        hearBytes(values.data(), values.size() * sizeof(Value));
        return values;
    }

private:
    void sayBytes(const void* bytes, std::size_t count) {
        const auto* next = static_cast<const char*>(bytes);
        while (count != 0) {
            const ssize_t written = ::write(out_, next, count);
            if (written <= 0) throw std::runtime_error("nobody listens");
            next += written;
            count -= static_cast<std::size_t>(written);
        }
    }
    void hearBytes(void* bytes, std::size_t count) {
        auto* next = static_cast<char*>(bytes);
        while (count != 0) {
            const ssize_t got = ::read(in_, next, count);
            if (got <= 0) throw std::runtime_error("nobody speaks");
            next += got;
            count -= static_cast<std::size_t>(got);
        }
    }

    int in_ = -1;
    int out_ = -1;
};

/// A copy of this process that does one piece of work, with a line to it. No store may be mounted here when it is
/// made. Waited for, or killed, when this ends.
class Forked {
public:
    /// `work` may throw: the process then ends with 1, and says why on standard error.
    explicit Forked(const std::function<void(Line& parent)>& work) {
        int down[2];
        int up[2];
        if (::pipe(down) != 0 || ::pipe(up) != 0) throw std::runtime_error("no pipe");
        process_ = ::fork();
        if (process_ < 0) throw std::runtime_error("no process");
        if (process_ == 0) {
            ::close(down[1]);
            ::close(up[0]);
            Line parent(down[0], up[1]);
            workAndEnd(work, parent);
        }
        ::close(down[0]);
        ::close(up[1]);
        line_ = Line(up[0], down[1]);
    }
    ~Forked() {
        if (process_ <= 0) return;
        kill();
        wait();
    }
    Forked(Forked&& other) noexcept : process_(std::exchange(other.process_, -1)), line_(std::move(other.line_)) {}
    Forked& operator=(Forked&&) = delete;

    Line& line() { return line_; }
    pid_t process() const { return process_; }
    void kill() { ::kill(process_, SIGKILL); }
    /// What it ended with, as waitpid says it: 0 when all went well.
    int wait() {
        int status = -1;
        ::waitpid(std::exchange(process_, -1), &status, 0);
        return status;
    }

private:
    /// Whatever is thrown ends the process here: it must not return into the copy of the test that it is.
    [[noreturn]] static void workAndEnd(const std::function<void(Line&)>& work, Line& parent) noexcept {
        std::signal(SIGPIPE, SIG_IGN);
        try {
            work(parent);
        } catch (const std::exception& failure) {
            std::cerr << "process " << ::getpid() << ": " << failure.what() << std::endl;
            ::_exit(1);
        }
        ::_exit(0);
    }

    pid_t process_ = -1;
    Line line_;
};

}  // namespace testing_support
