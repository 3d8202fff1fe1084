// The text inside a table file: nested `name{ ... }` blocks of `key=value`.

#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>
#include <memory>

#include "embedded/plotstyle/messages.h"
#include "embedded/plotstyle/plot_style_file.h"

namespace sheafwork::embedded {

namespace msg = plotstyle_messages;

namespace {

// Tables nest three deep (plot_style, an entry, its fields).
constexpr std::size_t kMaxDepth = 8;

struct Node {
  std::string_view key;
  std::string_view value;
  int line = 0;
  bool block = false;
  std::vector<Node> children;
};

std::string_view Trim(std::string_view s) {
  const auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
  while (!s.empty() && blank(s.front())) s.remove_prefix(1);
  while (!s.empty() && blank(s.back())) s.remove_suffix(1);
  return s;
}

class Parser {
 public:
  Parser(std::string_view text, const std::string& fileName) : text_(text), file_(fileName) {}

  Node Parse() {
    Node root;
    root.block = true;
    std::vector<Node*> open{&root};
    std::size_t at = 0;
    int line = 0;
    while (at <= text_.size()) {
      const std::size_t end = std::min(text_.find('\n', at), text_.size());
      const std::string_view raw = Trim(text_.substr(at, end - at));
      ++line;
      at = end + 1;
      if (raw.empty()) continue;
      if (raw == "}") {
        if (open.size() == 1) Fail(line, msg::UnexpectedClose());
        open.pop_back();
        continue;
      }
      Node node;
      node.line = line;
      const std::size_t eq = raw.find('=');
      if (raw.back() == '{' && eq == std::string_view::npos) {
        node.key = Trim(raw.substr(0, raw.size() - 1));
        node.block = true;
        if (open.size() > kMaxDepth) Fail(line, msg::TooDeep());
        open.back()->children.push_back(std::move(node));
        open.push_back(&open.back()->children.back());
        continue;
      }
      if (eq == std::string_view::npos || eq == 0) Fail(line, msg::NotKeyValue());
      node.key = Trim(raw.substr(0, eq));
      node.value = raw.substr(eq + 1);
      if (!node.value.empty() && node.value.front() == '"') node.value.remove_prefix(1);
      open.back()->children.push_back(std::move(node));
    }
    if (open.size() > 1) Fail(line, msg::UnclosedBlock(open.back()->key));
    return root;
  }

  [[noreturn]] void Fail(int line, const std::string& what) const {
    throw PlotStyleError(msg::AtLine(file_, line, what));
  }

 private:
  std::string_view text_;
  const std::string& file_;
};

class TableBuilder {
 public:
  explicit TableBuilder(const std::string& fileName) : file_(fileName) {}

  PlotStyleTable Build(const Node& root) {
    PlotStyleTable table;
    bool styles = false;
    for (const Node& node : root.children) {
      if (node.key == "description") {
        table.description = Value(node);
      } else if (node.key == "aci_table_available") {
        table.aciTableAvailable = Boolean(node);
      } else if (node.key == "scale_factor") {
        table.scaleFactor = Real(node);
      } else if (node.key == "apply_factor") {
        table.applyFactor = Boolean(node);
      } else if (node.key == "custom_lineweight_display_units") {
        table.customLineweightDisplayUnits = Integer(node);
      } else if (node.key == "plot_style") {
        styles = true;
        for (const Node& entry : Block(node).children) ReadEntry(entry, table);
      } else if (node.key == "custom_lineweight_table") {
        ReadLineweights(Block(node), table);
      }
      // Other keys (the colour names of aci_table ...) change nothing plotted.
    }
    if (!table.aciTableAvailable) throw PlotStyleError(msg::InFile(file_, msg::NamedStyles()));
    if (!styles) throw PlotStyleError(msg::InFile(file_, msg::MissingStyles()));
    return table;
  }

 private:
  void ReadEntry(const Node& node, PlotStyleTable& table) const {
    const int index = IndexOf(node, kPlotStyleCount - 1, msg::BadEntryNumber(node.key));
    PlotStyleEntry& entry = table.entries[static_cast<std::size_t>(index)];
    for (const Node& field : Block(node).children) {
      const std::string_view k = field.key;
      if (k == "name") {
        entry.name = Value(field);
      } else if (k == "localized_name") {
        entry.localizedName = Value(field);
      } else if (k == "description") {
        entry.description = Value(field);
      } else if (k == "color") {
        entry.color = Color(field);
      } else if (k == "mode_color") {
        entry.modeColor = Color(field);
      } else if (k == "color_policy") {
        entry.colorPolicy = Integer(field);
      } else if (k == "physical_pen_number") {
        entry.physicalPenNumber = Integer(field);
      } else if (k == "virtual_pen_number") {
        entry.virtualPenNumber = Integer(field);
      } else if (k == "screen") {
        entry.screen = Integer(field);
      } else if (k == "linepattern_size") {
        entry.linepatternSize = Real(field);
      } else if (k == "linetype") {
        entry.linetype = Integer(field);
      } else if (k == "adaptive_linetype") {
        entry.adaptiveLinetype = Boolean(field);
      } else if (k == "lineweight") {
        entry.lineweight = Integer(field);
      } else if (k == "fill_style") {
        entry.fillStyle = Integer(field);
      } else if (k == "end_style") {
        entry.endStyle = Integer(field);
      } else if (k == "join_style") {
        entry.joinStyle = Integer(field);
      }
    }
  }

  void ReadLineweights(const Node& block, PlotStyleTable& table) const {
    table.lineweights.clear();
    for (const Node& node : block.children) {
      const auto index =
          static_cast<std::size_t>(IndexOf(node, 255, msg::BadLineweightIndex(node.key)));
      const double mm = Real(node);
      if (!(mm >= 0)) Fail(node, msg::BadNumber(node.key, node.value));
      if (table.lineweights.size() <= index) table.lineweights.resize(index + 1, 0.0);
      table.lineweights[index] = mm;
    }
  }

  int IndexOf(const Node& node, int max, const std::string& error) const {
    int index = -1;
    const auto [end, ec] =
        std::from_chars(node.key.data(), node.key.data() + node.key.size(), index);
    if (ec != std::errc() || end != node.key.data() + node.key.size() || index < 0 || index > max) {
      Fail(node, error);
    }
    return index;
  }

  const Node& Block(const Node& node) const {
    if (!node.block) Fail(node, msg::ExpectedBlock(node.key));
    return node;
  }

  std::string_view Raw(const Node& node) const {
    if (node.block) Fail(node, msg::ExpectedValue(node.key));
    return node.value;
  }

  std::string Value(const Node& node) const { return std::string(Raw(node)); }

  std::int64_t Whole(const Node& node) const {
    const std::string_view v = Trim(Raw(node));
    std::int64_t value = 0;
    const auto [end, ec] = std::from_chars(v.data(), v.data() + v.size(), value);
    if (ec != std::errc() || end != v.data() + v.size() || v.empty()) {
      Fail(node, msg::BadNumber(node.key, node.value));
    }
    return value;
  }

  int Integer(const Node& node) const {
    const std::int64_t value = Whole(node);
    if (value < std::numeric_limits<int>::min() || value > std::numeric_limits<int>::max()) {
      Fail(node, msg::BadNumber(node.key, node.value));
    }
    return static_cast<int>(value);
  }

  // A signed 32-bit value; written unsigned by some, which is the same bits.
  std::int32_t Color(const Node& node) const {
    const std::int64_t value = Whole(node);
    if (value < std::numeric_limits<std::int32_t>::min() ||
        value > std::numeric_limits<std::uint32_t>::max()) {
      Fail(node, msg::BadNumber(node.key, node.value));
    }
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
  }

  double Real(const Node& node) const {
    const std::string_view v = Trim(Raw(node));
    double value = 0;
    const auto [end, ec] = std::from_chars(v.data(), v.data() + v.size(), value);
    if (ec != std::errc() || end != v.data() + v.size() || v.empty() || !std::isfinite(value)) {
      Fail(node, msg::BadNumber(node.key, node.value));
    }
    return value;
  }

  bool Boolean(const Node& node) const {
    const std::string_view v = Trim(Raw(node));
    const auto is = [&](std::string_view word) {
      if (v.size() != word.size()) return false;
      for (std::size_t i = 0; i < v.size(); ++i) {
        if ((v[i] & ~0x20) != word[i]) return false;
      }
      return true;
    };
    if (is("TRUE")) return true;
    if (is("FALSE")) return false;
    Fail(node, msg::BadBoolean(node.key, node.value));
  }

  [[noreturn]] void Fail(const Node& node, const std::string& what) const {
    throw PlotStyleError(msg::AtLine(file_, node.line, what));
  }

  const std::string& file_;
};

// Numbers as the tables write them: at least one decimal ("1.0", "0.5").
std::string Decimal(double value) {
  char buffer[64];
  const auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, value);
  std::string text(buffer, ec == std::errc() ? end : buffer);
  if (text.find_first_of(".eE") == std::string::npos) text += ".0";
  return text;
}

// Lineweights with two decimals, more only when needed.
std::string Lineweight(double mm) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%.2f", mm);
  double back = 0;
  std::from_chars(buffer, buffer + std::char_traits<char>::length(buffer), back);
  return back == mm ? std::string(buffer) : Decimal(mm);
}

const char* TrueFalse(bool value) { return value ? "TRUE" : "FALSE"; }

}  // namespace

PlotStyleTable ParsePlotStyleText(std::string_view text, const std::string& fileName) {
  const Node root = Parser(text, fileName).Parse();
  return TableBuilder(fileName).Build(root);
}

std::string PlotStyleTableText(const PlotStyleTable& table) {
  std::string out;
  const auto line = [&](auto&&... parts) {
    (out.append(parts), ...);
    out.push_back('\n');
  };
  line("description=\"", table.description);
  line("aci_table_available=", TrueFalse(table.aciTableAvailable));
  line("scale_factor=", Decimal(table.scaleFactor));
  line("apply_factor=", TrueFalse(table.applyFactor));
  line("custom_lineweight_display_units=", std::to_string(table.customLineweightDisplayUnits));
  line("aci_table{");
  for (int i = 0; i < kPlotStyleCount; ++i) {
    line(" ", std::to_string(i), "=\"", table.entries[static_cast<std::size_t>(i)].name);
  }
  line("}");
  line("plot_style{");
  for (int i = 0; i < kPlotStyleCount; ++i) {
    const PlotStyleEntry& e = table.entries[static_cast<std::size_t>(i)];
    line(" ", std::to_string(i), "{");
    line("  name=\"", e.name);
    line("  localized_name=\"", e.localizedName);
    line("  description=\"", e.description);
    line("  color=", std::to_string(e.color));
    if (e.modeColor) line("  mode_color=", std::to_string(*e.modeColor));
    line("  color_policy=", std::to_string(e.colorPolicy));
    line("  physical_pen_number=", std::to_string(e.physicalPenNumber));
    line("  virtual_pen_number=", std::to_string(e.virtualPenNumber));
    line("  screen=", std::to_string(e.screen));
    line("  linepattern_size=", Decimal(e.linepatternSize));
    line("  linetype=", std::to_string(e.linetype));
    line("  adaptive_linetype=", TrueFalse(e.adaptiveLinetype));
    line("  lineweight=", std::to_string(e.lineweight));
    line("  fill_style=", std::to_string(e.fillStyle));
    line("  end_style=", std::to_string(e.endStyle));
    line("  join_style=", std::to_string(e.joinStyle));
    line(" }");
  }
  line("}");
  line("custom_lineweight_table{");
  for (std::size_t i = 0; i < table.lineweights.size(); ++i) {
    line(" ", std::to_string(i), "=", Lineweight(table.lineweights[i]));
  }
  line("}");
  return out;
}

}  // namespace sheafwork::embedded
