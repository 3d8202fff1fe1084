#pragma once
// The text of a PDF file as pdftotext finds it, and where its words lie.

#include <optional>
#include <string>

#include "embedded/render/box.h"

namespace sheafwork::embedded::testing {

bool HavePdftotext();

/// pdftotext's output for `pdf` with `options` ("-raw", "-bbox"...).
std::string PdfText(const std::string& pdf, const std::string& options = "");

/// The box of `word` in pdftotext's -bbox output, in millimetres from the
/// page's top left corner (y down); none when the word is not there.
std::optional<Box2> WordBox(const std::string& bboxes, const std::string& word);

}  // namespace sheafwork::embedded::testing
