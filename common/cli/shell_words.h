// Words as shells want them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace genostat::common {

std::string joinWords(const std::vector<std::string>& words, std::string_view separator = " ");
// One word, whatever it holds, for bash and zsh.
std::string shellQuoted(std::string_view text);
// One word, whatever it holds, for fish.
std::string fishQuoted(std::string_view text);
// A name that a shell function may bear.
std::string functionName(std::string program);

}  // namespace genostat::common
