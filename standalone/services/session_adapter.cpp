#include "standalone/services/session_adapter.h"

#include <utility>

#include "host/message_bus.h"
#include "standalone/services/current.h"

namespace genostat::standalone {

SessionAdapter::SessionAdapter(bool interactive, const std::filesystem::path& eventsFile, OnPost onPost)
    : onPost_(std::move(onPost)), interactive_(interactive) {
  if (!eventsFile.empty()) events_.emplace(eventsFile, std::ios::binary | std::ios::app);
  setCurrentAdapter(this);
}

SessionAdapter::~SessionAdapter() {
  setCurrentAdapter(nullptr);
}

int SessionAdapter::isInteractiveClient() const {
  const std::lock_guard lock(mutex_);
  return interactive_ ? 1 : 0;
}

void SessionAdapter::setInteractive(bool interactive) {
  const std::lock_guard lock(mutex_);
  interactive_ = interactive;
}

void SessionAdapter::postClientMessage(std::int32_t messageId, const ZorvwMsg* message) {
  if (message == nullptr) return;
  // The message id says which class the sender made.
  if (messageId == ZorvwMsgStartGenomicProcessing::kMessageId) {
    const auto& start = static_cast<const ZorvwMsgStartGenomicProcessing&>(*message);
    const auto kind = start.started ? ClientMessage::Kind::Running : ClientMessage::Kind::Queued;
    post({kind, start.jobName, {}, {}, -1, -1, {}});
  } else if (messageId == ZorvwMsgEndGenomicProcessing::kMessageId) {
    const auto& end = static_cast<const ZorvwMsgEndGenomicProcessing&>(*message);
    post({ClientMessage::Kind::Ended,
          end.jobName,
          end.message,
          end.csvFilePath,
          end.workbookId,
          end.paragraphId,
          {}});
  }
}

void SessionAdapter::post(ClientMessage message) {
  if (onPost_) onPost_(message);
  const std::lock_guard lock(mutex_);
  // Under the lock, so that the file has the order of the queue.
  if (events_) *events_ << eventLine(message, std::chrono::system_clock::now()) + '\n' << std::flush;
  queue_.push_back(std::move(message));
  changed_.notify_all();
}

template <typename Wait>
std::optional<ClientMessage> SessionAdapter::takeAfter(Wait wait) {
  std::unique_lock lock(mutex_);
  takerWaits_ = true;
  changed_.notify_all();
  wait(lock, [this] { return !queue_.empty(); });
  takerWaits_ = false;
  if (queue_.empty()) return std::nullopt;
  ClientMessage message = std::move(queue_.front());
  queue_.pop_front();
  return message;
}

std::optional<ClientMessage> SessionAdapter::take(std::chrono::milliseconds timeout) {
  return takeAfter([&](auto& lock, auto hasMessage) { changed_.wait_for(lock, timeout, hasMessage); });
}

std::optional<ClientMessage> SessionAdapter::take(const std::stop_token& stop) {
  return takeAfter([&](auto& lock, auto hasMessage) { changed_.wait(lock, stop, hasMessage); });
}

bool SessionAdapter::waitUntilIdle(std::chrono::milliseconds timeout) {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, timeout, [this] { return takerWaits_ && queue_.empty(); });
}

bool SessionAdapter::eventsFailed() const {
  const std::lock_guard lock(mutex_);
  return events_ && !*events_;
}

}  // namespace genostat::standalone
