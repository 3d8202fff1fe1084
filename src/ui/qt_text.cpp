#include "ui/qt_text.h"

#include <QStringList>

#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork::ui {

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

}  // namespace sheafwork::ui
