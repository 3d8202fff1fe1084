#pragma once
// The sample sheet of examples/plans: one A3 paper layout with a titled zone
// for every kind of entity the plot engine draws, to look at a plot and see
// what it does.

#include "dxfgen/document.h"

namespace sheafwork::dxfgen {

Document SampleSheet();  ///< planche-essais.dxf

}  // namespace sheafwork::dxfgen
