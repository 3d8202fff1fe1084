#pragma once
// The example drawings of examples/plans: a small house by a French
// architect's office, drawn by this generator so that every byte of them is
// ours and can be made again.

#include <string>
#include <vector>

#include "dxfgen/document.h"

namespace sheafwork::dxfgen {

struct ExampleFile {
  std::string name;  ///< file name, e.g. "rez-de-chaussee.dxf"
  std::string bytes;
};

Document GroundFloor();    ///< rez-de-chaussee.dxf
Document UpperFloor();     ///< etage.dxf
Document Elevations();     ///< facades.dxf
Document TitleBlock();     ///< cartouche.dxf
Document GardenShedR12();  ///< ancien-r12.dxf

/// Every example file, in a fixed order, the sample sheet of
/// sample_sheet.h (planche-essais.dxf) last.
std::vector<ExampleFile> HouseExamples();

}  // namespace sheafwork::dxfgen
