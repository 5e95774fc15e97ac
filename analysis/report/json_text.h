// A JSON document that is written from its start to its end.
#pragma once

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>

#include "analysis/metrics/position_groups.h"
#include "common/text/number_text.h"
#include "common/text/utf8.h"

namespace genostat::analysis {

// Puts values into the document, one overload for each type that reports are made of. Invalid UTF-8 is
// replaced.
class JsonText {
 public:
  void value(std::string_view text) {
    const std::string repaired = common::toValidUtf8(text);
    writer_.String(repaired.data(), static_cast<rapidjson::SizeType>(repaired.size()));
  }
  void value(std::uint64_t number) { writer_.Uint64(number); }
  void value(int number) { writer_.Int(number); }
  // Six decimals are more than any of the measures means.
  void value(double number) {
    if (std::isfinite(number)) {
      rawNumber(common::shortestText(std::round(number * 1e6) / 1e6 + 0.0));
    } else {
      writer_.Null();
    }
  }
  void value(const PositionGroup& group) {
    writer_.StartArray();
    value(group.first);
    value(group.last);
    writer_.EndArray();
  }
  void nothing() { writer_.Null(); }
  void rawNumber(const std::string& text) {
    writer_.RawValue(text.data(), text.size(), rapidjson::kNumberType);
  }

  template <typename Value>
  void member(const char* name, const Value& content) {
    writer_.Key(name);
    value(content);
  }
  template <typename Write>
  void object(Write write) {
    writer_.StartObject();
    write();
    writer_.EndObject();
  }
  template <typename Write>
  void objectMember(const char* name, Write write) {
    writer_.Key(name);
    object(write);
  }
  // `write` puts one value for each element.
  template <typename Values, typename Write>
  void arrayMember(const char* name, const Values& values, Write write) {
    writer_.Key(name);
    writer_.StartArray();
    for (const auto& element : values) {
      write(element);
    }
    writer_.EndArray();
  }
  template <typename Values>
  void arrayMember(const char* name, const Values& values) {
    arrayMember(name, values, [this](const auto& element) { value(element); });
  }
  void key(std::string_view name) { writer_.Key(name.data(), static_cast<rapidjson::SizeType>(name.size())); }

  std::string text() const { return {buffer_.GetString(), buffer_.GetSize()}; }

 private:
  rapidjson::StringBuffer buffer_;
  rapidjson::Writer<rapidjson::StringBuffer> writer_{buffer_};
};

}  // namespace genostat::analysis
