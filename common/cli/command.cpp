// The options that a command may have.
#include <CLI/CLI.hpp>

#include <charconv>
#include <optional>
#include <system_error>
#include <utility>

#include "common/cli/command_line.h"
#include "common/cli/shell_words.h"
#include "common/text/ascii.h"
#include "common/text/nearest_word.h"
#include "common/text/printable_text.h"

namespace genostat::common {

namespace {

std::optional<std::size_t> indexOf(std::string_view word, std::span<const std::string_view> words) {
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (equalsIgnoreCase(word, words[i])) return i;
  }
  return std::nullopt;
}

// Decimal, also with zeros in front, which the library would take for the sign of an octal number.
std::optional<int> wholeNumber(std::string_view text, int least, int most) {
  int number = 0;
  const char* const end = text.data() + text.size();
  const std::from_chars_result result = std::from_chars(text.data(), end, number);
  if (result.ec != std::errc() || result.ptr != end || number < least || number > most) return std::nullopt;
  return number;
}

CLI::Validator notEmpty(Translate translated) {
  return {[translated](const std::string& value) {
            return value.empty() ? translated("the value is empty", {}) : std::string();
          },
          ""};
}

}  // namespace

std::string describeChoice(std::string_view choices, std::string_view found,
                           std::span<const std::string_view> words, Translate translated) {
  const std::string quoted = quoteForMessage(found);
  const auto meant = nearestWord(found, words);
  return meant ? translated("expected {1}, found {2}; did you mean {3}?", {choices, quoted, *meant})
               : translated("expected {1}, found {2}", {choices, quoted});
}

CLI::Option* Command::addText(const char* name, std::string& value, const char* type,
                              const std::string& description) const {
  return app_.add_option(name, value, description)
      ->type_name(type)
      ->take_last()
      ->check(notEmpty(translated_));
}

CLI::Option* Command::addChoice(const char* name, std::span<const std::string_view> words,
                                const std::string& description, std::function<void(std::size_t)> take) const {
  const std::vector<std::string> names(words.begin(), words.end());
  const std::string most = joinWords({names.begin(), names.end() - 1}, ", ");
  const auto check = [words, choices = translated_("{1} or {2}", {most, names.back()}),
                      translated = translated_](const std::string& value) {
    return indexOf(value, words) ? std::string() : describeChoice(choices, value, words, translated);
  };
  return app_
      .add_option_function<std::string>(
          name,
          [words, take = std::move(take)](const std::string& value) {
            if (const auto index = indexOf(value, words)) take(*index);
          },
          description)
      ->type_name(joinWords(names, "|"))
      ->take_last()
      ->check(check);
}

CLI::Option* Command::addCount(const char* name, int least, int most, const std::string& description,
                               std::function<void(int)> take) const {
  const auto check = [least, most, translated = translated_](const std::string& value) {
    if (wholeNumber(value, least, most)) return std::string();
    return translated("expected a whole number from {1} to {2}, found {3}",
                      {std::to_string(least), std::to_string(most), quoteForMessage(value)});
  };
  return app_
      .add_option_function<std::string>(
          name,
          [least, most, take = std::move(take)](const std::string& value) {
            if (const auto number = wholeNumber(value, least, most)) take(*number);
          },
          description)
      ->type_name("N")
      ->take_last()
      ->check(check);
}

CLI::Option* Command::addFile(std::string& file, const std::string& description) const {
  return app_.add_option("FILE", file, description)->type_name("")->required()->check(notEmpty(translated_));
}

CLI::Option* Command::addFiles(std::vector<std::string>& files, const std::string& description) const {
  // By itself the library would take some names, such as {} and %%, for signs of its own.
  const CLI::callback_t take = [&files](const CLI::results_t& given) {
    files = given;
    return true;
  };
  return app_.add_option("FILE", take, description)
      ->type_name("TEXT")
      ->expected(1, -1)
      ->allow_extra_args()
      ->required()
      ->check(notEmpty(translated_));
}

}  // namespace genostat::common
