// One column of a text file on its way into a dataset.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "standalone/data/dataset.h"
#include "standalone/data/number_text.h"
#include "standalone/data/record_reader.h"

namespace genostat::standalone {

// A column as the import asks for it.
struct ImportColumn {
  enum class Kind { Auto, Numeric, String };

  std::string name;
  Kind kind = Kind::Auto;
  std::optional<int> decimals;  // Numeric: shown decimals; none: as the values have
  std::size_t longestText = 0;  // String: longer values are cut to so many bytes; 0: no limit
};

// Takes a column's values one by one and decides its type at the end.
//
// A column of automatic type keeps texts until the first number comes and numbers from then on,
// never both. A column that turns out to be a string variable after numbers were seen therefore
// has to be read again, as a String column.
class ColumnLoader {
 public:
  ColumnLoader(const ImportColumn& wanted, char decimal);

  // Takes the field at `index` of each record; an empty one of records that have less.
  void add(std::span<const Record> cases, std::size_t index);
  // Makes room for so many values altogether.
  void reserve(std::size_t cases);

  // Automatic type: at least `percentage` % of the values that are not empty are numbers (and at
  // least one is), or all are empty: a measure that was never taken is no text.
  bool isNumeric(double percentage) const;
  // For a column that is not numeric: its texts are gone.
  bool needsReload() const { return numberCount_ > 0; }

  // The finished column, as isNumeric says.
  Column take(bool numeric);
  // Values lost or changed, as a sentence without a final period; empty when none were.
  std::string note(bool numeric) const;

 private:
  // How many values went wrong, and the first of them.
  struct Loss {
    std::size_t count = 0;
    std::size_t line = 0;
    std::string value;

    void add(std::string_view text, std::size_t where);
  };

  void addText(std::string_view field, std::size_t line);
  std::span<const Record> addUntilNumber(std::span<const Record> cases, std::size_t index);
  void addNumbers(std::span<const Record> cases, std::size_t index);
  ParsedNumber parseUnusual(std::string_view field, std::size_t line);
  bool holdsNumbers() const { return numbersSeen_ || kind_ == ImportColumn::Kind::Numeric; }

  ImportColumn::Kind kind_;
  std::optional<int> wantedDecimals_;
  std::size_t longestText_;
  char decimal_;
  Column column_;
  bool numbersSeen_ = false;
  std::size_t numberCount_ = 0;
  Loss notNumbers_;
  Loss cut_;
};

}  // namespace genostat::standalone
