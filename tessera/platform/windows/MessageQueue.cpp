#include "tessera/platform/windows/MessageQueue.h"

#include <algorithm>
#include <utility>

namespace Platform {

void MessageQueue::addSent(const Lock&, QueuedMessage message) {
    sent_.push_back(std::move(message));
    wake_.wake();
    answered_.notify_all();  // a thread that waits for an answer still answers what is sent to it
}

void MessageQueue::addPosted(const Lock&, QueuedMessage message) {
    posted_.push_back(std::move(message));
    wake_.wake();
}

std::optional<QueuedMessage> MessageQueue::takeSent(const Lock&) {
    auto taken = takeFirst(sent_);
    if (taken) lowerWakeWhenEmpty();
    return taken;
}

std::optional<QueuedMessage> MessageQueue::takePosted(const Lock&) {
    auto taken = takeFirst(posted_);
    if (taken) lowerWakeWhenEmpty();
    return taken;
}

std::optional<QueuedMessage> MessageQueue::takeFirst(std::deque<QueuedMessage>& messages) {
    if (messages.empty()) return std::nullopt;
    QueuedMessage first = std::move(messages.front());
    messages.pop_front();
    return first;
}

void MessageQueue::dropMessagesOf(const Lock& lock, HWND hwnd) {
    dropMessages(lock, sent_, hwnd);
    dropMessages(lock, posted_, hwnd);
    lowerWakeWhenEmpty();
}

void MessageQueue::dropMessages(const Lock& lock, std::deque<QueuedMessage>& messages, HWND hwnd) {
    const auto dropped = std::stable_partition(messages.begin(), messages.end(),
                                               [=](const QueuedMessage& message) { return message.msg.hwnd != hwnd; });
    std::for_each(dropped, messages.end(), [&](const QueuedMessage& message) {
        complete(lock, message.answer, std::nullopt);
        if (message.release != nullptr) message.release(message.msg.lParam);
    });
    messages.erase(dropped, messages.end());
}

void MessageQueue::setSource(const Lock&, std::shared_ptr<MessageSource> source) {
    if (source_) waitSet_.remove(source_->fd());
    source_ = nullptr;
    if (source) waitSet_.add(source->fd());
    source_ = std::move(source);
}

void MessageQueue::waitForAnswer(Lock& lock, const PendingAnswer& answer) {
    answered_.wait(lock, [&] { return answer.isDone || !sent_.empty(); });
}

void MessageQueue::complete(const Lock&, const std::shared_ptr<PendingAnswer>& answer, std::optional<LRESULT> result) {
    if (answer == nullptr) return;
    answer->isDone = true;
    answer->result = result;
    answer->sender->answered_.notify_all();
}

void MessageQueue::lowerWakeWhenEmpty() {
    if (sent_.empty() && posted_.empty()) wake_.clear();
}

}  // namespace Platform
