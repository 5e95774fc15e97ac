#include "standalone/data/column_loader.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "common/text/utf8.h"
#include "platform/memory.h"
#include "standalone/data/short_number.h"
#include "standalone/language/translation.h"
#include "standalone/syntax/diagnostic.h"

namespace genostat::standalone {

namespace {

constexpr double kMissing = std::numeric_limits<double>::quiet_NaN();

std::string_view fieldOf(const Record& record, std::size_t index) {
  return index < record.fields.size() ? record.fields[index] : std::string_view();
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

void ColumnLoader::add(std::span<const Record> cases, std::size_t index) {
  if (kind_ == ImportColumn::Kind::String) {
    for (const Record& record : cases) {
      addText(fieldOf(record, index), record.line);
    }
    return;
  }
  if (!holdsNumbers()) cases = addUntilNumber(cases, index);
  if (holdsNumbers()) addNumbers(cases, index);
}

void ColumnLoader::reserve(std::size_t cases) {
  constexpr std::size_t kLarge = std::size_t{4} << 20;
  if (holdsNumbers()) {
    const std::size_t before = column_.numbers.capacity();
    column_.numbers.reserve(cases);
    const std::size_t bytes = column_.numbers.capacity() * sizeof(double);
    if (column_.numbers.capacity() > before && bytes >= kLarge)
      platform::preferLargePages(column_.numbers.data(), bytes);
  } else {
    column_.texts.reserve(cases);
  }
}

void ColumnLoader::addText(std::string_view field, std::size_t line) {
  if (trimBlanks(field).empty()) field = {};
  if (longestText_ > 0 && field.size() > longestText_) {
    cut_.add(field, line);
    field = common::cutToBytes(field, longestText_);
  }
  column_.texts.emplace_back(field);
}

// Automatic type: keeps texts, and returns the cases from the first number on.
std::span<const Record> ColumnLoader::addUntilNumber(std::span<const Record> cases, std::size_t index) {
  for (std::size_t i = 0; i < cases.size(); ++i) {
    const std::string_view field = fieldOf(cases[i], index);
    const std::string_view trimmed = trimBlanks(field);
    if (parsePaddedNumber(trimmed, decimal_)) {
      column_.numbers.reserve(column_.texts.capacity());
      column_.numbers.assign(column_.texts.size(), kMissing);
      column_.texts = {};
      numbersSeen_ = true;
      return cases.subspan(i);
    }
    if (!trimmed.empty()) notNumbers_.add(trimmed, cases[i].line);
    addText(field, cases[i].line);
  }
  return {};
}

void ColumnLoader::addNumbers(std::span<const Record> cases, std::size_t index) {
  const std::size_t begin = column_.numbers.size();
  column_.numbers.resize(begin + cases.size());
  double* const values = column_.numbers.data() + begin;
  const char decimal = decimal_;
  std::size_t count = 0;
  int decimals = column_.decimals;
  for (std::size_t i = 0; i < cases.size(); ++i) {
    const std::string_view field = fieldOf(cases[i], index);
    ParsedNumber number = parseShortNumber(field, decimal);
    if (!number) number = parseUnusual(field, cases[i].line);
    values[i] = number ? number.value : kMissing;
    count += number ? 1U : 0U;
    decimals = std::max(decimals, number.decimals);
  }
  numberCount_ += count;
  column_.decimals = decimals;
}

ParsedNumber ColumnLoader::parseUnusual(std::string_view field, std::size_t line) {
  const std::string_view trimmed = trimBlanks(field);
  const ParsedNumber number = parsePaddedNumber(trimmed, decimal_);
  if (!number && !trimmed.empty()) notNumbers_.add(trimmed, line);
  return number;
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
  const std::string first = quoteForMessage(loss.value);
  const std::string line = std::to_string(loss.line);
  if (numeric) {
    return translatedCount(
        loss.count, "{1} value of {2} is not a number and became missing: {3} in line {4}",
        "{1} values of {2} are not numbers and became missing; the first is {3} in line {4}",
        {column_.name, first, line});
  }
  return translatedCount(
      loss.count, "{1} value of {2} is longer than {5} bytes and was cut: {3} in line {4}",
      "{1} values of {2} are longer than {5} bytes and were cut; the first is {3} in line {4}",
      {column_.name, first, line, std::to_string(longestText_)});
}

}  // namespace genostat::standalone
