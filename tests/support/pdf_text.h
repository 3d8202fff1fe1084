#pragma once
// The text of a PDF file as pdftotext finds it.

#include <string>

namespace sheafwork::embedded::testing {

bool HavePdftotext();

/// pdftotext's output for `pdf` with `options` ("-raw", "-bbox"...).
std::string PdfText(const std::string& pdf, const std::string& options = "");

}  // namespace sheafwork::embedded::testing
