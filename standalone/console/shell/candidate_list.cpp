#include "standalone/console/shell/candidate_list.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "common/text/printable_text.h"
#include "common/text/utf8.h"
#include "standalone/language/translation.h"

namespace genostat::standalone {

namespace {

constexpr std::size_t kMostListed = 120;
constexpr std::size_t kListGap = 2;

// A folder's slash belongs to its name.
std::string_view lastPart(std::string_view path) {
  if (path.empty()) return path;
  const std::size_t slash = path.substr(0, path.size() - 1).rfind('/');
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::size_t listedWidth(const std::string& text) {
  return static_cast<std::size_t>(common::displayWidth(text));
}

}  // namespace

std::string candidateList(const std::vector<std::string>& candidates, int columns) {
  std::vector<std::string> listed;
  std::size_t widest = 0;
  for (std::size_t i = 0; i < std::min(candidates.size(), kMostListed); ++i) {
    listed.push_back(common::printableText(lastPart(candidates[i])));
    widest = std::max(widest, listedWidth(listed.back()));
  }
  const auto space = static_cast<std::size_t>(std::max(columns, 1)) + kListGap - 1;
  const std::size_t perRow = std::max<std::size_t>(1, space / (widest + kListGap));
  const std::size_t rows = (listed.size() + perRow - 1) / perRow;
  std::string list;
  for (std::size_t row = 0; row < rows; ++row) {
    for (std::size_t i = row; i < listed.size(); i += rows) {
      list += listed[i];
      if (i + rows < listed.size()) list.append(widest + kListGap - listedWidth(listed[i]), ' ');
    }
    list += '\n';
  }
  if (listed.size() < candidates.size()) {
    list += translated("and {1} more", {std::to_string(candidates.size() - listed.size())}) + '\n';
  }
  return list;
}

}  // namespace genostat::standalone
