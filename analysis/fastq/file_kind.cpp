#include "analysis/fastq/file_kind.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "common/text/ascii.h"

namespace genostat::analysis {

namespace {

// With all zeros in it.
template <std::size_t kSize>
constexpr std::string_view bytes(const char (&text)[kSize]) {
  return {text, kSize - 1};
}

struct ForeignKind {
  std::string_view beginning;
  std::string_view sentence;
  std::string_view command{};  // makes reads of FILE
  std::size_t offset = 0;
};

// The longer of two that begin alike comes first.
constexpr auto kForeignKinds = std::to_array<ForeignKind>({
    {bytes("BAM\1"), "this is a BAM file", "samtools fastq FILE"},
    {bytes("CRAM"), "this is a CRAM file", "samtools fastq FILE"},
    {bytes("@HD\t"), "this is a SAM file", "samtools fastq FILE"},
    {bytes("@SQ\t"), "this is a SAM file", "samtools fastq FILE"},
    {bytes("@PG\t"), "this is a SAM file", "samtools fastq FILE"},
    {bytes("@CO\t"), "this is a SAM file", "samtools fastq FILE"},
    {bytes(">"), "this is a FASTA file: its sequences have no qualities"},
    {bytes("BZh"), "this is a bzip2 file", "bzip2 -dc FILE"},
    {bytes("\xFD\x37zXZ\0"), "this is an xz file", "xz -dc FILE"},
    {bytes("\x28\xB5\x2F\xFD"), "this is a zstd file", "zstd -dc FILE"},
    {bytes("PK\3\4"), "this is a zip archive", "unzip -p FILE"},
    {bytes("ustar"), "this is a tar archive", "tar -xOf FILE", 257},
    {bytes("\x1F\x8B"), "this was compressed with gzip twice", "gzip -dc FILE | gzip -dc"},
    {bytes("\x89HDF\r\n\x1A\n"),
     "this is an HDF5 file, such as FAST5: it holds signals, of which a basecaller makes reads"},
    {bytes("\x8BPOD\r\n\x1A\n"), "this is a POD5 file: it holds signals, of which a basecaller makes reads"},
    {bytes("<!doctype html"),
     "this is a web page, such as one that asks for a login: download the file again"},
    {bytes("<html"), "this is a web page, such as one that asks for a login: download the file again"},
    {bytes("version https://git-lfs"), "this is a pointer of Git LFS: \"git lfs pull\" gets the file"},
    {bytes("/annex/objects/"), "this is a pointer of git-annex: \"git annex get\" gets the file"},
    {bytes("\xEF\xBB\xBF@"), "a byte order mark stands before the first record", "tail -c +4 FILE"},
    {bytes("\xFF\xFE"), "this text is in UTF-16", "iconv -f UTF-16 -t UTF-8 FILE"},
    {bytes("\xFE\xFF"), "this text is in UTF-16", "iconv -f UTF-16 -t UTF-8 FILE"},
    {bytes("@\0"), "this text is in UTF-16", "iconv -f UTF-16LE -t UTF-8 FILE"},
});

std::string sentenceOf(const ForeignKind& kind) {
  std::string sentence(kind.sentence);
  if (!kind.command.empty()) {
    sentence.append("; \"").append(kind.command).append(" | genostat-analysis qc -\" measures its reads");
  }
  return sentence;
}

// A line's text, without its end; what is left of the text then follows.
std::string_view takeLine(std::string_view& text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

bool isSequence(std::string_view line) {
  return !line.empty() && std::ranges::all_of(line, [](char c) {
    const char letter = common::upperLetter(c);
    return letter >= 'A' && letter <= 'Z';
  });
}

// "@", two lines or more of letters, and then "+", which may lie beyond a beginning that was cut.
bool isWrapped(std::string_view text) {
  constexpr std::size_t kSurelyCut = 2048;
  const bool isCut = text.size() >= kSurelyCut;
  if (!takeLine(text).starts_with('@')) return false;
  int lines = 0;
  std::string_view line = takeLine(text);
  for (; isSequence(line); line = takeLine(text)) {
    ++lines;
  }
  return lines >= 2 && (line.starts_with('+') || (text.empty() && isCut));
}

}  // namespace

std::string foreignKind(std::string_view beginning) {
  for (const ForeignKind& kind : kForeignKinds) {
    if (beginning.size() > kind.offset &&
        common::startsWithIgnoreCase(beginning.substr(kind.offset), kind.beginning))
      return sentenceOf(kind);
  }
  std::string_view rest = beginning;
  if (beginning.starts_with('@') && takeLine(rest).find('\r') != std::string_view::npos) {
    return sentenceOf({{}, "lines end in a carriage return alone", "tr '\\r' '\\n' < FILE"});
  }
  if (isWrapped(beginning)) return sentenceOf({{}, "sequences stand on several lines", "seqtk seq FILE"});
  return {};
}

}  // namespace genostat::analysis
