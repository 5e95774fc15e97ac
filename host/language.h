// Host language library: the tokens of the running command, and the adapter
// through which a module reaches the host's client.
#pragma once

#include <cstdint>
#include <memory>

class ZorvwMsg;

// The tokens of the command that runs. Lives on the command thread, for one command.
class ZORV_TokenSequence {
 public:
  // `current`: take the tokens of the running command (otherwise the sequence is empty).
  explicit ZORV_TokenSequence(bool current);
  ~ZORV_TokenSequence();
  ZORV_TokenSequence(const ZORV_TokenSequence&) = delete;
  ZORV_TokenSequence& operator=(const ZORV_TokenSequence&) = delete;

  struct Contents;
  const Contents& contents() const { return *contents_; }

 private:
  std::unique_ptr<Contents> contents_;
};

// The host side of a session. Any thread may call its operations.
class ZORV_Adapter {
 public:
  virtual ~ZORV_Adapter() = default;

  // Zero when the host runs in command-line mode, without a client to report to.
  virtual int isInteractiveClient() const = 0;
  // Delivers a message before it returns; the sender keeps the message object.
  // A module may hold locks of its own meanwhile: the host must not call back into it.
  virtual void postClientMessage(std::int32_t messageId, const ZorvwMsg* message) = 0;
};

// The adapter of the current session, or null.
ZORV_Adapter* GetAdapter();
