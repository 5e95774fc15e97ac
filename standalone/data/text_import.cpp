#include "standalone/data/text_import.h"

#include <algorithm>
#include <cstdint>
#include <istream>
#include <optional>
#include <span>
#include <streambuf>
#include <system_error>
#include <utility>

#include "platform/input_file.h"
#include "standalone/language/translation.h"

namespace genostat::standalone {

namespace {

// Lines with another number of values than there are columns.
struct RaggedLines {
  std::size_t count = 0;
  std::size_t firstLine = 0;
  std::size_t firstValues = 0;

  void add(std::size_t line, std::size_t values) {
    if (count++ > 0) return;
    firstLine = line;
    firstValues = values;
  }

  std::string warning(std::size_t columns, const std::string& consequence) const {
    const std::string text =
        translated("line {1} has {2} for {3}; {4}",
                   {std::to_string(firstLine), translatedCount(firstValues, "{1} value", "{1} values"),
                    translatedCount(columns, "{1} variable", "{1} variables"), consequence});
    if (count == 1) return text;
    return translated("{1} ({2} such lines)", {text, std::to_string(count)});
  }
};

platform::InputFile openRegular(const std::filesystem::path& file) {
  std::error_code ignored;
  const std::filesystem::file_status status = std::filesystem::status(file, ignored);
  if (std::filesystem::is_directory(status)) throw ImportError(translated("it is a folder"));
  const bool isOther = std::filesystem::exists(status) && !std::filesystem::is_regular_file(status);
  try {
    std::optional<platform::InputFile> input;
    if (!isOther) input.emplace(file);
    if (!input || !input->isRegular()) throw ImportError(translated("it is no regular file"));
    return *std::move(input);
  } catch (const std::system_error& failure) {
    throw ImportError(translated("it cannot be opened: {1}", {translatedReason(failure.code().message())}));
  }
}

// A file's bytes for a stream.
class FileBuffer : public std::streambuf {
 public:
  explicit FileBuffer(const platform::InputFile& file) : file_(file) {}

 protected:
  std::streamsize xsgetn(char* into, std::streamsize wanted) override {
    const std::span<char> all(into, static_cast<std::size_t>(wanted));
    std::size_t filled = 0;
    while (filled < all.size()) {
      const std::size_t size = file_.readAt(offset_, all.subspan(filled));
      if (size == 0) break;
      filled += size;
      offset_ += size;
    }
    return static_cast<std::streamsize>(filled);
  }

 private:
  const platform::InputFile& file_;
  std::uint64_t offset_ = 0;
};

// One reading of the file: hands each case's fields to the loaders that want them.
class ImportPass {
 public:
  ImportPass(const ImportRequest& request, const std::vector<ColumnLoader*>& loaders)
      : columnCount_(loaders.size()) {
    const platform::InputFile file = openRegular(request.file);
    fileSize_ = file.size();
    FileBuffer buffer(file);
    std::istream input(&buffer);
    RecordReader reader(input, request.format);
    std::size_t recordNumber = 0;
    std::vector<Record> cases;
    while (true) {
      const std::span<const Record> records = reader.next();
      if (records.empty()) break;
      empty_ = false;
      cases.clear();
      for (const Record& record : records) {
        if (++recordNumber >= request.firstCase && !record.isBlank) cases.push_back(record);
      }
      if (caseCount_ + cases.size() > expectedCases_) expectCases(reader, loaders);
      addCases(cases, loaders);
    }
  }

  bool fileIsEmpty() const { return empty_; }
  std::size_t caseCount() const { return caseCount_; }

  void appendWarnings(std::vector<std::string>& warnings) const {
    if (caseCount_ == 0) warnings.push_back(translated("it holds no cases"));
    if (short_.count > 0)
      warnings.push_back(short_.warning(columnCount_, translated("the others are missing")));
    if (long_.count > 0)
      warnings.push_back(long_.warning(columnCount_, translated("the values beyond are left out")));
  }

 private:
  void addCases(std::span<const Record> cases, const std::vector<ColumnLoader*>& loaders) {
    for (std::size_t i = 0; i < loaders.size(); ++i) {
      if (loaders[i] != nullptr) loaders[i]->add(cases, i);
    }
    for (const Record& record : cases) {
      const std::size_t count = record.fields.size();
      if (count < columnCount_) short_.add(record.line, count);
      if (count > columnCount_) long_.add(record.line, count);
    }
    caseCount_ += cases.size();
  }

  // Growing by what the file's rest will hold, if it goes on like this, moves few values and
  // leaves little room unused. The first lines say little, so it grows in steps.
  void expectCases(const RecordReader& reader, const std::vector<ColumnLoader*>& loaders) {
    constexpr std::size_t kFirstStep = 1024;
    constexpr double kLeastGrowth = 1.125;
    constexpr double kMostGrowth = 16;
    constexpr double kMargin = 1.01;
    if (caseCount_ == 0) {
      expectedCases_ = kFirstStep;
    } else {
      const double share = static_cast<double>(reader.bytesRead()) / static_cast<double>(fileSize_);
      const double growth = std::clamp(kMargin / share, kLeastGrowth, kMostGrowth);
      expectedCases_ = static_cast<std::size_t>(static_cast<double>(caseCount_) * growth);
    }
    for (ColumnLoader* loader : loaders) {
      if (loader != nullptr) loader->reserve(expectedCases_);
    }
  }

  std::uint64_t fileSize_ = 0;
  std::size_t expectedCases_ = 0;
  std::size_t columnCount_;
  bool empty_ = true;
  std::size_t caseCount_ = 0;
  RaggedLines short_;
  RaggedLines long_;
};

// Null: a column that is not to be read.
std::vector<ColumnLoader*> pointersTo(std::vector<std::optional<ColumnLoader>>& loaders) {
  std::vector<ColumnLoader*> pointers;
  pointers.reserve(loaders.size());
  for (std::optional<ColumnLoader>& loader : loaders) {
    pointers.push_back(loader ? &*loader : nullptr);
  }
  return pointers;
}

// Reads the columns again whose texts were given up for numbers.
void reload(const ImportRequest& request, std::size_t caseCount,
            std::vector<std::optional<ColumnLoader>>& loaders) {
  std::vector<std::optional<ColumnLoader>> again(loaders.size());
  bool any = false;
  for (std::size_t i = 0; i < loaders.size(); ++i) {
    if (loaders[i]->isNumeric(request.percentage) || !loaders[i]->needsReload()) continue;
    ImportColumn asText{request.columns[i].name, ImportColumn::Kind::String, {}, 0};
    again[i].emplace(asText, request.decimal);
    loaders[i].reset();  // before the second reading, so that memory never holds both
    any = true;
  }
  if (!any) return;
  const ImportPass pass(request, pointersTo(again));
  if (pass.caseCount() != caseCount) throw ImportError(translated("it was changed while it was read"));
  for (std::size_t i = 0; i < loaders.size(); ++i) {
    if (again[i]) loaders[i] = std::move(again[i]);
  }
}

}  // namespace

ImportResult importText(const ImportRequest& request) {
  std::vector<std::optional<ColumnLoader>> loaders;
  for (const ImportColumn& column : request.columns) {
    loaders.emplace_back(ColumnLoader(column, request.decimal));
  }
  ImportResult result;
  const ImportPass pass(request, pointersTo(loaders));
  if (pass.fileIsEmpty()) throw ImportError(translated("it is empty"));
  pass.appendWarnings(result.warnings);
  reload(request, pass.caseCount(), loaders);

  result.dataset.caseCount = pass.caseCount();
  for (std::optional<ColumnLoader>& loader : loaders) {
    const bool numeric = loader->isNumeric(request.percentage);
    std::string note = loader->note(numeric);
    if (!note.empty()) result.warnings.push_back(std::move(note));
    result.dataset.columns.push_back(loader->take(numeric));
  }
  return result;
}

}  // namespace genostat::standalone
