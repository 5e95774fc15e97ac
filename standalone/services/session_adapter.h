// The session's end of the message bus: modules post here, the command thread takes.
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>

#include "host/language.h"
#include "standalone/services/client_message.h"
#include "standalone/services/event_log.h"

namespace genostat::standalone {

// GetAdapter() answers this object while it lives; one at a time. All operations may be called
// by any thread. Posting never calls back: the sender may hold locks of its module.
//
// A job's file names come from the clock, and a job may get the names of an earlier one whose files
// are gone. So files are looked after while the sender waits in its post: then no later job runs.
class SessionAdapter : public ZORV_Adapter {
 public:
  // `events` may be null.
  SessionAdapter(bool interactive, std::unique_ptr<EventLog> events);
  ~SessionAdapter() override;
  SessionAdapter(const SessionAdapter&) = delete;
  SessionAdapter& operator=(const SessionAdapter&) = delete;

  int isInteractiveClient() const override;
  void postClientMessage(std::int32_t messageId, const ZorvwMsg* message) override;

  void setInteractive(bool interactive);

  // The oldest message not yet taken; waits up to `timeout` for one.
  std::optional<ClientMessage> take(std::chrono::milliseconds timeout);

  // Waits until all messages are taken and the taker has come back for more; false on time-out.
  bool waitUntilIdle(std::chrono::milliseconds timeout);

  // Every job name that a message has named so far.
  std::set<std::string> jobNames() const;
  // The result files that wait for their syntax to run, in the system's narrow encoding.
  std::set<std::string> resultFiles() const;
  // The file is done with; its name may come to mean another program's file.
  void forgetResultFile(const std::string& path);
  // Removes what the analyses of cancelled jobs left. To be called when no job runs.
  void removeCancelledLeftovers();

  // True once a line of the event log could not be written.
  bool eventsFailed() const;

 private:
  void post(ClientMessage message);

  mutable std::mutex mutex_;  // guards all below
  std::condition_variable changed_;
  bool interactive_;
  std::unique_ptr<EventLog> events_;
  std::deque<ClientMessage> queue_;
  bool takerWaits_ = false;
  std::set<std::string> jobNames_;
  std::set<std::string> resultFiles_;
  std::set<std::string> cancelledFiles_;  // whose analyses may still have to end
};

}  // namespace genostat::standalone
