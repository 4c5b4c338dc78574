// A text file of any bytes: its lines are the same wherever in the file they stand, are UTF-8
// without line ends, and their fields are what stands between the delimiters. The input is the
// delimiter, the choices, and then the file.

#include <fuzzer/FuzzedDataProvider.h>
#include <unicode/unistr.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/text_file.h"
#include "store/delimited_line.h"
#include "tests/fuzz/reference.h"
#include "tests/support/temp_folder.h"

namespace {

using quillary::reference::Expect;
using Lines = std::vector<std::string>;

Lines Read(const std::string& bytes) {
  static const quillary::test::TempFolder folder;
  folder.WriteFile("text", bytes);
  quillary::TextFile file;
  Expect(file.Open(folder.File("text")) == quillary::RunTimeError::None, "a file can be opened");
  Lines lines;
  std::string line;
  while (file.Next(line)) lines.push_back(line);
  Expect(file.Error() == quillary::RunTimeError::None, "a file can be read");
  return lines;
}

// The same lines, behind one that fills the first part that is read up to some characters.
void ExpectSameBehindALongLine(const std::string& bytes, const Lines& lines, std::size_t before) {
  constexpr std::size_t PartSize = 1U << 16U;
  const std::string_view mark = std::string_view(bytes).substr(0, 2);
  std::string longer;
  if (mark == "\xFF\xFE" || mark == "\xFE\xFF") {
    const std::string_view wide =
        mark == "\xFF\xFE" ? std::string_view("x\0", 2) : std::string_view("\0x", 2);
    longer = mark;
    for (std::size_t i = 0; i < (PartSize - before) / 2; ++i) longer += wide;
    longer += mark == "\xFF\xFE" ? std::string_view("\n\0", 2) : std::string_view("\0\n", 2);
    longer += bytes.substr(2);
  } else {
    const std::size_t start = bytes.rfind("\xEF\xBB\xBF", 0) == 0 ? 3 : 0;
    longer = std::string(PartSize - before, 'x') + '\n' + bytes.substr(start);
  }
  Lines behind = Read(longer);
  Expect(!behind.empty(), "the long line is there");
  behind.erase(behind.begin());
  Expect(behind == lines, "a line reads the same wherever it stands");
}

void ExpectUtf8(const std::string& line) {
  Expect(line.find_first_of("\r\n") == std::string::npos, "a line has no line end");
  std::string again;
  icu::UnicodeString::fromUTF8(line).toUTF8String(again);
  Expect(again == line, "a line is UTF-8");
}

void ExpectFields(const std::string& line, const quillary::LineFormat& format,
                  const std::vector<int>& choices) {
  const std::size_t count = quillary::CountFields(line, format);
  Expect(count >= 1 && count <= quillary::MaxImportFields, "a line has 1 to 20 fields");
  const std::vector<std::string> fields = quillary::SplitLine(line, format, count);
  Expect(fields.size() == count, "as many fields as were counted");
  std::string joined;
  for (const std::string& field : fields) {
    Expect(field.find(format.Delimiter) == std::string::npos, "no delimiter is in a field");
    if (&field != fields.data()) joined += format.Delimiter;
    joined += field;
  }
  if (!format.HasOuterQuotes) {
    Expect(line.compare(0, joined.size(), joined) == 0, "a line begins with its fields");
    Expect(joined == line || count == quillary::MaxImportFields, "nothing of a line is lost");
  } else {
    Expect(line.find(joined) != std::string::npos, "fields are a part of their line");
    Expect(line.size() <= joined.size() + 8 || count == quillary::MaxImportFields,
           "only two characters do not belong to fields");
    ExpectUtf8(joined);
  }
  const quillary::FieldArray record =
      quillary::MakeRecord(quillary::SplitLine(line, format, choices.size()), choices);
  for (const std::string& value : record) {
    Expect(value == "NULL NAME" || line.find(value) != std::string::npos, "a field is of the line");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  quillary::LineFormat format;
  format.HasOuterQuotes = input.ConsumeBool();
  // The long line costs time: not for all.
  constexpr std::size_t MostBefore = 15;
  const auto before = input.ConsumeIntegralInRange<std::size_t>(0, 255);
  std::vector<int> choices(input.ConsumeIntegralInRange<std::size_t>(1, quillary::MaxImportFields));
  for (int& choice : choices) {
    choice = input.ConsumeIntegralInRange(0, static_cast<int>(quillary::NoneOfTheAbove));
  }
  // Typed, and so UTF-8.
  icu::UnicodeString::fromUTF8(input.ConsumeRandomLengthString()).toUTF8String(format.Delimiter);
  if (format.Delimiter.empty()) format.Delimiter = ",";
  const std::string bytes = input.ConsumeRemainingBytesAsString();

  const Lines lines = Read(bytes);
  for (const std::string& line : lines) {
    ExpectUtf8(line);
    ExpectFields(line, format, choices);
  }
  if (before <= MostBefore) ExpectSameBehindALongLine(bytes, lines, before);
  return 0;
}
