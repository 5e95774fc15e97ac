#include "standalone/services/session_adapter.h"

#include <utility>

#include "host/message_bus.h"
#include "platform/path_text.h"
#include "standalone/services/current_adapter.h"
#include "standalone/session/finished_job.h"

namespace genostat::standalone {

SessionAdapter::SessionAdapter(bool interactive, std::unique_ptr<EventLog> events)
    : interactive_(interactive), events_(std::move(events)) {
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
  const bool ended = message.kind == ClientMessage::Kind::Ended;
  // A job that begins has no files yet, and its predecessor's process has ended.
  if (message.kind == ClientMessage::Kind::Running) removeCancelledLeftovers();
  if (ended && !message.syntax.empty()) {
    message.failure = failureOf(message);
    removeLeftovers(platform::pathFromNarrow(message.csvFilePath));
  }
  const std::lock_guard lock(mutex_);
  // Under the lock, so that the log has the order of the queue.
  if (events_) events_->write(message);
  jobNames_.insert(message.jobName);
  if (ended && !message.csvFilePath.empty()) {
    if (message.syntax.empty()) cancelledFiles_.insert(message.csvFilePath);
    if (!message.syntax.empty() && message.failure.empty()) resultFiles_.insert(message.csvFilePath);
  }
  queue_.push_back(std::move(message));
  changed_.notify_all();
}

std::optional<ClientMessage> SessionAdapter::take(std::chrono::milliseconds timeout) {
  std::unique_lock lock(mutex_);
  takerWaits_ = true;
  changed_.notify_all();
  changed_.wait_for(lock, timeout, [this] { return !queue_.empty(); });
  takerWaits_ = false;
  if (queue_.empty()) return std::nullopt;
  ClientMessage message = std::move(queue_.front());
  queue_.pop_front();
  return message;
}

bool SessionAdapter::waitUntilIdle(std::chrono::milliseconds timeout) {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, timeout, [this] { return takerWaits_ && queue_.empty(); });
}

std::set<std::string> SessionAdapter::jobNames() const {
  const std::lock_guard lock(mutex_);
  return jobNames_;
}

std::set<std::string> SessionAdapter::resultFiles() const {
  const std::lock_guard lock(mutex_);
  return resultFiles_;
}

void SessionAdapter::forgetResultFile(const std::string& path) {
  const std::lock_guard lock(mutex_);
  resultFiles_.erase(path);
}

void SessionAdapter::removeCancelledLeftovers() {
  std::unique_lock lock(mutex_);
  const std::set<std::string> files = std::exchange(cancelledFiles_, {});
  lock.unlock();
  for (const std::string& file : files) {
    removeLeftovers(platform::pathFromNarrow(file));
  }
}

bool SessionAdapter::eventsFailed() const {
  const std::lock_guard lock(mutex_);
  return events_ && events_->failed();
}

}  // namespace genostat::standalone
