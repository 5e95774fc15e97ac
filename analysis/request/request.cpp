#include "analysis/request/request.h"

#include <rapidjson/error/en.h>

#include "analysis/request/base64.h"
#include "analysis/request/failure.h"
#include "common/json/parse.h"
#include "common/text/printable_text.h"

namespace genostat::analysis {

namespace {

using rapidjson::Value;

[[noreturn]] void refuse(const std::string& sentence) {
  throw Failure(ExitCode::InvalidConfiguration, {}, sentence);
}

rapidjson::Document parseDocument(std::string_view payload) {
  const std::optional<std::string> json = decodeBase64(payload);
  if (!json) throw Failure(ExitCode::InvalidJson, {}, "the payload is not base64");
  common::ParsedJson parsed = common::parseJson(*json);
  if (parsed.result.IsError()) {
    throw Failure(ExitCode::InvalidJson, {},
                  std::string("the payload is not JSON: ") +
                      rapidjson::GetParseError_En(parsed.result.Code()) + " (at byte " +
                      std::to_string(parsed.result.Offset()) + ")");
  }
  return std::move(parsed.document);
}

// The one object in "fastq_data", or null.
const Value* parameterObject(const Value& root) {
  if (!root.IsObject()) return nullptr;
  const auto data = root.FindMember("fastq_data");
  if (data == root.MemberEnd() || !data->value.IsArray() || data->value.Size() != 1) return nullptr;
  const Value& object = data->value[0];
  return object.IsObject() ? &object : nullptr;
}

const Value* find(const Value& object, const char* name) {
  const auto member = object.FindMember(name);
  return member == object.MemberEnd() ? nullptr : &member->value;
}

std::string requiredText(const Value* value, const std::string& name) {
  if (value == nullptr) refuse("the request has no member \"" + name + "\"");
  if (!value->IsString()) refuse("the request's member \"" + name + "\" is not a string");
  std::string text(value->GetString(), value->GetStringLength());
  // A path would silently end there.
  if (text.find('\0') != std::string::npos) {
    refuse("the request's member \"" + name + "\" holds a zero character");
  }
  return text;
}

Adapter parseAdapter(const Value& object) {
  const std::string name = requiredText(find(object, "adapter"), "adapter");
  const std::string sequence = requiredText(find(object, "custom_sequence"), "custom_sequence");
  const std::optional<AdapterKind> kind = adapterKindFromName(name);
  if (!kind)
    refuse("the request's adapter " + common::quotedName(name) +
           " is none of NONE, ILLUMINA, NEXTERA, CUSTOM");
  if (*kind == AdapterKind::Custom) return customAdapter(sequence);
  return {*kind, {}};
}

}  // namespace

Request parseRequest(std::string_view payload) {
  const rapidjson::Document document = parseDocument(payload);
  const Value* object = parameterObject(document);
  if (object == nullptr) refuse("the request has no \"fastq_data\" array of one object");
  Request request;
  request.csvPath = requiredText(find(*object, "CSV_Path"), "CSV_Path");
  if (request.csvPath.empty()) refuse("the request's member \"CSV_Path\" is empty");
  const Value* files = find(*object, "files");
  const Value* folder = find(*object, "folder");
  if ((files == nullptr) == (folder == nullptr)) {
    refuse(files == nullptr ? "the request has neither \"files\" nor \"folder\""
                            : "the request has both \"files\" and \"folder\"");
  }
  if (folder != nullptr) {
    request.folder = requiredText(folder, "folder");
  } else {
    if (!files->IsArray()) refuse("the request's member \"files\" is not an array");
    for (const Value& file : files->GetArray()) {
      request.files.push_back(requiredText(&file, "files"));
    }
  }
  // Last: a wrong adapter in an otherwise wrong request is the smaller news.
  request.adapter = parseAdapter(*object);
  return request;
}

std::optional<std::string> csvPathOfRequest(std::string_view payload) {
  try {
    const rapidjson::Document document = parseDocument(payload);
    const Value* object = parameterObject(document);
    if (object == nullptr) return std::nullopt;
    std::string path = requiredText(find(*object, "CSV_Path"), "CSV_Path");
    if (path.empty()) return std::nullopt;
    return path;
  } catch (const Failure&) {
    return std::nullopt;
  }
}

}  // namespace genostat::analysis
