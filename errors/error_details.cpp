#include "errors/error_details.h"

#include <array>
#include <cstdio>
#include <iostream>

#include "common/json/parse.h"
#include "entry/record/texts.h"
#include "platform/files.h"

namespace genostat {

namespace {

std::string textOf(const rapidjson::Value& value) {
  return std::string(value.GetString(), value.GetStringLength());
}

ErrorDetails parse(const std::string& content) {
  const rapidjson::Document document = common::parseJson(content).document;
  ErrorDetails details;
  if (!document.IsObject()) return details;
  for (const auto& member : document.GetObject()) {
    if (member.value.IsString()) details.emplace_back(textOf(member.name), textOf(member.value));
  }
  return details;
}

}  // namespace

std::string errorDetailsPath(const std::string& resultPath) {
  return resultPath.substr(0, resultPath.rfind('.')) + ".error";
}

ErrorDetails readErrorDetails(const std::string& resultPath) {
  const std::string path = errorDetailsPath(resultPath);
  if (!platform::fileExists(path)) {
    std::cout << texts::kErrorFileNotFound << std::flush;
    return {};
  }
  std::string content;
  {
    const auto file = platform::openRegularFile(path);
    std::array<char, 4096> buffer;
    while (const std::size_t size = file ? std::fread(buffer.data(), 1, buffer.size(), file.get()) : 0)
      content.append(buffer.data(), size);
  }
  std::cout << texts::kErrorFileContent << content << std::flush;
  platform::removeIfExists(path);
  return parse(content);
}

std::string replacePlaceholders(const std::string& text, const ErrorDetails& details) {
  std::string filled = text;
  for (const auto& [name, value] : details) {
    const std::string key = "{{" + name + "}}";
    for (std::size_t hit = filled.find(key); hit != std::string::npos;
         hit = filled.find(key, hit + value.size())) {
      filled.replace(hit, key.size(), value);
    }
  }
  return filled;
}

}  // namespace genostat
