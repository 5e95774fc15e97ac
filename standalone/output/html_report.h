// The output of a session as one page that needs nothing else.
#pragma once

#include <span>
#include <string>

namespace genostat::standalone {

// `items` are those of an output document, as JSON texts in their order; items of kinds that this version
// does not know are left out. The page depends on nothing but the arguments: no time, no machine. It
// forbids itself the network and every script but its own. Throws JsonFormatError for what is no item.
std::string renderHtmlReport(std::span<const std::string> items, const std::string& title);

}  // namespace genostat::standalone
