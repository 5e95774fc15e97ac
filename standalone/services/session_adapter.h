// The session's end of the message bus: modules post here, the command thread takes.
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <mutex>
#include <optional>
#include <stop_token>

#include "host/language.h"
#include "standalone/services/client_message.h"

namespace genostat::standalone {

// GetAdapter() answers this object while it lives; one at a time. All operations may be called
// by any thread.
class SessionAdapter : public ZORV_Adapter {
 public:
  // Gets each message before anybody can take it, on the sender's thread. The sender may hold locks of its
  // module, which must not be called back.
  using OnPost = std::function<void(ClientMessage&)>;

  // The file, where there is one, gets each message as a line at its end, written out at once. `onPost` may
  // be null.
  SessionAdapter(bool interactive, const std::filesystem::path& eventsFile, OnPost onPost);
  ~SessionAdapter() override;
  SessionAdapter(const SessionAdapter&) = delete;
  SessionAdapter& operator=(const SessionAdapter&) = delete;

  int isInteractiveClient() const override;
  void postClientMessage(std::int32_t messageId, const ZorvwMsg* message) override;

  void setInteractive(bool interactive);

  // The oldest message not yet taken; waits up to `timeout` for one.
  std::optional<ClientMessage> take(std::chrono::milliseconds timeout);
  // Waits for one until `stop`.
  std::optional<ClientMessage> take(const std::stop_token& stop);

  // Waits until all messages are taken and the taker has come back for more; false on time-out.
  bool waitUntilIdle(std::chrono::milliseconds timeout);

  // True once anything could not be written to the event file.
  bool eventsFailed() const;

 private:
  void post(ClientMessage message);
  // Waits by `wait`, which gets the condition.
  template <typename Wait>
  std::optional<ClientMessage> takeAfter(Wait wait);

  const OnPost onPost_;
  mutable std::mutex mutex_;  // guards all below
  std::condition_variable_any changed_;
  bool interactive_;
  std::optional<std::ofstream> events_;
  std::deque<ClientMessage> queue_;
  bool takerWaits_ = false;
};

}  // namespace genostat::standalone
