#include "ui/qt_text.h"

#include <QSet>

#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork::ui {
namespace {

/// Where the mnemonic marker of `caption` is ("&" before a letter that is
/// not another "&"), or -1.
qsizetype MnemonicMarker(const QString& caption) {
  for (qsizetype i = 0; i + 1 < caption.size(); ++i) {
    if (caption[i] != u'&') continue;
    if (caption[i + 1] != u'&') return i;
    ++i;  // "&&" is a plain "&"
  }
  return -1;
}

}  // namespace

QString Res(int id) { return Q(LoadResourceText(id)); }

QString QtNameFilters(std::string_view tableFilter) {
  QStringList filters;
  for (const auto& [description, pattern] : SplitFilter(tableFilter)) {
    QString text = Q(description).trimmed();
    // "Tous les dessins (*.dwg,*.dwt)": Qt would read the parenthesised part
    // as the patterns, so it is replaced by the pair's own.
    if (text.endsWith(u')')) {
      const qsizetype open = text.lastIndexOf(u'(');
      if (open >= 0) text = text.left(open).trimmed();
    }
    QString patterns = Q(pattern);
    patterns.replace(u';', u' ');
    filters << QStringLiteral("%1 (%2)").arg(text, patterns.simplified());
  }
  return filters.join(QStringLiteral(";;"));
}

std::string DrawingFilter() {
  std::string filter;
  bool first = true;
  for (const auto& [description, pattern] : SplitFilter(LoadResourceText(ids::kDrawingFilter))) {
    if (!filter.empty()) filter += '|';
    filter += description + '|' + pattern + (first ? ";*.dxf" : "");
    first = false;
  }
  return filter + "|Fichiers DXF (*.dxf)|*.dxf";
}

QString FirstSuffix(std::string_view tableFilter) {
  const auto pairs = SplitFilter(tableFilter);
  if (pairs.empty()) return {};
  QString pattern = Q(pairs.front().second).section(u';', 0, 0).trimmed();
  if (pattern.startsWith(QStringLiteral("*."))) pattern = pattern.mid(2);
  return pattern.contains(u'*') ? QString() : pattern;
}

QStringList DistinctMnemonics(const QStringList& captions) {
  QSet<QChar> taken;
  QStringList result;
  for (const QString& caption : captions) {
    const qsizetype marker = MnemonicMarker(caption);
    if (marker < 0 || !taken.contains(caption[marker + 1].toLower())) {
      if (marker >= 0) taken.insert(caption[marker + 1].toLower());
      result << caption;
      continue;
    }
    QString plain = caption;
    plain.remove(marker, 1);
    qsizetype chosen = -1;
    const auto free = [&](qsizetype i) {
      return plain[i].isLetterOrNumber() && !taken.contains(plain[i].toLower()) &&
             (i == 0 || plain[i - 1] != u'&');
    };
    for (qsizetype i = 0; i < plain.size() && chosen < 0; ++i) {
      if ((i == 0 || plain[i - 1] == u' ') && free(i)) chosen = i;
    }
    for (qsizetype i = 0; i < plain.size() && chosen < 0; ++i) {
      if (free(i)) chosen = i;
    }
    if (chosen < 0) {
      result << caption;
      continue;
    }
    taken.insert(plain[chosen].toLower());
    result << plain.insert(chosen, u'&');
  }
  return result;
}

}  // namespace sheafwork::ui
