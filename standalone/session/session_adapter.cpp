#include "standalone/session/session_adapter.h"

#include <utility>

#include "host/message_bus.h"
#include "standalone/session/current_adapter.h"

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
    post({kind, start.jobName, {}, {}, -1, -1});
  } else if (messageId == ZorvwMsgEndGenomicProcessing::kMessageId) {
    const auto& end = static_cast<const ZorvwMsgEndGenomicProcessing&>(*message);
    post({ClientMessage::Kind::Ended, end.jobName, end.message, end.csvFilePath, end.workbookId,
          end.paragraphId});
  }
}

void SessionAdapter::post(ClientMessage message) {
  const std::lock_guard lock(mutex_);
  // Under the lock, so that the log has the order of the queue.
  if (events_) events_->write(message);
  ledger_.jobNames.insert(message.jobName);
  if (!message.csvFilePath.empty()) ledger_.csvFilePaths.insert(message.csvFilePath);
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

SessionAdapter::Ledger SessionAdapter::ledger() const {
  const std::lock_guard lock(mutex_);
  return ledger_;
}

void SessionAdapter::forgetCsvFile(const std::string& path) {
  const std::lock_guard lock(mutex_);
  ledger_.csvFilePaths.erase(path);
}

bool SessionAdapter::eventsFailed() const {
  const std::lock_guard lock(mutex_);
  return events_ && events_->failed();
}

}  // namespace genostat::standalone
