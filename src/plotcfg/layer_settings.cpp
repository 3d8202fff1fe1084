#include "plotcfg/layer_settings.h"

#include <charconv>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "host/error.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "text/strings.h"
#include "text/utf8.h"

namespace sheafwork {

namespace {

// A flag that is not a boolean ends the routine like a host error.
struct BadLayerFlag {};

// The character of `text` starting at `pos` (empty past the end).
std::string_view CharacterAt(std::string_view text, std::size_t pos) {
  if (pos >= text.size()) return {};
  return text.substr(pos, DecodeUtf8(text, pos).length);
}

// The boolean a flag stands for: "True" or "False" in any letter case, or a
// number (true when it is not zero). Anything else, an empty flag included,
// is not a boolean.
bool FlagValue(std::string_view flag) {
  const std::string_view text = TrimSpaces(flag);
  if (EqualsIgnoreCase(text, "true")) return true;
  if (EqualsIgnoreCase(text, "false")) return false;
  double number = 0;
  const char* end = text.data() + text.size();
  const auto [ptr, ec] = std::from_chars(text.data(), end, number);
  if (text.empty() || ec != std::errc() || ptr != end) throw BadLayerFlag{};
  return number != 0;
}

// Where `needle` first occurs in `text`, letter case ignored, and the length
// of the matched part of `text`; nullopt when it does not occur.
struct Match {
  std::size_t pos;
  std::size_t length;
};
std::optional<Match> FindIgnoreCase(std::string_view text, std::string_view needle) {
  for (std::size_t start = 0; start < text.size(); start += DecodeUtf8(text, start).length) {
    // Folding never changes a character's encoded length, so a match in
    // `text` is exactly as many bytes long as the needle.
    const std::string_view candidate = text.substr(start, needle.size());
    if (candidate.size() == needle.size() && EqualsIgnoreCase(candidate, needle)) {
      return Match{start, needle.size()};
    }
  }
  return std::nullopt;
}

// The flag of a layer by a search of "<name> " anywhere in the text. A name
// that ends another listed name can take that layer's flag; lists rely on
// this lookup as it stands.
std::optional<std::string_view> QuickFlag(std::string_view text, const std::string& name) {
  const auto match = FindIgnoreCase(text, name + " ");
  if (!match) return std::nullopt;
  return CharacterAt(text, match->pos + match->length);
}

// The flag of a layer named like a flag ("0", "1"), found by walking the
// "name flag" pairs from the start.
std::optional<std::string_view> WalkedFlag(std::string_view text, const std::string& name) {
  std::size_t pos = 0;
  while (pos < text.size()) {
    const auto blank = text.find(' ', pos);
    if (blank == std::string_view::npos) break;
    const std::string_view flag = CharacterAt(text, blank + 1);
    if (EqualsIgnoreCase(text.substr(pos, blank - pos), name)) return flag;
    const auto next = text.find(' ', blank + 1 + flag.size());
    if (next == std::string_view::npos) break;
    pos = next + 1;
  }
  return std::nullopt;
}

}  // namespace

bool ApplyLayerSettings(HostSession& host, const BatchEntry& entry, LogFile& errorLog) {
  const std::string_view text = entry.Layers;
  if (text.empty()) return true;
  bool needsRegen = false;
  try {
    host::Document& doc = host.Doc();
    auto layers = doc.GetLayers();
    const std::int32_t count = layers->Count();
    for (std::int32_t i = 0; i < count; ++i) {
      auto layer = layers->Item(i);
      const std::string name = layer->Name();
      if (name.empty()) continue;
      const bool walked = name == "0" || name == "1";
      const auto flag = walked ? WalkedFlag(text, name) : QuickFlag(text, name);
      if (!flag) continue;
      if (!FlagValue(*flag)) {
        if (layer->LayerOn()) layer->SetLayerOn(false);
        continue;
      }
      if (!layer->LayerOn()) layer->SetLayerOn(true);
      const bool wasFrozen = layer->Freeze();
      if (wasFrozen) {
        layer->SetFreeze(false);
        needsRegen = true;
      }
      if (walked) {
        // A thawed "0" or "1" keeps its Plottable as it was.
        if (!wasFrozen) layer->SetPlottable(true);
      } else if (!layer->Plottable()) {
        layer->SetPlottable(true);
      }
    }
    host.App().Update();
    if (needsRegen) doc.Regen(1);
    return true;
  } catch (const host::Error&) {
  } catch (const BadLayerFlag&) {
  }
  errorLog.WriteLogLine(LoadResourceText(ids::kLayerProblem) + entry.FileName);
  return false;
}

}  // namespace sheafwork
