// A terminal in miniature: rows of ASCII, and the few escape sequences that our programs send.
#pragma once

#include <algorithm>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace genostat::test {

class Screen {
 public:
  Screen(std::size_t width, std::size_t height) : width_(width), rows_(height, std::string(width, ' ')) {}

  void feed(std::string_view bytes) {
    for (std::size_t at = 0; at < bytes.size(); ++at) {
      if (bytes[at] == '\x1B') {
        const std::size_t end = bytes.find_first_not_of("[?0123456789;", at + 1);
        obey(bytes.substr(at + 2, end - at - 1));
        at = end;
      } else if (bytes[at] == '\r') {
        column_ = 0;
      } else if (bytes[at] == '\n') {
        nextRow();
      } else {
        put(bytes[at]);
      }
    }
  }

  // The rows without blanks at their ends, up to the last that is not empty.
  std::string text() const {
    std::string text;
    for (const std::string& row : rows_) {
      text += row.substr(0, row.find_last_not_of(' ') + 1) + '\n';
    }
    return text.substr(0, text.find_last_not_of('\n') + 2);
  }

 private:
  void put(char character) {
    if (column_ == width_ && wraps_) {
      column_ = 0;
      nextRow();
    }
    column_ = std::min(column_, width_ - 1);
    rows_[row_][column_++] = character;
  }

  void nextRow() {
    if (++row_ < rows_.size()) return;
    row_ = rows_.size() - 1;
    rows_.erase(rows_.begin());
    rows_.emplace_back(width_, ' ');
  }

  void obey(std::string_view sequence) {
    if (sequence == "?7l" || sequence == "?7h") {
      wraps_ = sequence.back() == 'h';
    } else if (sequence == "K" || sequence == "J") {
      std::fill(rows_[row_].begin() + static_cast<std::ptrdiff_t>(std::min(column_, width_)),
                rows_[row_].end(), ' ');
      for (std::size_t row = row_ + 1; sequence == "J" && row < rows_.size(); ++row) {
        rows_[row].assign(width_, ' ');
      }
    } else if (sequence.ends_with('A')) {
      row_ -= std::min(row_, static_cast<std::size_t>(std::stoi(std::string(sequence))));
    } else {
      throw std::invalid_argument("no such sequence: " + std::string(sequence));
    }
  }

  const std::size_t width_;
  std::vector<std::string> rows_;
  std::size_t row_ = 0;
  std::size_t column_ = 0;
  bool wraps_ = true;
};

}  // namespace genostat::test
