#include "plotrun/row_record.h"

#include <charconv>
#include <utility>

namespace sheafwork {

namespace {

void AppendEscaped(std::string& out, std::string_view text) {
  for (const char c : text) {
    if (c == '\\') {
      out += "\\\\";
    } else if (c == '\n') {
      out += "\\n";
    } else if (c == '\r') {
      out += "\\r";
    } else {
      out += c;
    }
  }
}

std::string Unescaped(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\' || i + 1 == text.size()) {
      out += text[i];
      continue;
    }
    const char next = text[++i];
    out += next == 'n' ? '\n' : next == 'r' ? '\r' : next;
  }
  return out;
}

bool IsEventKind(char c) {
  for (const char kind : {'E', 'J', 'P', 'N', 'S', 'T', 'F', 'C', 'W'}) {
    if (c == kind) return true;
  }
  return false;
}

}  // namespace

void RowRecorder::Begin(int row) { record_ = RowRecord{row, false, false, false, {}}; }

void RowRecorder::Add(RowEvent::Kind kind, std::string text) {
  record_.events.push_back({kind, std::move(text)});
}

RowRecord RowRecorder::Take() { return std::exchange(record_, RowRecord{}); }

void RowRecorder::SheetPlotted(int) { Add(RowEvent::Sheet, {}); }

void RowRecorder::ErrorLogged(const std::string& line) { Add(RowEvent::ErrorLine, line); }

void RowRecorder::RowFinished(int, RowStatus status) {
  Add(status == RowStatus::Plotted ? RowEvent::Plotted : RowEvent::Failed, {});
}

void RowRecorder::RowCancelled(int) { Add(RowEvent::Cancelled, {}); }

std::string EncodeRecord(const RowRecord& record) {
  std::string out = "R " + std::to_string(record.row) + " ";
  out += record.skipped ? 's' : '-';
  out += record.cancelled ? 'c' : '-';
  out += record.ended ? 'e' : '-';
  out += '\n';
  for (const RowEvent& event : record.events) {
    out += static_cast<char>(event.kind);
    out += ' ';
    AppendEscaped(out, event.text);
    out += '\n';
  }
  out += ".\n";
  return out;
}

bool RecordReader::Feed(std::string_view bytes, std::vector<RowRecord>& out) {
  pending_.append(bytes);
  std::size_t start = 0;
  for (std::size_t end; (end = pending_.find('\n', start)) != std::string::npos; start = end + 1) {
    if (!TakeLine(std::string_view(pending_).substr(start, end - start), out)) return false;
  }
  pending_.erase(0, start);
  return true;
}

bool RecordReader::TakeLine(std::string_view line, std::vector<RowRecord>& out) {
  if (!inRecord_) {
    // "R <row> <flags>"
    if (line.size() < 7 || !line.starts_with("R ")) return false;
    const std::size_t space = line.find(' ', 2);
    if (space == std::string_view::npos || line.size() != space + 4) return false;
    record_ = RowRecord{};
    const auto [end, error] = std::from_chars(line.data() + 2, line.data() + space, record_.row);
    if (error != std::errc() || end != line.data() + space) return false;
    record_.skipped = line[space + 1] == 's';
    record_.cancelled = line[space + 2] == 'c';
    record_.ended = line[space + 3] == 'e';
    inRecord_ = true;
    return true;
  }
  if (line == ".") {
    out.push_back(std::move(record_));
    inRecord_ = false;
    return true;
  }
  if (line.size() < 2 || !IsEventKind(line[0]) || line[1] != ' ') return false;
  record_.events.push_back({static_cast<RowEvent::Kind>(line[0]), Unescaped(line.substr(2))});
  return true;
}

}  // namespace sheafwork
