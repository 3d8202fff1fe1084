#pragma once
// The plot engine's messages, in French, for the host's log.

#include <string>

namespace sheafwork::embedded::render_messages {

std::string NothingToPlot();
std::string InvalidPaper(double widthMm, double heightMm);
std::string NoGuiApplication();
std::string PdfCannotCreate(const std::string& path);
std::string PdfCannotWrite(const std::string& path);
std::string PrinterNotFound(const std::string& name);
std::string PrinterRefusesPaper(const std::string& name, double widthMm, double heightMm);
std::string PrinterCannotStart(const std::string& name);
std::string PrinterCannotFinish(const std::string& name);

}  // namespace sheafwork::embedded::render_messages
