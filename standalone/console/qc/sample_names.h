// Names of samples as people say them.
//
// Sequencers' software names a file after its sample and adds where it comes from: "x_S1_L001_R1_001" is
// sample x, the first of its sheet, from lane 1, the first of two reads of each fragment. Archives and people
// write "x_1" and "x_2", or "x.R1" and "x.R2", for the two reads.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace genostat::standalone {

// What a name says when it is looked at alone.
struct SampleNameParts {
  std::string name;  // what is left of it, never empty
  int number = 0;    // of "_S1"; 0 where there is none, as below
  int lane = 0;      // of "_L001"
  int read = 0;      // 1 or 2
  enum class ReadMark {
    None,
    Digit,     // "_1", which may as well count something else
    Letter,    // "_R1" or ".R1"
    Sequencer  // "_R1_001"
  } mark = ReadMark::None;
};
SampleNameParts cleanSampleName(std::string_view name);

// What a name says among the others of a job.
struct CleanSample {
  std::string name;
  int lane = 0;
  int read = 0;                        // 1 or 2; 0 where the name does not say, or nothing confirms it
  std::optional<std::size_t> partner;  // the other read's index: it has the same name
};

// In the order of `names`. Different samples get different names unless `names` repeats one: where less would
// make them equal, lane, number or the whole name stay, and a whole name has no read beside it. Endings
// without "_001" count as reads only where both exist; those of one digit not where others continue them
// ("x_3"), and, if `reads` holds the number of reads of each sample, not where the two differ in it.
std::vector<CleanSample> cleanSampleNames(const std::vector<std::string>& names,
                                          const std::vector<std::uint64_t>& reads = {});

}  // namespace genostat::standalone
