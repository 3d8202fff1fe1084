#pragma once
// The plot engine's messages, in French, for the host's log.

#include <string>

namespace sheafwork::embedded::render_messages {

std::string NothingToPlot();
/// The sheet needed more than `limit` entities drawn.
std::string SheetEntityLimit(unsigned long long limit);
std::string SheetCancelled();
std::string InvalidPaper(double widthMm, double heightMm);
std::string NoGuiApplication();
/// `format` names the kind of file: "PDF", "PNG", "SVG", "HP-GL/2".
std::string FileCannotCreate(const std::string& format, const std::string& path);
std::string FileCannotWrite(const std::string& format, const std::string& path);
/// `reason` says why, in French; may be empty.
std::string FileCannotRead(const std::string& format, const std::string& path,
                           const std::string& reason);
/// The file is not a whole one of those the program writes itself
/// (truncated, or written by another program).
std::string FileNotOurs(const std::string& format, const std::string& path);
std::string ImageTooLarge(long long widthPx, long long heightPx, int dpi);
std::string ImageNoMemory(long long widthPx, long long heightPx);
std::string PrinterNotFound(const std::string& name);
std::string PrinterRefusesPaper(const std::string& name, double widthMm, double heightMm);
std::string PrinterCannotStart(const std::string& name);
std::string PrinterCannotFinish(const std::string& name);
/// `output` names the painted output: "la sortie PNG", "la sortie SVG",
/// "l'impression".
std::string PaintedOutputMissing(const std::string& output);
/// A painted output failed without saying why (out of memory, or an
/// exception of no known kind).
std::string PaintedOutputOutOfMemory();
std::string PaintedOutputUnknownFailure();
std::string PaintedOutputNotLoaded(const std::string& output, const std::string& module,
                                   const std::string& reason);

}  // namespace sheafwork::embedded::render_messages
