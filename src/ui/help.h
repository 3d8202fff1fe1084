#pragma once
// Help: our own HTML topics, opened by topic name or by a control's
// context-help id, in a help window of the program.
#include <QDialog>
#include <QPointer>
#include <QString>
#include <string>

class QTextBrowser;
class QWidget;

namespace sheafwork::ui {

/// The topic names the windows open.
namespace topic {
inline constexpr const char* kMain = "UsingTheSheafworkUtility";
inline constexpr const char* kLogging = "LoggingDialog";
inline constexpr const char* kLayoutsSingle = "LayoutsSingleDialog";
inline constexpr const char* kLayoutsMulti = "LayoutsMultiDialog";
inline constexpr const char* kPageSetups = "NamedPlotSetupsDialog";
inline constexpr const char* kDevices = "PlotDevicesDialog";
inline constexpr const char* kSettingsPlot = "PlotSettingsDialog_PlotSettingsTab";
inline constexpr const char* kSettingsLayers = "PlotSettingsDialog_LayersTab";
}  // namespace topic

/// The first context-help id of each window; its controls number upwards
/// from there, in control order.
namespace context {
inline constexpr int kMainToolbar = 262145;
inline constexpr int kMainList = 262146;
inline constexpr int kLogging = 262150;
inline constexpr int kResults = 262180;
inline constexpr int kDevices = 262200;
inline constexpr int kLayoutsSingle = 262220;
inline constexpr int kLayoutsMulti = 262240;
inline constexpr int kPageSetups = 262260;
inline constexpr int kSettingsPlot = 262280;
inline constexpr int kSettingsLayers = 262320;
inline constexpr int kAbout = 262340;
inline constexpr int kLast = 262359;
}  // namespace context

/// The topic that explains the control with context-help id `id`; the main
/// topic for an id of no window.
QString TopicForContext(int id);

/// Gives `widget` its context-help id.
void SetHelpId(QWidget* widget, int id);
/// The context-help id of `widget`, or of its nearest parent that has one; 0
/// when none has.
int HelpIdOf(const QWidget* widget);

class HelpViewer {
 public:
  virtual ~HelpViewer() = default;
  /// Opens the topic `name`; does not wait and reports nothing.
  virtual void ShowTopic(const QString& name) = 0;
  /// Opens the topic of a context-help id.
  void ShowContext(int id) { ShowTopic(TopicForContext(id)); }
};

/// Makes F1 in `window` open the topic of the control that has the focus,
/// or `fallbackTopic` when it has no context-help id.
void InstallContextHelp(QWidget* window, HelpViewer* help, const QString& fallbackTopic);

/// The folder that holds the help topics: `dataFolder`/help when it exists,
/// else the source tree's for a build that was not installed.
QString HelpFolder(const std::string& dataFolder);

/// Shows the HTML topics of a folder ("<topic>.html") in one help window.
class HtmlHelp : public HelpViewer {
 public:
  explicit HtmlHelp(QString folder) : folder_(std::move(folder)) {}
  ~HtmlHelp() override;
  void ShowTopic(const QString& name) override;
  /// The help window, once a topic was shown.
  QDialog* Window() const { return window_; }

 private:
  QString folder_;
  QPointer<QDialog> window_;
  QTextBrowser* browser_ = nullptr;
};

}  // namespace sheafwork::ui
