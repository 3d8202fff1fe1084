#include "batch/list_file.h"

#include <charconv>
#include <limits>
#include <new>
#include <optional>
#include <system_error>
#include <utility>

#include "batch/list_line.h"
#include "batch/session.h"
#include "log/output_file.h"
#include "log/regular_file.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "text/strings.h"
#include "text/windows1252.h"

namespace sheafwork {
namespace {

constexpr std::string_view kEntryPrefix = "DWG#";

constexpr std::string_view kFileName = "BATCH FILE NAME";
constexpr std::string_view kNumFiles = "BATCH NUM FILES";
constexpr std::string_view kWinSize = "BATCH WIN SIZE";

// A field of a record kept under a key: either text or a flag.
template <typename Record>
struct KeyedField {
  std::string_view key;
  std::string Record::*text = nullptr;
  bool Record::*flag = nullptr;
};

// The log settings, written in this order between "BATCH FILE NAME" and
// "BATCH NUM FILES".
constexpr KeyedField<LogSettings> kLogFields[] = {
    {"BATCH JOURNAL LOG ON?", nullptr, &LogSettings::JournalLogOn},
    {"BATCH JOURNAL LOG FILENAME", &LogSettings::JournalLogFileName},
    {"BATCH JOURNAL HEADER", &LogSettings::JournalHeader},
    {"BATCH JOURNAL USER COMMENT", &LogSettings::JournalUserComment},
    {"BATCH JOURNAL APPEND?", nullptr, &LogSettings::JournalAppend},
    {"BATCH ERROR LOG ON?", nullptr, &LogSettings::ErrorLogOn},
    {"BATCH ERROR LOG FILENAME", &LogSettings::ErrorLogFileName},
    {"BATCH ERROR HEADER", &LogSettings::ErrorHeader},
    {"BATCH ERROR APPEND?", nullptr, &LogSettings::ErrorAppend},
};

// The fields of an entry, after "DWG#<n>" in the key, in the order written.
constexpr KeyedField<BatchEntry> kEntryFields[] = {
    {"FILENAME", &BatchEntry::FileName},
    {"LAYOUT", &BatchEntry::Layout},
    {"PLOTSETUP", &BatchEntry::PlotSetup},
    {"PLOTDEVICE", &BatchEntry::PlotDevice},
    {"LAYERS", &BatchEntry::Layers},
    {"PLOTAREA", &BatchEntry::PlotArea},
    {"PLOTSCALE", &BatchEntry::PlotScale},
    {"SCALECUSTOM", nullptr, &BatchEntry::ScaleCustom},
    {"SCALELW", nullptr, &BatchEntry::ScaleLW},
    {"PLOTFILE", &BatchEntry::PlotFile},
};

// Stores a value into a field; false when a flag gets a value that is not one.
template <typename Record>
bool Store(const KeyedField<Record>& field, Record& record, const ListValue& value) {
  if (field.text) {
    record.*field.text = ValueAsText(value);
    return true;
  }
  const auto flag = ValueAsBoolean(value);
  if (flag) record.*field.flag = *flag;
  return flag.has_value();
}

template <typename Record>
std::string Format(const KeyedField<Record>& field, std::string_view key, const Record& record) {
  return field.text ? FormatListLine(key, record.*field.text)
                    : FormatListLine(key, record.*field.flag);
}

// Splits the file into lines at CR LF, LF or CR.
class LineReader {
 public:
  explicit LineReader(std::string_view text) : text_(text) {}
  bool Next(std::string_view& line) {
    if (pos_ >= text_.size()) return false;
    const auto end = text_.find_first_of("\r\n", pos_);
    line = text_.substr(pos_, end == std::string_view::npos ? std::string_view::npos : end - pos_);
    pos_ = end == std::string_view::npos ? text_.size() : end + 1;
    if (end != std::string_view::npos && text_[end] == '\r' && pos_ < text_.size() &&
        text_[pos_] == '\n') {
      ++pos_;
    }
    ++number_;
    return true;
  }
  int number() const { return number_; }

 private:
  std::string_view text_;
  std::size_t pos_ = 0;
  int number_ = 0;
};

// The window size of a list, "width,height": two 16-bit whole numbers,
// blanks around each allowed; nullopt for anything else.
std::optional<std::pair<std::int16_t, std::int16_t>> ParseWinSize(std::string_view value) {
  const auto comma = value.find(',');
  if (comma == std::string_view::npos) return std::nullopt;
  const auto number = [](std::string_view text) -> std::optional<std::int16_t> {
    text = TrimSpaces(text);
    std::int16_t n = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), n);
    if (error != std::errc() || end != text.data() + text.size() || text.empty()) {
      return std::nullopt;
    }
    return n;
  };
  const auto width = number(value.substr(0, comma));
  const auto height = number(value.substr(comma + 1));
  if (!width || !height) return std::nullopt;
  return std::pair{*width, *height};
}

std::string FormatWinSize(std::int32_t width, std::int32_t height) {
  return std::to_string(width) + "," + std::to_string(height);
}

// Puts the "width,height" of a list into the host window; a value that is
// not two 16-bit numbers, or one the host refuses, is ignored. Without a
// host the size is remembered for the next save.
void ApplyWinSize(Session& session, const std::string& value) {
  const auto size = ParseWinSize(value);
  if (!size) return;
  if (!session.Host) {
    session.WinSize = FormatWinSize(size->first, size->second);
    return;
  }
  try {
    session.Host->SetWidth(size->first);
    session.Host->SetHeight(size->second);
  } catch (...) {
    // A size the host refuses keeps the window.
  }
}

// The size a list records: the host window's, else the one remembered, each
// a 16-bit number (a remembered text that is not is written as the default).
std::string CurrentWinSize(Session& session) {
  if (!session.Host) {
    if (ParseWinSize(session.WinSize)) return session.WinSize;
    return Session::kDefaultWinSize;
  }
  const std::int32_t width = session.Host->Width();
  const std::int32_t height = session.Host->Height();
  const auto fits = [](std::int32_t v) {
    return v >= std::numeric_limits<std::int16_t>::min() &&
           v <= std::numeric_limits<std::int16_t>::max();
  };
  if (!fits(width) || !fits(height)) {
    throw std::range_error(LoadResourceText(ids::kWinSizeOutOfRange) + std::to_string(width) +
                           "," + std::to_string(height));
  }
  return FormatWinSize(width, height);
}

// A whole number beyond the 16-bit range of a count.
bool IsLargeCount(const ListValue& value) {
  const std::string text = ValueAsText(value);
  const std::string_view digits = TrimSpaces(text);
  long long n = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), n);
  return error == std::errc::result_out_of_range ||
         (error == std::errc() && end == digits.data() + digits.size() &&
          n > BatchList::kMaxEntries);
}

// Applies one key and value to the session; false when the value has the
// wrong type.
class ListReader {
 public:
  ListReader(Session& session, bool append)
      : session_(session), append_(append), base_(append ? session.List.EntryCount() : 0) {}

  bool Apply(const ListLine& line) {
    const std::string& key = line.key;
    const ListValue& value = line.value;
    if (StartsWithIgnoreCase(key, kEntryPrefix)) return ApplyEntryLine(key, value);
    if (EqualsIgnoreCase(key, kNumFiles)) {
      const auto count = ValueAsInteger(value);
      if (!count) return IsLargeCount(value) ? TooMany() : false;
      if (*count < 0) return false;
      if (base_ + *count > BatchList::kMaxEntries) return TooMany();
      session_.List.Resize(base_ + *count);
      return true;
    }
    if (EqualsIgnoreCase(key, kWinSize)) {
      ApplyWinSize(session_, ValueAsText(value));
      return true;
    }
    if (EqualsIgnoreCase(key, kFileName)) {
      if (!append_) session_.ListName = ValueAsText(value);
      return true;
    }
    for (const auto& field : kLogFields) {
      if (EqualsIgnoreCase(key, field.key)) return append_ || Store(field, session_.Log, value);
    }
    return true;  // an unknown key is skipped
  }

 private:
  bool ApplyEntryLine(std::string_view key, const ListValue& value) {
    std::string_view rest = key.substr(kEntryPrefix.size());
    long number = 0;
    std::size_t digits = 0;
    while (digits < rest.size() && rest[digits] >= '0' && rest[digits] <= '9') {
      number = std::min<long>(number * 10 + (rest[digits] - '0'), 1000000);
      ++digits;
    }
    // Without a number the line names no entry and is skipped.
    if (digits == 0 || number == 0) return true;
    number += base_;
    if (number > BatchList::kMaxEntries) return TooMany();
    if (number > session_.List.EntryCount()) session_.List.Resize(static_cast<int>(number));
    const std::string_view fieldName = rest.substr(digits);
    BatchEntry& entry = session_.List.Entry(static_cast<int>(number));
    for (const auto& field : kEntryFields) {
      if (EqualsIgnoreCase(fieldName, field.key)) return Store(field, entry, value);
    }
    return true;
  }

  bool TooMany() {
    tooMany_ = true;
    return false;
  }

 public:
  /// Whether the last refused line asked for more entries than a list holds.
  bool tooMany() const { return tooMany_; }

 private:
  Session& session_;
  bool append_;
  int base_;
  bool tooMany_ = false;
};

}  // namespace

int MessageIdFor(ListFileStatus status) {
  switch (status) {
    case ListFileStatus::Done:
      return 0;
    case ListFileStatus::WrongFirstLine:
      return ids::kListFileNotValid;
    case ListFileStatus::Malformed:
    case ListFileStatus::CannotOpen:
      return ids::kListFileLoadProblem;
    case ListFileStatus::CannotWrite:
      return ids::kListFileSaveProblem;
    case ListFileStatus::EmptyList:
      return ids::kEmptyList;
    case ListFileStatus::TooManyEntries:
      return ids::kListTooManyEntries;
  }
  return 0;
}

ListFileResult ReadListFile(Session& session, const std::string& path, bool append) {
  ListFileResult result;
  RegularFileRead file = ReadRegularFile(path, kTextInputLimit);
  if (!file.ok) {
    result.status = ListFileStatus::CannotOpen;
    result.reason = std::move(file.reason);
    return result;
  }
  return ReadListBytes(session, file.bytes, append);
}

ListFileResult ReadListBytes(Session& session, std::string_view bytes, bool append) {
  ListFileResult result;
  std::string_view raw = bytes;
  constexpr std::string_view kUtf8Bom = "\xEF\xBB\xBF";
  if (raw.starts_with(kUtf8Bom)) raw.remove_prefix(kUtf8Bom.size());
  const std::string text = IsValidUtf8(raw) ? std::string(raw) : Windows1252ToUtf8(raw);

  LineReader lines(text);
  std::string_view line;
  if (!lines.Next(line) ||
      !(EqualsIgnoreCase(line, kListFileMagic) || EqualsIgnoreCase(line, kListFileMagicR15))) {
    result.status = ListFileStatus::WrongFirstLine;
    result.line = 1;
    return result;
  }
  if (!append) session.ResetLogSettings();

  ListReader reader(session, append);
  while (lines.Next(line)) {
    if (line.find_first_not_of(" \t") == std::string_view::npos) continue;
    const auto parsed = ParseListLine(line);
    if (!parsed || !reader.Apply(*parsed)) {
      result.status = reader.tooMany() ? ListFileStatus::TooManyEntries : ListFileStatus::Malformed;
      result.line = lines.number();
      return result;
    }
  }
  return result;
}

std::string FormatListFile(const Session& session, const std::string& path,
                           const std::string& winSize) {
  std::string text;
  const auto add = [&text](const std::string& line) { text.append(line).append("\r\n"); };
  text.append(kListFileMagic).append("\r\n");
  add(FormatListLine(kFileName, path));
  for (const auto& field : kLogFields) add(Format(field, field.key, session.Log));
  add(FormatListLine(kNumFiles, static_cast<int>(session.List.EntryCount())));
  add(FormatListLine(kWinSize, winSize));
  int n = 0;
  for (const BatchEntry& entry : session.List) {
    const std::string prefix = std::string(kEntryPrefix) + std::to_string(++n);
    for (const auto& field : kEntryFields)
      add(Format(field, prefix + std::string(field.key), entry));
  }
  return Utf8ToWindows1252(text).bytes;
}

ListFileResult WriteListFile(Session& session, const std::string& path) {
  ListFileResult result;
  if (session.List.Empty()) {
    result.status = ListFileStatus::EmptyList;
    return result;
  }
  session.ListName = path;

  const auto fail = [&](std::string reason) {
    result.status = ListFileStatus::CannotWrite;
    result.reason = std::move(reason);
    return result;
  };
  std::string bytes;
  try {
    bytes = FormatListFile(session, path, CurrentWinSize(session));
  } catch (const std::bad_alloc&) {
    return fail(LoadResourceText(ids::kOutOfMemory));
  } catch (const std::exception& e) {
    return fail(e.what());
  }
  // Written beside and renamed into place: a failure leaves the old file, and
  // the new one is on the disk before it takes the old one's place.
  OutputFile out(path, OutputFile::Durability::Durable);
  if (!out.IsOpen()) return fail(out.Failure());
  out.Write(bytes);
  if (!out.Commit()) return fail(out.Failure());

  session.ListModified = false;
  session.Caption = Session::CaptionFor(path);
  return result;
}

}  // namespace sheafwork
