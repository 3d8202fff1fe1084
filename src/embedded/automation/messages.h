#pragma once
// The embedded host's error numbers and its own French texts: its errors,
// its log lines and its external-reference log.

#include <cstdint>
#include <string>
#include <string_view>

namespace sheafwork::embedded::host_messages {

// Error numbers of host::Error besides host::kFileNotFound.
inline constexpr std::int32_t kInvalidArgument = 5;
inline constexpr std::int32_t kIndexOutOfRange = 9;
inline constexpr std::int32_t kTypeMismatch = 13;
inline constexpr std::int32_t kFileAccess = 75;
inline constexpr std::int32_t kObjectClosed = 91;
inline constexpr std::int32_t kBadDrawing = 1000;
inline constexpr std::int32_t kNoDwgConverter = 1001;
inline constexpr std::int32_t kConversionFailed = 1002;
inline constexpr std::int32_t kUnsupportedFile = 1003;
inline constexpr std::int32_t kUnknownVariable = 1004;
inline constexpr std::int32_t kReadOnlyVariable = 1005;
inline constexpr std::int32_t kUnknownDevice = 1006;
inline constexpr std::int32_t kInternal = 1099;

// Errors.
std::string FileNotFound(std::string_view path);
std::string NoDwgConverter(std::string_view path);
std::string NoNode(std::string_view path);
std::string ConversionFailed(std::string_view path, std::string_view reason);
std::string ConvertedDrawingUnreadable(std::string_view path, std::string_view reason);
std::string ConverterExit(int status);
std::string ConverterNoOutput();
std::string ConverterTimedOut(int seconds);
std::string UnsupportedFile(std::string_view path);
std::string HostClosed();
std::string DocumentClosed(std::string_view name);
std::string NoActiveDocument();
std::string IndexOutOfRange(std::int32_t index, std::int32_t count);
std::string UnknownVariable(std::string_view name);
std::string ReadOnlyVariable(std::string_view name);
std::string VariableType(std::string_view name);
std::string VariableRange(std::string_view name, int min, int max);
std::string SaveFailed(std::string_view path, std::string_view reason);
std::string NoPaperLayout();
std::string ForeignLayout();
std::string BadSpace(int space);
std::string UnknownDevice(std::string_view name);
std::string UnknownMedia(std::string_view name);
std::string UnknownView(std::string_view name);
std::string OutOfRange(std::string_view what, int value, int min, int max);
std::string BadCustomScale();
std::string BadCopies(int copies);
std::string Internal(std::string_view what);
std::string OutOfMemory();
std::string OutOfMemoryReading(std::string_view path);

// Reasons a plot fails, for the host's log.
std::string DeviceNotFound(std::string_view name);
std::string DriverNotSupported(std::string_view driver);
std::string NoOutputFolder(std::string_view folder);
std::string NoFallbackDevice(std::string_view name);

// The host's log.
std::string PlotDone(std::string_view drawing, std::string_view layout, std::string_view device,
                     std::string_view output);
std::string PlotFailed(std::string_view drawing, std::string_view layout, std::string_view device,
                       std::string_view reason);
/// The fallback device plots a layout whose device is "Aucun" (`missing`
/// false) or not on this machine.
std::string DeviceStandsIn(std::string_view drawing, std::string_view layout,
                           std::string_view stored, std::string_view fallback, bool missing);
/// A layout without a usable paper plots on the device's default paper.
std::string DefaultPaperUsed(std::string_view drawing, std::string_view layout,
                             std::string_view stored, std::string_view device,
                             std::string_view paper);
/// A printer's output as the log names it.
std::string PrinterOutput(std::string_view printer);
/// A layout's plot style table found nowhere (the plot fails).
std::string PlotStyleMissing(std::string_view drawing, std::string_view layout,
                             std::string_view table);
// A layout's plot style table that the plot goes on without.
std::string NamedPlotStylesIgnored(std::string_view drawing, std::string_view layout,
                                   std::string_view table);

/// The plot of a layout was stopped by the user while under way.
std::string PlotCancelled(std::string_view drawing, std::string_view layout,
                          std::string_view device);

/// What the plot of a layout left out: `kinds` as FormatUndrawn writes them.
std::string UndrawnEntities(std::string_view drawing, std::string_view layout,
                            std::string_view kinds);

// The external-reference log.
std::string XrefLogTitle(std::string_view drawing);
std::string XrefFound(std::string_view block, std::string_view stored, std::string_view found);
/// `notFoundMark` is the word a reader looks for ("Introuvable").
std::string XrefNotFound(std::string_view block, std::string_view stored,
                         std::string_view notFoundMark);
std::string XrefNone();
/// A reference found but not loaded, beyond a limit: `reason` says which
/// (XrefDepthLimit, XrefSizeLimit); `leftOutMark` is the word a reader
/// looks for.
std::string XrefLeftOut(std::string_view block, std::string_view stored, std::string_view found,
                        std::string_view leftOutMark, std::string_view reason);
std::string XrefDepthLimit(int levels);
std::string XrefSizeLimit(std::uintmax_t bytes);
/// A reference of `drawing` left out for `reason`: the drawing plots without it.
std::string XrefNotLoaded(std::string_view drawing, std::string_view block, std::string_view found,
                          std::string_view reason);
/// An image file in the external-reference log: where it was found, or the
/// not-found mark.
std::string ImageReference(std::string_view stored, std::string_view foundOrMark);
/// A raster image of `drawing` whose file was not found, or was found and
/// cannot be read; its frame is plotted instead.
std::string ImageNotFound(std::string_view drawing, std::string_view stored);
std::string ImageUnreadable(std::string_view drawing, std::string_view path);

// The combined PDF.
std::string CombinedPageFailed(std::string_view reason);
std::string CombinedNotWritten(std::string_view reason);

// The console progress display, written from a signal handler.
inline constexpr const char* kStopRequested =
    "\nsheafwork: arrêt demandé, le traçage s'arrête après la feuille en cours "
    "(une seconde demande d'arrêt, un autre Ctrl+C par exemple, quitte aussitôt)\n";

// Names the host gives.
inline constexpr const char* kUntitledDrawing = "Dessin1.dwg";
inline constexpr const char* kFirstPaperLayout = "Présentation1";
inline constexpr const char* kLogFileSuffix = "_sheafwork.log";
inline constexpr const char* kDefaultFallbackDevice = "PDF.pc3";

}  // namespace sheafwork::embedded::host_messages
