#include "ui/help.h"

#include <QDir>
#include <QFileInfo>
#include <QKeySequence>
#include <QShortcut>
#include <QTextBrowser>
#include <QToolBar>
#include <QUrl>
#include <QVBoxLayout>
#include <QVariant>
#include <QWidget>

#include "res/string_ids.h"
#include "ui/qt_text.h"

namespace sheafwork::ui {
namespace {

constexpr const char* kHelpIdProperty = "sheafworkHelpId";

}  // namespace

QString TopicForContext(int id) {
  struct Range {
    int first;
    const char* topic;
  };
  // Ascending first ids; an id belongs to the last range that starts at or
  // before it.
  static constexpr Range kRanges[] = {
      {context::kMainToolbar, topic::kMain},
      {context::kLogging, topic::kLogging},
      {context::kResults, topic::kMain},
      {context::kDevices, topic::kDevices},
      {context::kLayoutsSingle, topic::kLayoutsSingle},
      {context::kLayoutsMulti, topic::kLayoutsMulti},
      {context::kPageSetups, topic::kPageSetups},
      {context::kSettingsPlot, topic::kSettingsPlot},
      {context::kSettingsLayers, topic::kSettingsLayers},
      {context::kAbout, topic::kMain},
  };
  const char* found = topic::kMain;
  if (id >= context::kMainToolbar && id <= context::kLast) {
    for (const Range& range : kRanges) {
      if (id >= range.first) found = range.topic;
    }
  }
  return QString::fromLatin1(found);
}

void SetHelpId(QWidget* widget, int id) { widget->setProperty(kHelpIdProperty, id); }

int HelpIdOf(const QWidget* widget) {
  for (; widget; widget = widget->parentWidget()) {
    const QVariant id = widget->property(kHelpIdProperty);
    if (id.isValid()) return id.toInt();
  }
  return 0;
}

void InstallContextHelp(QWidget* window, HelpViewer* help, const QString& fallbackTopic) {
  if (!help) return;
  auto* shortcut = new QShortcut(QKeySequence::HelpContents, window);
  shortcut->setContext(Qt::WindowShortcut);
  QObject::connect(shortcut, &QShortcut::activated, window, [window, help, fallbackTopic] {
    QWidget* focus = window->focusWidget();
    const int id = HelpIdOf(focus ? focus : window);
    if (id != 0) {
      help->ShowContext(id);
    } else {
      help->ShowTopic(fallbackTopic);
    }
  });
}

QString HelpFolder(const std::string& dataFolder) {
  const QString base = QString::fromStdString(dataFolder);
  for (const QString& candidate :
       {base + QStringLiteral("/help"), base + QStringLiteral("/data/help")}) {
    if (!base.isEmpty() && QFileInfo(candidate).isDir()) return candidate;
  }
  return QStringLiteral(SHEAFWORK_HELP_SOURCE);
}

HtmlHelp::~HtmlHelp() { delete window_.data(); }

void HtmlHelp::ShowTopic(const QString& name) {
  if (!window_) {
    window_ = new QDialog(nullptr, Qt::Window);
    window_->setObjectName(QStringLiteral("frmHelp"));
    // The program ends with its main window, not with this one.
    window_->setAttribute(Qt::WA_QuitOnClose, false);
    window_->resize(640, 520);
    browser_ = new QTextBrowser(window_);
    browser_->setObjectName(QStringLiteral("txtHelp"));
    browser_->setOpenExternalLinks(true);
    browser_->setFrameShape(QFrame::NoFrame);
    browser_->setSearchPaths({folder_});
    auto* bar = new QToolBar(window_);
    bar->setToolButtonStyle(Qt::ToolButtonTextOnly);
    QAction* back = bar->addAction(Res(ids::kHelpBack), browser_, &QTextBrowser::backward);
    QAction* forward = bar->addAction(Res(ids::kHelpForward), browser_, &QTextBrowser::forward);
    bar->addAction(Res(ids::kHelpContents), browser_, [this] {
      browser_->setSource(QUrl::fromLocalFile(
          QDir(folder_).filePath(QString::fromLatin1(topic::kMain) + QStringLiteral(".html"))));
    });
    back->setEnabled(false);
    forward->setEnabled(false);
    QObject::connect(browser_, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
    QObject::connect(browser_, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);
    auto* layout = new QVBoxLayout(window_);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(bar);
    layout->addWidget(browser_);
  }
  const QString file = QDir(folder_).filePath(name + QStringLiteral(".html"));
  if (QFileInfo::exists(file)) {
    browser_->setSource(QUrl::fromLocalFile(file));
  } else {
    browser_->setHtml(
        QStringLiteral("<p>%1</p>").arg((Res(ids::kHelpTopicMissing) + name).toHtmlEscaped()));
  }
  window_->setWindowTitle(Res(ids::kHelpTitle) +
                          (browser_->documentTitle().isEmpty() ? name : browser_->documentTitle()));
  window_->show();
  window_->raise();
  window_->activateWindow();
}

}  // namespace sheafwork::ui
