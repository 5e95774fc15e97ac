#include "standalone/services/client_message.h"

#include <fmt/chrono.h>

#include "host/message_bus.h"
#include "platform/path_text.h"
#include "standalone/output/table_json.h"

namespace genostat::standalone {

namespace {

std::string utcText(std::chrono::system_clock::time_point time) {
  using namespace std::chrono;
  const auto seconds = floor<std::chrono::seconds>(time);
  return fmt::format("{:%Y-%m-%dT%H:%M:%S}.{:03}Z", fmt::gmtime(system_clock::to_time_t(seconds)),
                     floor<milliseconds>(time - seconds).count());
}

}  // namespace

std::string eventLine(const ClientMessage& message, std::chrono::system_clock::time_point time) {
  const bool ended = message.kind == ClientMessage::Kind::Ended;
  return jsonObject([&](JsonWriter& writer) {
    writeMember(
        writer, "id",
        ended ? ZorvwMsgEndGenomicProcessing::kMessageId : ZorvwMsgStartGenomicProcessing::kMessageId);
    writeMember(writer, "time", utcText(time));
    writeMember(writer, "jobName", message.jobName);
    if (!ended) return writeMember(writer, "started", message.kind == ClientMessage::Kind::Running);
    writeMember(writer, "message", message.syntax);
    writeMember(writer, "csvFilePath", platform::pathToUtf8(platform::pathFromNarrow(message.csvFilePath)));
    writeMember(writer, "workbookId", message.workbookId);
    writeMember(writer, "paragraphId", message.paragraphId);
  });
}

}  // namespace genostat::standalone
