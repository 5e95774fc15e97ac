#include "entry/record/geno_job_settings.h"

#include <array>
#include <charconv>
#include <limits>
#include <string_view>
#include <system_error>

#include "common/json/parse.h"
#include "host/control.h"

namespace {

constexpr std::array<const char*, 4> kAdapterKeywords = {"NONE", "ILLUMINA", "NEXTERA", "CUSTOM"};
constexpr std::array<const char*, 4> kRegressionKeywords = {"ENTER", "STEPWISE", "BACKWARD", "FORWARD"};

// The position of a keyword; 0, the default of both tables, for any other word.
std::uint32_t keywordIndex(const std::array<const char*, 4>& keywords, const std::string& keyword) {
  for (std::uint32_t i = 0; i < keywords.size(); ++i) {
    if (keyword == keywords[i]) return i;
  }
  return 0;
}

const char* keywordAt(const std::array<const char*, 4>& keywords, std::uint32_t index) {
  return index < keywords.size() ? keywords[index] : keywords[0];
}

// Reads a leading integer as atoi does, but clamps where atoi's result is undefined.
std::int32_t leadingInteger(std::string_view text) {
  const std::size_t start = text.find_first_not_of(" \t\n\v\f\r");
  if (start == std::string_view::npos) return 0;
  text.remove_prefix(start);
  const bool negative = text.front() == '-';
  // from_chars takes a minus sign but no plus sign.
  if (text.front() == '+') text.remove_prefix(1);
  if (!negative && !text.empty() && text.front() == '-') return 0;
  std::int32_t value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec == std::errc::result_out_of_range) {
    return negative ? std::numeric_limits<std::int32_t>::min() : std::numeric_limits<std::int32_t>::max();
  }
  return value;
}

void readIdentifier(const rapidjson::Value& metadata, const char* name, std::int32_t& identifier) {
  const auto member = metadata.FindMember(name);
  if (member != metadata.MemberEnd() && member->value.IsString()) {
    identifier = leadingInteger({member->value.GetString(), member->value.GetStringLength()});
  }
}

template <typename Options>
Options* findOrCreate(std::unique_ptr<Options>& options, bool create) {
  if (!options && create) options = std::make_unique<Options>();
  return options.get();
}

}  // namespace

AdapterType adapterTypeFromKeyword(const std::string& keyword) {
  return static_cast<AdapterType>(keywordIndex(kAdapterKeywords, keyword));
}

const char* adapterKeyword(AdapterType type) {
  return keywordAt(kAdapterKeywords, static_cast<std::uint32_t>(type));
}

RegressionMethod regressionMethodFromKeyword(const std::string& keyword) {
  return static_cast<RegressionMethod>(keywordIndex(kRegressionKeywords, keyword));
}

const char* regressionKeyword(RegressionMethod method) {
  return keywordAt(kRegressionKeywords, static_cast<std::uint32_t>(method));
}

GenoJobSettings::GenoJobSettings() : metadataJson_(GetMetaDataJson()) {
  if (metadataJson_.empty()) return;
  readMetadata();
  resetMetadataJson();
}

void GenoJobSettings::readMetadata() {
  const rapidjson::Document document = genostat::common::parseJson(metadataJson_).document;
  if (!document.IsObject()) return;
  const auto metadata = document.FindMember("job_metadata");
  if (metadata == document.MemberEnd() || !metadata->value.IsObject()) return;
  readIdentifier(metadata->value, "workbook_id", workbookId_);
  readIdentifier(metadata->value, "paragraph_id", paragraphId_);
}

void GenoJobSettings::setCustomAdapterSequence(std::string sequence) {
  customAdapterSequence_ = std::move(sequence);
  adapterType_ = AdapterType::CUSTOM;
}

DescriptivesOptions* GenoJobSettings::descriptives(bool create) {
  return findOrCreate(descriptives_, create);
}
FrequenciesOptions* GenoJobSettings::frequencies(bool create) {
  return findOrCreate(frequencies_, create);
}
CorrelationsOptions* GenoJobSettings::correlations(bool create) {
  return findOrCreate(correlations_, create);
}
RegressionOptions* GenoJobSettings::regression(bool create) {
  return findOrCreate(regression_, create);
}
