#include "errors/error_details.h"

#include <fstream>
#include <iostream>
#include <iterator>

#include "entry/record/texts.h"
#include "platform/files.h"

namespace genostat {

std::string errorDetailsPath(const std::string& resultPath) {
  return resultPath.substr(0, resultPath.rfind('.')) + ".error";
}

rapidjson::Document readErrorDetails(const std::string& resultPath) {
  rapidjson::Document details;
  const std::string path = errorDetailsPath(resultPath);
  if (!platform::fileExists(path)) {
    std::cout << texts::kErrorFileNotFound << std::flush;
    return details;
  }
  std::string content;
  {
    std::ifstream file(path, std::ios::binary);
    content.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  }
  // Iterative, since nothing bounds the depth of what the analysis wrote.
  details.Parse<rapidjson::kParseIterativeFlag>(content.data(), content.size());
  std::cout << texts::kErrorFileContent << content << std::flush;
  platform::removeIfExists(path);
  return details;
}

std::string replacePlaceholders(const std::string& text, const rapidjson::Document& details) {
  std::string filled = text;
  if (!details.IsObject()) return filled;
  for (const auto& member : details.GetObject()) {
    if (!member.value.IsString()) continue;
    const std::string key = "{{" + std::string(member.name.GetString(), member.name.GetStringLength()) + "}}";
    const std::string value(member.value.GetString(), member.value.GetStringLength());
    for (std::size_t hit = filled.find(key); hit != std::string::npos;
         hit = filled.find(key, hit + value.size())) {
      filled.replace(hit, key.size(), value);
    }
  }
  return filled;
}

}  // namespace genostat
