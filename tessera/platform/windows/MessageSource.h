#pragma once

namespace Platform {

/// Something outside that posts messages to the windows of one thread, while that thread pumps.
class MessageSource {
public:
    virtual ~MessageSource() = default;

    /// Readable when `collect` may find something to post.
    virtual int fd() const = 0;
    /// Posts what there is, or the first part of it; the rest at the next call. Called on the windows' thread,
    /// when it pumps and no message waits. Cheap when there is nothing.
    virtual void collect() noexcept = 0;
};

}  // namespace Platform
