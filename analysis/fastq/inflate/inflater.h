// Inflating raw deflate data and summing its text. One of the files beside this one implements it; the
// build chooses which. All give the same text and the same outcome for the same data.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

namespace genostat::analysis {

// One deflate stream after another. May move between threads, used by one at a time.
class Inflater {
 public:
  // How many bytes before the given input `Step::next` may lie: looked at in an earlier step, and not needed.
  static constexpr std::size_t kLookAhead = 8;

  enum class Outcome {
    NeedsInput,  // all input is taken, nothing more comes out of it
    OutputFull,
    Finished,  // the stream has ended
    Corrupt,   // what was made is right; a few hundred bytes of the text before the defect may be missing
  };

  struct Step {
    Outcome outcome = Outcome::Corrupt;
    const char* next = nullptr;  // the first byte of the input that is not taken
    std::size_t made = 0;        // bytes of text
  };

  // Ready for a first stream. Throws std::bad_alloc.
  Inflater();
  ~Inflater();
  Inflater(const Inflater&) = delete;
  Inflater& operator=(const Inflater&) = delete;

  // Forgets all and is ready for the next stream.
  void restart();

  // Goes on with the stream. `text` is not empty. Throws std::bad_alloc.
  Step inflate(std::span<const char> packed, std::span<char> text);

  // Inflates one whole stream on its own, faster than in steps; says whether it has exactly the text's size
  // and ends where `packed` ends. Call restart() before the next stream in steps. Throws std::bad_alloc.
  bool inflateWhole(std::span<const char> packed, std::span<char> text);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// The CRC-32 of gzip over `text`, going on from the sum of the text before it (0 at the start).
std::uint32_t crc32(std::uint32_t sum, std::span<const char> text);

}  // namespace genostat::analysis
