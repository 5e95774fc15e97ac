#pragma once

#include "tests/recording_host/host/language.h"
#include "tests/recording_host/record.h"

class ZorvwMsg : public recording::Object {
 public:
  using Object::Object;
};

class ZorvwMsgStartGenomicProcessing : public ZorvwMsg {
 public:
  static constexpr std::int32_t kMessageId = 1025;
  ZorvwMsgStartGenomicProcessing(const std::string& name, bool started)
      : ZorvwMsg("ZorvwMsgStartGenomicProcessing", name, started) {}
};

class ZorvwMsgEndGenomicProcessing : public ZorvwMsg {
 public:
  static constexpr std::int32_t kMessageId = 1026;
  ZorvwMsgEndGenomicProcessing(const std::string& name, const std::string& syntax, const std::string& csvPath,
                               std::int32_t workbook, std::int32_t paragraph)
      : ZorvwMsg("ZorvwMsgEndGenomicProcessing", name, syntax, csvPath, workbook, paragraph) {}
};

inline void ZORV_Adapter::postClientMessage(std::int32_t messageId, const ZorvwMsg* message) {
  recording::call("ZORV_Adapter.postClientMessage", messageId, message);
}
