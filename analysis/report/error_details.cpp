#include "analysis/report/error_details.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <array>

#include "common/text/utf8.h"

namespace genostat::analysis {

namespace {

struct Placeholder {
  ExitCode code;
  const char* name;
};

// General is missing here: its text is completed by the sentence itself.
constexpr std::array kPlaceholders = {
    Placeholder{ExitCode::FileNotFound, "FILE_PATH"},
    Placeholder{ExitCode::InvalidFastq, "FILE_NAME"},
    Placeholder{ExitCode::PermissionDenied, "RESOURCE_PATH"},
    Placeholder{ExitCode::NoFastqFiles, "FOLDER_PATH"},
    Placeholder{ExitCode::OutputFailed, "OUTPUT_PATH"},
    Placeholder{ExitCode::InvalidAdapter, "ADAPTER_SEQUENCE"},
    Placeholder{ExitCode::OutOfMemory, "RESOURCE_NAME"},
};

void writeText(rapidjson::Writer<rapidjson::StringBuffer>& writer, std::string_view text) {
  const std::string repaired = common::toValidUtf8(text);
  writer.String(repaired.data(), static_cast<rapidjson::SizeType>(repaired.size()));
}

}  // namespace

std::string errorDetailsPath(std::string_view resultPath) {
  return std::string(resultPath.substr(0, resultPath.rfind('.'))) + ".error";
}

std::string errorDetails(const Failure& failure) {
  rapidjson::StringBuffer json;
  rapidjson::Writer<rapidjson::StringBuffer> writer(json);
  writer.StartObject();
  for (const Placeholder& placeholder : kPlaceholders) {
    if (placeholder.code == failure.code()) {
      writer.Key(placeholder.name);
      writeText(writer, failure.subject());
    }
  }
  writer.Key("ERROR_MESSAGE");
  writeText(writer, failure.what());
  writer.EndObject();
  return std::string(json.GetString(), json.GetSize());
}

}  // namespace genostat::analysis
