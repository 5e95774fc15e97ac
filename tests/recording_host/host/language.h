#pragma once

#include "tests/recording_host/record.h"

class ZorvwMsg;

class ZORV_TokenSequence : public recording::Object {
 public:
  explicit ZORV_TokenSequence(bool current) : Object("ZORV_TokenSequence", current) {}
};

class ZORV_Adapter {
 public:
  int isInteractiveClient() const {
    return recording::answer(recording::state().interactive ? 1 : 0, "ZORV_Adapter.isInteractiveClient");
  }
  void postClientMessage(std::int32_t messageId, const ZorvwMsg* message);
  std::string recordedName() const { return "ZORV_Adapter"; }
};

inline ZORV_Adapter* GetAdapter() {
  static ZORV_Adapter adapter;
  return recording::answer(recording::state().adapter ? &adapter : nullptr, "GetAdapter");
}
