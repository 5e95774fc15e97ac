// How files of reads are named: .fastq or .fq, with or without .gz after it, in any case.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace genostat::common {

bool hasFastqEnding(std::string_view fileName);

// The name without these endings; whole where nothing would be left.
std::string sampleName(std::string_view fileName);

// The names of the files of reads in a folder, UTF-8, in byte order. Hidden files are other programs' notes,
// such as those that some systems leave beside each file; they do not count.
std::vector<std::string> fastqNamesIn(const std::filesystem::path& folder, std::error_code& error);

}  // namespace genostat::common
