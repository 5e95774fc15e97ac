#include "analysis/report/error_details.h"

#include <array>
#include <utility>

#include "analysis/report/json_text.h"

namespace genostat::analysis {

namespace {

// General is missing here: its text is completed by the sentence itself.
constexpr std::array<std::pair<ExitCode, const char*>, 7> kPlaceholders = {{
    {ExitCode::FileNotFound, "FILE_PATH"},
    {ExitCode::InvalidFastq, "FILE_NAME"},
    {ExitCode::PermissionDenied, "RESOURCE_PATH"},
    {ExitCode::NoFastqFiles, "FOLDER_PATH"},
    {ExitCode::OutputFailed, "OUTPUT_PATH"},
    {ExitCode::InvalidAdapter, "ADAPTER_SEQUENCE"},
    {ExitCode::OutOfMemory, "RESOURCE_NAME"},
}};

}  // namespace

std::string errorDetailsPath(std::string_view resultPath) {
  return std::string(resultPath.substr(0, resultPath.rfind('.'))) + ".error";
}

std::string errorDetails(const Failure& failure) {
  JsonText json;
  json.object([&] {
    for (const auto& [code, name] : kPlaceholders) {
      if (code == failure.code()) json.member(name, failure.subject());
    }
    json.member("ERROR_MESSAGE", failure.what());
  });
  return json.text();
}

}  // namespace genostat::analysis
