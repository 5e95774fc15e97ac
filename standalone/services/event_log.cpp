#include "standalone/services/event_log.h"

#include <chrono>
#include <cstdio>

#include "host/message_bus.h"
#include "platform/path_text.h"
#include "standalone/output/table_json.h"

namespace genostat::standalone {

namespace {

std::string utcNow() {
  using namespace std::chrono;
  const auto now = floor<milliseconds>(system_clock::now());
  const auto today = floor<days>(now);
  const year_month_day date(today);
  const hh_mm_ss time(now - today);
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02d.%03dZ", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                static_cast<int>(time.seconds().count()), static_cast<int>(time.subseconds().count()));
  return text;
}

}  // namespace

EventLog::EventLog(const std::filesystem::path& file) : stream_(file, std::ios::binary | std::ios::app) {}

void EventLog::write(const ClientMessage& message) {
  stream_ << eventLine(message, utcNow()) + '\n';
  stream_.flush();
}

std::string eventLine(const ClientMessage& message, const std::string& time) {
  const bool ended = message.kind == ClientMessage::Kind::Ended;
  rapidjson::StringBuffer buffer;
  JsonWriter writer(buffer);
  writer.StartObject();
  writer.Key("id");
  writer.Int(ended ? ZorvwMsgEndGenomicProcessing::kMessageId : ZorvwMsgStartGenomicProcessing::kMessageId);
  writeMember(writer, "time", time);
  writeMember(writer, "jobName", message.jobName);
  if (ended) {
    writeMember(writer, "message", message.syntax);
    writeMember(writer, "csvFilePath", platform::pathToUtf8(platform::pathFromNarrow(message.csvFilePath)));
    writer.Key("workbookId");
    writer.Int(message.workbookId);
    writer.Key("paragraphId");
    writer.Int(message.paragraphId);
  } else {
    writer.Key("started");
    writer.Bool(message.kind == ClientMessage::Kind::Running);
  }
  writer.EndObject();
  return std::string(buffer.GetString(), buffer.GetSize());
}

}  // namespace genostat::standalone
