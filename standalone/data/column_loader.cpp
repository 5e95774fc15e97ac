#include "standalone/data/column_loader.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "standalone/data/number_text.h"
#include "standalone/syntax/diagnostic.h"

namespace genostat::standalone {

namespace {

constexpr double kMissing = std::numeric_limits<double>::quiet_NaN();

// The longest beginning of at most `bytes` bytes that does not cut a character.
std::string_view cutAtCharacter(std::string_view text, std::size_t bytes) {
  if (text.size() <= bytes) return text;
  while (bytes > 0 && (static_cast<unsigned char>(text[bytes]) & 0xC0U) == 0x80U) {
    --bytes;
  }
  return text.substr(0, bytes);
}

}  // namespace

void ColumnLoader::Loss::add(std::string_view text, std::size_t where) {
  if (count++ > 0) return;
  line = where;
  value = text.substr(0, 200);
}

ColumnLoader::ColumnLoader(const ImportColumn& wanted, char decimal)
    : kind_(wanted.kind),
      wantedDecimals_(wanted.decimals),
      longestText_(wanted.longestText),
      decimal_(decimal) {
  column_.name = wanted.name;
}

void ColumnLoader::add(std::string_view field, std::size_t line) {
  if (kind_ == ImportColumn::Kind::String) {
    addText(field, line);
    return;
  }
  addNumber(field, line);
}

void ColumnLoader::addText(std::string_view field, std::size_t line) {
  if (longestText_ > 0 && field.size() > longestText_) {
    cut_.add(field, line);
    field = cutAtCharacter(field, longestText_);
  }
  column_.texts.emplace_back(field);
}

void ColumnLoader::addNumber(std::string_view field, std::size_t line) {
  const std::string_view trimmed = trimBlanks(field);
  const std::optional<ParsedNumber> number = parseNumber(trimmed, decimal_);
  if (!number && !trimmed.empty()) notNumbers_.add(trimmed, line);
  if (numberCount_ == 0 && kind_ == ImportColumn::Kind::Auto) {
    if (!number) {
      column_.texts.emplace_back(trimmed.empty() ? std::string_view() : field);
      return;
    }
    column_.numbers.assign(column_.texts.size(), kMissing);
    column_.texts = {};
  }
  column_.numbers.push_back(number ? number->value : kMissing);
  if (!number) return;
  ++numberCount_;
  column_.decimals = std::max(column_.decimals, number->decimals);
}

bool ColumnLoader::isNumeric(double percentage) const {
  if (kind_ != ImportColumn::Kind::Auto) return kind_ == ImportColumn::Kind::Numeric;
  const auto numbers = static_cast<double>(numberCount_);
  const auto values = static_cast<double>(numberCount_ + notNumbers_.count);
  return values == 0 || (numberCount_ > 0 && numbers * 100 >= percentage * values);
}

Column ColumnLoader::take(bool numeric) {
  column_.type = numeric ? Column::Type::Numeric : Column::Type::String;
  if (numeric && column_.numbers.size() < column_.texts.size()) {
    column_.numbers.assign(column_.texts.size(), kMissing);
    column_.texts = {};
  }
  if (wantedDecimals_) column_.decimals = *wantedDecimals_;
  return std::move(column_);
}

std::string ColumnLoader::note(bool numeric) const {
  const Loss& loss = numeric ? notNumbers_ : cut_;
  if (loss.count == 0) return {};
  const std::string first = (loss.count == 1 ? ": " : "; the first is ") + quoteForMessage(loss.value) +
                            " in line " + std::to_string(loss.line);
  const std::string values = loss.count == 1 ? "1 value of " : std::to_string(loss.count) + " values of ";
  const bool one = loss.count == 1;
  if (numeric)
    return values + column_.name +
           (one ? " is not a number and became missing" : " are not numbers and became missing") + first;
  return values + column_.name + (one ? " is" : " are") + " longer than " + std::to_string(longestText_) +
         " bytes and " + (one ? "was" : "were") + " cut" + first;
}

}  // namespace genostat::standalone
