#pragma once

#include <utility>

namespace Platform::port {

/// Owns a file descriptor of the system or, where it has handles instead, a handle. Of an event, to be readable means
/// to be signalled.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int value) : value_(value) {}
    Descriptor(Descriptor&& other) noexcept : value_(other.release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(value_, other.value_);
        return *this;
    }
    ~Descriptor();

    int get() const { return value_; }
    bool isOpen() const { return value_ >= 0; }
    int release() { return std::exchange(value_, -1); }

private:
    int value_ = -1;
};

}  // namespace Platform::port
