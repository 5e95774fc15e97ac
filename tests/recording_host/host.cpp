// What the recording host's headers leave open.
#include <algorithm>
#include <cctype>

#include "tests/recording_host/host/common_blocks.h"
#include "tests/recording_host/host/platform_library.h"
#include "tests/recording_host/host/syntax_parser.h"

namespace recording {

namespace {

std::string upperCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::toupper(c); });
  return text;
}

}  // namespace

void* commonBlock(const std::string& name) {
  static char blocks[64];
  static std::map<std::string, std::size_t> numbers;
  call(name);
  return &blocks[numbers.emplace(name, numbers.size()).first->second];
}

int compareIgnoringCase(const std::string& a, const std::string& b) {
  const int difference = upperCase(a).compare(upperCase(b));
  return (difference > 0) - (difference < 0);
}

}  // namespace recording

bool ParamObj::getUpStringGeneric(std::string& value) const {
  return give("getUpStringGeneric", value, recording::upperCase(first()));
}

bool ParamObj::getNumberList(std::vector<double>& values) const {
  std::vector<double> numbers;
  for (const std::string& text : texts_) {
    numbers.push_back(std::atof(text.c_str()));
  }
  return give("getNumberList", values, numbers);
}

bool ParamObj::getStringAndQual(ParamObj& qualifier) const {
  return give("getStringAndQual", qualifier, ParamObj(first(), {texts_.begin() + 1, texts_.end()}));
}
