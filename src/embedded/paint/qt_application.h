#pragma once
// Painting needs a Qt GUI application object; the command line and the
// tests may have none.

namespace sheafwork::embedded {

/// Makes sure a QGuiApplication exists: creates one for the rest of the
/// process when there is no Qt application at all (choosing the offscreen
/// platform when no display is set and no platform was asked for). An
/// existing instance is never replaced; throws PlotError when it is not a
/// GUI application.
void EnsureGuiApplication();

}  // namespace sheafwork::embedded
