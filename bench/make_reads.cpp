// Makes inputs for benchmarks: make_reads MODEL READS SEED FILE
//
//   novaseq   150 bases, four quality levels, Illumina adapter
//   hiseq     150 bases, forty quality levels, Illumina adapter
//   nextera   150 bases, four quality levels, transposase adapter
//   nanopore  long reads: log-normal lengths, median 4,000, at most 100,000
//
// Short reads have what costs an analyser time in real ones: tiles in their headers, copies of earlier
// fragments, fragments shorter than the read (the adapter follows, then G), one frequent contaminant, errors
// where the quality is low, a few N.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <fstream>
#include <iostream>
#include <stdexcept>

#include "bench/read_model.h"
#include "platform/path_text.h"
#include "platform/running_program.h"

namespace {

using genostat::bench::QualityTrack;
using genostat::bench::Random;

constexpr std::size_t kShortLength = 150;
constexpr std::size_t kLongest = 100'000;
constexpr std::size_t kFlushSize = 1 << 20;

constexpr std::string_view kIlluminaAdapter =
    "AGATCGGAAGAGCACACGTCTGAACTCCAGTCACGGTTAACCATCTCGTATGCCGTCTTCTGCTTG";
constexpr std::string_view kTransposase =
    "CTGTCTCTTATACACATCTCCGAGCCCACGAGACGGTTAACCATCTCGTATGCCGTCTTCTGCTTG";

struct Model {
  std::string_view name;
  QualityTrack (*track)(Random&, std::size_t);  // null for long reads
  std::string_view adapter;
};

constexpr Model kModels[] = {
    {"novaseq", genostat::bench::binnedTrack, kIlluminaAdapter},
    {"hiseq", genostat::bench::fineTrack, kIlluminaAdapter},
    {"nextera", genostat::bench::binnedTrack, kTransposase},
    {"nanopore", nullptr, {}},
};

// Text that is written in large pieces.
class Output {
 public:
  explicit Output(const std::string& path)
      : path_(path), file_(genostat::platform::pathFromUtf8(path), std::ios::binary) {}

  Output& operator<<(std::string_view text) {
    buffer_ += text;
    return *this;
  }
  Output& operator<<(std::uint64_t number) { return add(number, 10); }
  Output& hexadecimal(std::uint64_t number) { return add(number, 16); }

  void record(std::string_view bases, std::string_view qualities) {
    *this << "\n" << bases << "\n+\n" << qualities << "\n";
    if (buffer_.size() >= kFlushSize) flush();
  }

  void finish() {
    flush();
    file_.close();
    if (!file_) throw std::runtime_error(path_ + ": writing failed");
  }

 private:
  Output& add(std::uint64_t number, int base) {
    char digits[24];
    buffer_.append(digits, std::to_chars(digits, digits + sizeof digits, number, base).ptr);
    return *this;
  }
  void flush() {
    file_.write(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
    buffer_.clear();
  }

  std::string path_;
  std::ofstream file_;
  std::string buffer_;
};

// A piece of the genome from one strand; `size` says where the adapter begins.
struct Fragment {
  std::size_t start = 0;
  std::size_t size = kShortLength;
  bool reverse = false;
};

class ShortReads {
 public:
  ShortReads(const Model& model, Random& random)
      : random_(random), adapter_(model.adapter), genome_(makeGenome(random, kGenomeSize)) {
    for (std::size_t i = 0; i < kTracks; ++i) {
      tracks_.push_back(model.track(random, kShortLength));
    }
  }

  void write(std::uint64_t reads, Output& out) {
    for (std::uint64_t n = 0; n < reads; ++n) {
      const QualityTrack& track = tracks_[random_.below(kTracks)];
      std::string bases = cut(nextFragment());
      for (const QualityTrack::WeakBase& weak : track.weak) {
        if (random_.chance(weak.errorRate)) bases[weak.position] = "ACGT"[random_.below(4)];
      }
      std::string qualities = track.codes;
      if (random_.chance(0.0005)) {
        const std::size_t at = random_.below(kShortLength);
        bases[at] = 'N';
        qualities[at] = '#';
      }
      writeHeader(n * kTiles / reads, out);
      out.record(bases, qualities);
    }
  }

 private:
  static constexpr std::size_t kGenomeSize = 20'000'000;
  static constexpr std::size_t kTracks = 30'000;
  static constexpr std::size_t kRemembered = 20'000;
  // Two surfaces of four swaths with 78 tiles each.
  static constexpr std::size_t kTilesPerSwath = 78;
  static constexpr std::size_t kTiles = 2 * 4 * kTilesPerSwath;

  Fragment nextFragment() {
    const double kind = random_.unit();
    if (kind < 0.08 && remembered_.size() == kRemembered) return remembered_[random_.below(kRemembered)];
    // A contaminant: always the same place.
    if (kind >= 0.08 && kind < 0.085) return {};
    Fragment fragment;
    fragment.start = random_.below(kGenomeSize - kShortLength);
    fragment.reverse = random_.chance(0.5);
    if (kind > 0.97) fragment.size = 20 + random_.below(kShortLength - 20);
    // Nothing but G: the instrument saw no light.
    if (kind > 0.9695 && kind <= 0.97) fragment.size = 0;
    if (remembered_.size() < kRemembered) {
      remembered_.push_back(fragment);
    } else {
      remembered_[random_.below(kRemembered)] = fragment;
    }
    return fragment;
  }

  std::string cut(const Fragment& fragment) const {
    std::string bases = genome_.substr(fragment.start, fragment.size);
    if (fragment.reverse) genostat::bench::reverseComplement(bases);
    if (fragment.size > 0 && fragment.size < kShortLength) bases += adapter_;
    bases.resize(kShortLength, 'G');
    return bases;
  }

  void writeHeader(std::uint64_t tile, Output& out) {
    if (tile != tile_) {
      tile_ = tile;
      x_ = y_ = 1000;
    }
    x_ += 9 + random_.below(390);
    if (x_ > 32'700) {
      x_ = 1000 + random_.below(390);
      y_ += 16;
    }
    const std::uint64_t swath = tile / kTilesPerSwath;
    const std::uint64_t name = (1 + swath / 4) * 1000 + (1 + swath % 4) * 100 + 1 + tile % kTilesPerSwath;
    out << "@GS1001:27:HBENCHDSX1:1:" << name << ":" << x_ << ":" << y_ << " 1:N:0:GGTTAACC+CCAATTGG";
  }

  Random& random_;
  std::string_view adapter_;
  std::string genome_;
  std::vector<QualityTrack> tracks_;
  std::vector<Fragment> remembered_;
  std::uint64_t tile_ = 0;
  std::uint64_t x_ = 1000;
  std::uint64_t y_ = 1000;
};

class LongReads {
 public:
  explicit LongReads(Random& random) : random_(random), genome_(makeGenome(random, kGenomeSize)) {
    for (std::size_t i = 0; i < kTracks; ++i) {
      tracks_.push_back(genostat::bench::longTrack(random, kTrackSize, levelOf(i)).codes);
    }
  }

  void write(std::uint64_t reads, Output& out) {
    for (std::uint64_t n = 0; n < reads; ++n) {
      const auto length =
          static_cast<std::size_t>(std::clamp(std::exp(random_.normal(8.3, 0.9)), 60.0, double{kLongest}));
      std::string bases = genome_.substr(random_.below(kGenomeSize - length), length);
      if (random_.chance(0.5)) genostat::bench::reverseComplement(bases);
      const auto kind =
          static_cast<std::size_t>(std::clamp(random_.normal(6.5, 2), 0.0, double{kTracks} - 1));
      const double errorRate = std::pow(10.0, -levelOf(kind) / 10);
      for (auto left = static_cast<std::size_t>(static_cast<double>(length) * errorRate); left > 0; --left) {
        bases[random_.below(length)] = "ACGT"[random_.below(4)];
      }
      out << "@";
      out.hexadecimal(random_.bits()) << "-";
      out.hexadecimal(random_.bits()) << " runid=27c0ffee5eed read=" << n << " ch=" << 1 + random_.below(512)
                                      << " start_time=2026-03-04T05:06:07Z";
      const std::string_view qualities =
          std::string_view(tracks_[kind]).substr(random_.below(kTrackSize - length));
      out.record(bases, qualities.substr(0, length));
    }
  }

 private:
  static constexpr std::size_t kGenomeSize = 5'000'000;
  static constexpr std::size_t kTracks = 12;
  static constexpr std::size_t kTrackSize = 400'000;

  static double levelOf(std::size_t track) { return 8 + 2.2 * static_cast<double>(track); }

  Random& random_;
  std::string genome_;
  std::vector<std::string> tracks_;
};

std::uint64_t number(const std::string& text) {
  std::uint64_t value = 0;
  const std::from_chars_result end = std::from_chars(text.data(), text.data() + text.size(), value);
  if (end.ec != std::errc() || end.ptr != text.data() + text.size()) {
    throw std::runtime_error("'" + text + "' is no number");
  }
  return value;
}

int run(const std::vector<std::string>& arguments) {
  const Model* model =
      arguments.size() != 4
          ? std::end(kModels)
          : std::find_if(std::begin(kModels), std::end(kModels),
                         [&](const Model& candidate) { return candidate.name == arguments[0]; });
  if (model == std::end(kModels)) {
    std::cerr << "Usage: make_reads novaseq|hiseq|nextera|nanopore READS SEED FILE\n";
    return 2;
  }
  Random random(number(arguments[2]));
  Output out(arguments[3]);
  if (model->track != nullptr) {
    ShortReads(*model, random).write(number(arguments[1]), out);
  } else {
    LongReads(random).write(number(arguments[1]), out);
  }
  out.finish();
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(genostat::platform::commandLineArguments(argc, argv));
  } catch (const std::exception& error) {
    std::cerr << "make_reads: " << error.what() << "\n";
    return 1;
  }
}
