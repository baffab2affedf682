#include "StandardOutput.h"

#include <cerrno>
#include <cstring>
#include <iostream>
#include <string>
#include <string_view>

#include "Failure.h"
#include "System.h"
#include "port/Shell.h"

namespace Tool {

StandardOutput::StandardOutput() : before_(std::cout.rdbuf(this)) {
    setp(buffer_.data(), buffer_.data() + buffer_.size());
    if (outputIsTerminal()) std::cout << std::unitbuf;
}

/// What was written before a failure is still written.
StandardOutput::~StandardOutput() {
    std::cout.flush();
    std::cout.rdbuf(before_);
}

void StandardOutput::finish() {
    std::cout.flush();
    if (error_ != 0 && error_ != EPIPE)
        throw Failure(std::string("cannot write to standard output: ") + std::strerror(error_));
}

int StandardOutput::overflow(int ch) {
    if (!send()) return traits_type::eof();
    if (!traits_type::eq_int_type(ch, traits_type::eof())) sputc(traits_type::to_char_type(ch));
    return traits_type::not_eof(ch);
}

int StandardOutput::sync() {
    return send() ? 0 : -1;
}

/// What cannot be written is dropped, and so is all behind it.
bool StandardOutput::send() {
    const std::string_view bytes(pbase(), static_cast<std::size_t>(pptr() - pbase()));
    if (error_ == 0 && !port::writeAll(static_cast<int>(port::Stream::output), bytes)) error_ = errno;
    setp(buffer_.data(), buffer_.data() + buffer_.size());
    return error_ == 0;
}

}  // namespace Tool
