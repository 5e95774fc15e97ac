#include "analysis/fastq/fastq_error.h"

namespace genostat::analysis {

std::string characterText(char c) {
  if (c == '\n' || c == '\r') return "a line end";
  const auto code = static_cast<unsigned char>(c);
  if (code > ' ' && code <= '~') return std::string("'") + c + "'";
  return "character code " + std::to_string(code);
}

}  // namespace genostat::analysis
