#include "run/parameter_json.h"

#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

namespace genostat {

std::string parameterJson(const GenoJobSettings& settings) {
  rapidjson::Document document(rapidjson::kObjectType);
  auto& allocator = document.GetAllocator();
  const auto text = [&allocator](const std::string& value) {
    return rapidjson::Value(value.c_str(), allocator);
  };

  rapidjson::Value job(rapidjson::kObjectType);
  job.AddMember("adapter", rapidjson::StringRef(adapterKeyword(settings.adapterType())), allocator);
  job.AddMember("custom_sequence", text(settings.customAdapterSequence()), allocator);
  job.AddMember("CSV_Path", text(settings.csvFilePath()), allocator);
  if (settings.fastqFiles().empty()) {
    job.AddMember("folder", text(settings.fastqFolder()), allocator);
  } else {
    rapidjson::Value files(rapidjson::kArrayType);
    for (const std::string& file : settings.fastqFiles()) {
      files.PushBack(text(file), allocator);
    }
    job.AddMember("files", files, allocator);
  }
  rapidjson::Value jobs(rapidjson::kArrayType);
  jobs.PushBack(job, allocator);
  document.AddMember("fastq_data", jobs, allocator);

  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
  document.Accept(writer);
  return std::string(buffer.GetString(), buffer.GetSize());
}

std::string escapeQuotes(const std::string& json) {
  std::string escaped;
  escaped.reserve(2 * json.size());
  for (const char c : json) {
    if (c == '"') escaped += '\\';
    escaped += c;
  }
  return escaped;
}

}  // namespace genostat
