#include "standalone/session/unread_samples.h"

#include <rapidjson/document.h>

#include <system_error>

#include "standalone/output/table_json.h"
#include "standalone/syntax/text_file.h"

namespace genostat::standalone {

std::filesystem::path unreadFileOf(const std::filesystem::path& csv) {
  std::filesystem::path file = csv;
  file += ".notread";
  return file;
}

std::vector<UnreadSample> readUnreadSamples(const std::filesystem::path& csv) {
  std::error_code unknown;
  // A pipe would be read until its writers have gone.
  if (!std::filesystem::is_regular_file(unreadFileOf(csv), unknown)) return {};
  const TextFile file = readTextFile(unreadFileOf(csv));
  if (!file.error.empty()) return {};
  std::vector<UnreadSample> samples;
  try {
    const rapidjson::Document document = parseJson(file.text);
    if (stringMember(document, "format") != "genostat-not-read") return {};
    const auto list = document.FindMember("samples");
    if (list == document.MemberEnd() || !list->value.IsArray()) return {};
    for (const rapidjson::Value& sample : list->value.GetArray()) {
      if (!sample.IsObject()) return {};
      samples.push_back(
          {std::string(stringMember(sample, "name")), std::string(stringMember(sample, "reason"))});
    }
  } catch (const JsonFormatError&) {
    return {};
  }
  return samples;
}

}  // namespace genostat::standalone
