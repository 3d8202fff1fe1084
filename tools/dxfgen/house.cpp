#include "dxfgen/house.h"

#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "dxfgen/entities.h"
#include "dxfgen/sample_sheet.h"

namespace sheafwork::dxfgen {

namespace {

// Layers of the office's drawings.
const Props kWalls{"MURS", "", 256, -1};
const Props kDoors{"PORTES", "", 256, -1};
const Props kDims{"COTES", "", 256, -1};
const Props kFurniture{"MOBILIER", "", 256, -1};
const Props kTexts{"TEXTE", "", 256, -1};
const Props kFrame{"CADRE", "", 256, -1};
const Props kViewports{"Defpoints", "", 256, -1};
const Props kLayer0{"0", "", 256, -1};
const Props kByBlock{"0", "", 0, -2};

std::vector<LayerDef> OfficeLayers() {
  return {
      {"MURS", 7, "Continuous", 50, true},  {"PORTES", 3, "Continuous", 25, true},
      {"COTES", 1, "Continuous", 18, true}, {"MOBILIER", 8, "TIRETS", 18, true},
      {"TEXTE", 5, "Continuous", 25, true}, {"CADRE", 7, "Continuous", 35, true},
  };
}

std::vector<LinetypeDef> OfficeLinetypes() {
  return {{"TIRETS", "Tirets __ __ __", {12.7, -6.35}}};
}

// Paper and page-setup settings of the office's PDF device.
PlotSetup Sheet(const std::string& media, double width, double height) {
  PlotSetup s;
  s.device = "PDF.pc3";
  s.media = media;
  s.paperWidth = width;
  s.paperHeight = height;
  // The device's sheets are full bleed.
  s.marginLeft = s.marginBottom = s.marginRight = s.marginTop = 0;
  return s;
}

PlotSetup A3() { return Sheet("ISO A3 (420.00 x 297.00 mm)", 420, 297); }
PlotSetup A1() { return Sheet("ISO A1 (841.00 x 594.00 mm)", 841, 594); }
PlotSetup A4Portrait() { return Sheet("ISO A4 (210.00 x 297.00 mm)", 210, 297); }

// The model tab plots the drawing's extents, fitted and centred.
PlotSetup ModelFit(PlotSetup s) {
  s.flags = 4 | 16 | 32 | 128 | 512 | kModelTypeFlag;
  s.plotType = 1;
  s.standardScale = 0;
  return s;
}

// A layout-type setup that fits what the layout holds on its sheet, centred:
// an A1 layout printed on A3 for a meeting.
PlotSetup FitToSheet(PlotSetup s) {
  s.flags = 4 | 16 | 32 | 128 | 512;
  s.plotType = 1;
  s.standardScale = 0;
  return s;
}

// A model-type setup at a standard scale (25 is 1:50), centred.
PlotSetup ModelAtScale(PlotSetup s, int standardScale, double denominator) {
  s.flags = 4 | 16 | 32 | 128 | 512 | kModelTypeFlag;
  s.plotType = 1;
  s.standardScale = standardScale;
  s.denominator = denominator;
  return s;
}

// The printable area of a sheet in paper units, from the plot origin.
P2 Printable(const PlotSetup& s) {
  return {s.paperWidth - s.marginLeft - s.marginRight,
          s.paperHeight - s.marginBottom - s.marginTop};
}

// The viewport that shows the whole sheet, first in every layout.
Entity OverallViewport(const PlotSetup& s) {
  const P2 size{s.paperWidth, s.paperHeight};
  const P2 center{size.x / 2 - s.marginLeft, size.y / 2 - s.marginBottom};
  return Viewport(kViewports, center, size.x, size.y, 1, {center, 1});
}

// ---------------------------------------------------------------------------
// The title block: a frame with four attributes.

constexpr double kTitleWidth = 90;
constexpr double kTitleHeight = 40;

BlockDef TitleBlockDef() {
  BlockDef b;
  b.name = "CARTOUCHE";
  b.flags = 2;
  b.entities = {
      Rectangle(kLayer0, {0, 0}, {kTitleWidth, kTitleHeight}),
      Line(kLayer0, {0, 30}, {kTitleWidth, 30}),
      Line(kLayer0, {0, 10}, {kTitleWidth, 10}),
      Line(kLayer0, {60, 0}, {60, 10}),
      Text(kLayer0, {3, 33}, 3.5, "Atelier Delorme Architectes"),
      Attdef(kLayer0, "PROJET", "Projet", "Maison", {3, 22}, 4),
      Attdef(kLayer0, "TITRE", "Titre de la planche", "Plan", {3, 14}, 3),
      Attdef(kLayer0, "ECHELLE", "Échelle", "1:1", {3, 3}, 2.5),
      Attdef(kLayer0, "DATE", "Date", "", {63, 3}, 2.5),
  };
  return b;
}

// The title block at `at` (lower left), `scale` times its size.
Entity TitleBlockAt(P2 at, double scale, const std::string& title, const std::string& ratio) {
  const auto place = [&](P2 offset) {
    return P2{at.x + offset.x * scale, at.y + offset.y * scale};
  };
  std::vector<Entity> attributes{
      Attrib(kFrame, "PROJET", "Maison Martin, Lyon", place({3, 22}), 4 * scale),
      Attrib(kFrame, "TITRE", title, place({3, 14}), 3 * scale),
      Attrib(kFrame, "ECHELLE", ratio, place({3, 3}), 2.5 * scale),
      Attrib(kFrame, "DATE", "12/03/2024", place({63, 3}), 2.5 * scale),
  };
  return Insert(kFrame, "CARTOUCHE", at, scale, 0, std::move(attributes));
}

// A paper layout: the sheet's frame, the overall viewport, one viewport
// onto the model and the title block in the lower-right corner.
LayoutDef PaperLayout(const std::string& name, PlotSetup settings, P2 modelCenter, double scale,
                      const std::string& title, const std::string& ratio, double titleScale = 1) {
  LayoutDef layout;
  layout.name = name;
  layout.settings = std::move(settings);
  const P2 area = Printable(layout.settings);
  const double titleWidth = kTitleWidth * titleScale;
  const P2 frameMin{10, 10};
  const P2 frameMax{area.x - 10, area.y - 10};
  const double viewportRight = frameMax.x - titleWidth - 5;
  const P2 viewportCenter{(frameMin.x + 5 + viewportRight) / 2, (frameMin.y + frameMax.y) / 2};
  const P2 viewportSize{viewportRight - frameMin.x - 5, frameMax.y - frameMin.y - 10};
  layout.entities = {
      OverallViewport(layout.settings),
      Viewport(kViewports, viewportCenter, viewportSize.x, viewportSize.y, 2, {modelCenter, scale}),
      Rectangle(kFrame, frameMin, frameMax),
      TitleBlockAt({frameMax.x - titleWidth, frameMin.y}, titleScale, title, ratio),
  };
  return layout;
}

// ---------------------------------------------------------------------------
// Plan pieces, in millimetres.

// A wall segment as a closed outline.
void Wall(std::vector<Entity>& out, P2 min, P2 max) { out.push_back(Rectangle(kWalls, min, max)); }

// A door of width `w` hinged at `hinge`, its leaf open along `dir` (0, 90,
// 180 or 270 degrees), the swing towards the next quarter.
void Door(std::vector<Entity>& out, P2 hinge, double w, double angle) {
  const double rad = angle * 3.14159265358979323846 / 180;
  const P2 leaf{hinge.x + w * std::cos(rad), hinge.y + w * std::sin(rad)};
  out.push_back(Line(kDoors, hinge, leaf));
  out.push_back(Arc(kDoors, hinge, w, angle - 90, angle));
}

// A square column, outlined and solid-filled.
void Column(std::vector<Entity>& out, P2 center, double size) {
  const double h = size / 2;
  const P2 min{center.x - h, center.y - h};
  const P2 max{center.x + h, center.y + h};
  out.push_back(SolidHatch(kWalls, {{{min}, {{max.x, min.y}}, {max}, {{min.x, max.y}}}}));
  out.push_back(Rectangle(kWalls, min, max));
}

// A horizontal dimension under the points a and b, at height `y`.
void HorizontalDimension(std::vector<Entity>& out, double xa, double xb, double from, double y,
                         const std::string& text) {
  out.push_back(Line(kDims, {xa, from}, {xa, y - 200}));
  out.push_back(Line(kDims, {xb, from}, {xb, y - 200}));
  out.push_back(Line(kDims, {xa - 200, y}, {xb + 200, y}));
  out.push_back(Line(kDims, {xa - 100, y - 100}, {xa + 100, y + 100}));
  out.push_back(Line(kDims, {xb - 100, y - 100}, {xb + 100, y + 100}));
  out.push_back(Text(kDims, {(xa + xb) / 2, y + 80}, 200, text, {"Standard", 0, 1, 0}));
}

void VerticalDimension(std::vector<Entity>& out, double ya, double yb, double from, double x,
                       const std::string& text) {
  out.push_back(Line(kDims, {from, ya}, {x - 200, ya}));
  out.push_back(Line(kDims, {from, yb}, {x - 200, yb}));
  out.push_back(Line(kDims, {x, ya - 200}, {x, yb + 200}));
  out.push_back(Line(kDims, {x - 100, ya - 100}, {x + 100, ya + 100}));
  out.push_back(Line(kDims, {x - 100, yb - 100}, {x + 100, yb + 100}));
  out.push_back(Text(kDims, {x - 80, (ya + yb) / 2}, 200, text, {"Standard", 90, 1, 0}));
}

void RoomName(std::vector<Entity>& out, P2 at, const std::string& name, const std::string& area) {
  out.push_back(Text(kTexts, at, 250, name, {"ARCHI", 0, 1, 0}));
  out.push_back(Text(kTexts, {at.x, at.y - 350}, 180, area, {"ARCHI", 0, 1, 0}));
}

// The outer walls of the house (12 m × 9 m, 20 cm thick) and the terrace.
void Shell(std::vector<Entity>& out) {
  out.push_back(Rectangle(kWalls, {0, 0}, {12000, 9000}));
  out.push_back(Rectangle(kWalls, {200, 200}, {11800, 8800}));
  // The terrace in front of the living room: a curved edge.
  out.push_back(LwPolyline(kWalls, {{{7000, 0}, 0.35}, {{11000, 0}, 0}}, false));
  HorizontalDimension(out, 0, 12000, -100, -900, "12,00");
  VerticalDimension(out, 0, 9000, -100, -900, "9,00");
}

BlockDef TableBlock() {
  BlockDef b;
  b.name = "TABLE";
  b.base = {800, 450};
  b.entities.push_back(Rectangle(kLayer0, {0, 0}, {1600, 900}));
  for (double x : {300.0, 800.0, 1300.0}) {
    b.entities.push_back(Circle(kLayer0, {x, -250}, 200));
    b.entities.push_back(Circle(kLayer0, {x, 1150}, 200));
  }
  return b;
}

BlockDef BedBlock() {
  BlockDef b;
  b.name = "LIT";
  b.entities = {
      Rectangle(kLayer0, {0, 0}, {1600, 2000}),
      Rectangle(kByBlock, {100, 1650}, {750, 1950}),
      Rectangle(kByBlock, {850, 1650}, {1500, 1950}),
      Line(kLayer0, {0, 1500}, {1600, 1500}),
  };
  return b;
}

BlockDef KitchenBlock() {
  BlockDef b;
  b.name = "EVIER";
  b.entities = {
      Rectangle(kLayer0, {0, 0}, {2400, 600}),
      Rectangle(kLayer0, {900, 80}, {1500, 520}),
      Circle(kLayer0, {1200, 300}, 40),
  };
  return b;
}

void StyleSet(Document& doc) {
  doc.layers = OfficeLayers();
  doc.linetypes = OfficeLinetypes();
  doc.styles = {{"Standard", "txt", 1}, {"ARCHI", "DejaVuSans.ttf", 1}};
  doc.limMin = {-2000, -3000};
  doc.limMax = {14000, 10000};
}

}  // namespace

Document GroundFloor() {
  Document doc;
  StyleSet(doc);
  doc.blocks = {TitleBlockDef(), TableBlock(), BedBlock(), KitchenBlock()};
  auto& m = doc.model;
  Shell(m);
  // Partitions: living room | kitchen, bedroom above the living room.
  Wall(m, {5000, 200}, {5100, 2000});
  Wall(m, {5000, 2900}, {5100, 8800});
  Wall(m, {200, 4000}, {3500, 4100});
  Wall(m, {4400, 4000}, {5000, 4100});
  Wall(m, {5100, 5000}, {6000, 5100});
  Wall(m, {6900, 5000}, {11800, 5100});
  Door(m, {2000, 200}, 900, 90);  // front door
  Door(m, {5100, 2000}, 900, 90);
  Door(m, {3500, 4100}, 900, 90);
  Door(m, {6000, 5100}, 900, 90);
  Column(m, {1200, 2400}, 300);
  Column(m, {8400, 2600}, 300);
  m.push_back(Insert(kFurniture, "TABLE", {3400, 2200}));
  m.push_back(Insert(kFurniture, "LIT", {1000, 6200}));
  m.push_back(Insert(kFurniture, "EVIER", {11800, 1000}, 1, 90));
  RoomName(m, {1900, 3500}, "Séjour", "19,20 m²");
  RoomName(m, {2600, 5200}, "Chambre", "21,10 m²");
  RoomName(m, {8400, 3800}, "Cuisine", "32,20 m²");
  RoomName(m, {8400, 7000}, "Salle d'eau", "24,80 m²");
  HorizontalDimension(m, 0, 5000, -100, -500, "5,00");
  m.push_back(Text(kTexts, {6000, -2400}, 400, "REZ-DE-CHAUSSÉE", {"ARCHI", 0, 1, 0}));
  doc.views = {{"SEJOUR", {2600, 2100}, 5200, 4200}};

  doc.modelSettings = ModelFit(A3());
  doc.layouts = {
      PaperLayout("Plan A3", A3(), {5700, 3300}, 1.0 / 50, "Plan du rez-de-chaussée", "1:50"),
      PaperLayout("Plan A1", A1(), {6000, 4000}, 1.0 / 20, "Plan du rez-de-chaussée", "1:20", 1.5),
  };
  doc.layouts[0].entities.push_back(MText(
      kTexts, {315, 100}, 3.5, 80, "Notes :\\PCotes en mètres.\\PNe pas mesurer sur le plan."));
  doc.activeLayout = 0;
  doc.pageSetups = {
      {"A3 paysage", FitToSheet(A3())},
      {"A1 paysage", FitToSheet(A1())},
      {"Objet A3 1:50", ModelAtScale(A3(), 25, 50)},
  };
  return doc;
}

Document UpperFloor() {
  Document doc;
  StyleSet(doc);
  doc.blocks = {TitleBlockDef(), BedBlock()};
  auto& m = doc.model;
  Shell(m);
  Wall(m, {4000, 200}, {4100, 8800});
  Wall(m, {8000, 200}, {8100, 3200});
  Wall(m, {8000, 4100}, {8100, 8800});
  Wall(m, {4100, 4500}, {5000, 4600});
  Wall(m, {5900, 4500}, {8000, 4600});
  Door(m, {5000, 4600}, 900, 90);
  Door(m, {8100, 3200}, 900, 90);
  // The stair: treads and the walking line.
  for (int i = 0; i <= 12; ++i) {
    const double y = 4700 + i * 250.0;
    m.push_back(Line(kWalls, {4200, y}, {5200, y}));
  }
  m.push_back(Polyline2d(kWalls, {{{4700, 4800}}, {{4700, 7600}}, {{4800, 7700}}}, false));
  m.push_back(Insert(kFurniture, "LIT", {1200, 1000}));
  m.push_back(Insert(kFurniture, "LIT", {1200, 5200}));
  m.push_back(Insert(kFurniture, "LIT", {9000, 6000}, 0.9));
  RoomName(m, {2000, 3600}, "Chambre 1", "14,80 m²");
  RoomName(m, {2000, 8000}, "Chambre 2", "17,20 m²");
  RoomName(m, {10000, 4800}, "Chambre 3", "21,30 m²");
  RoomName(m, {6000, 2000}, "Salle de bains", "15,10 m²");
  m.push_back(Circle(kFurniture, {6000, 3200}, 400));  // the bath's basin
  m.push_back(Text(kTexts, {6000, -2400}, 400, "ÉTAGE", {"ARCHI", 0, 1, 0}));

  doc.modelSettings = ModelFit(A3());
  doc.layouts = {
      PaperLayout("Plan étage", A3(), {5700, 3300}, 1.0 / 50, "Plan de l'étage", "1:50"),
      PaperLayout("Détail chambres", A3(), {2000, 4500}, 1.0 / 20, "Chambres 1 et 2", "1:20"),
      PaperLayout("Détail salle de bains", A4Portrait(), {6000, 2300}, 1.0 / 20, "Salle de bains",
                  "1:20", 0.6),
  };
  doc.activeLayout = 1;
  doc.pageSetups = {{"A3 paysage", FitToSheet(A3())}};
  return doc;
}

Document Elevations() {
  Document doc;
  StyleSet(doc);
  doc.styles.push_back({"ARCHI-PERSO", "archi-perso.shx", 0.8});
  BlockDef titleXref;
  titleXref.name = "cartouche";
  titleXref.flags = 4;
  titleXref.xrefPath = "cartouche.dxf";
  BlockDef backgroundXref;
  backgroundXref.name = "fond-de-plan";
  backgroundXref.flags = 4;
  backgroundXref.xrefPath = "fond-de-plan.dxf";
  doc.blocks = {titleXref, backgroundXref};

  auto& m = doc.model;
  // Two elevations side by side: walls, roof and openings.
  for (double x0 : {0.0, 15000.0}) {
    m.push_back(Rectangle(kWalls, {x0, 0}, {x0 + 12000, 5600}));
    m.push_back(
        LwPolyline(kWalls, {{{x0 - 400, 5600}}, {{x0 + 6000, 8400}}, {{x0 + 12400, 5600}}}, true));
    for (double wx : {1500.0, 4500.0, 7500.0, 10000.0}) {
      m.push_back(Rectangle(kDoors, {x0 + wx, 900}, {x0 + wx + 1200, 2300}));
      m.push_back(Rectangle(kDoors, {x0 + wx, 3700}, {x0 + wx + 1200, 4900}));
    }
    m.push_back(Line(kDims, {x0, -300}, {x0 + 12000, -300}));
  }
  m.push_back(Arc(kDoors, {21000, 2300}, 600, 0, 180));  // the arched front door of the south side
  m.push_back(Text(kTexts, {6000, -1200}, 350, "Façade nord", {"ARCHI-PERSO", 0, 1, 0}));
  m.push_back(Text(kTexts, {21000, -1200}, 350, "Façade sud", {"ARCHI-PERSO", 0, 1, 0}));
  m.push_back(Insert(kLayer0, "fond-de-plan", {0, 0}));

  doc.modelSettings = ModelFit(A3());
  const auto withTitle = [](LayoutDef layout) {
    const P2 area = Printable(layout.settings);
    layout.entities.push_back(Insert(kFrame, "cartouche", {area.x - 100, 10}));
    return layout;
  };
  const auto elevation = [&](const std::string& name, P2 center, PlotSetup settings) {
    LayoutDef layout;
    layout.name = name;
    layout.settings = std::move(settings);
    const P2 area = Printable(layout.settings);
    layout.entities = {
        OverallViewport(layout.settings),
        Viewport(kViewports, {area.x / 2 - 45, area.y / 2 + 20}, 300, 200, 2, {center, 1.0 / 50}),
        Rectangle(kFrame, {10, 10}, {area.x - 10, area.y - 10}),
    };
    return withTitle(layout);
  };
  PlotSetup sketch = A3();
  sketch.device = "none_device";
  doc.layouts = {
      elevation("Façade nord", {6000, 3800}, A3()),
      elevation("Façade sud", {21000, 3800}, A3()),
      elevation("Esquisse", {13500, 3800}, sketch),
  };
  doc.activeLayout = 0;
  doc.pageSetups = {{"A3 paysage", FitToSheet(A3())}};
  return doc;
}

Document TitleBlock() {
  Document doc;
  StyleSet(doc);
  auto& m = doc.model;
  m.push_back(Rectangle(kFrame, {0, 0}, {kTitleWidth, kTitleHeight}));
  m.push_back(Line(kFrame, {0, 30}, {kTitleWidth, 30}));
  m.push_back(Line(kFrame, {0, 10}, {kTitleWidth, 10}));
  m.push_back(Text(kTexts, {3, 33}, 3.5, "Atelier Delorme Architectes"));
  m.push_back(Text(kTexts, {3, 22}, 4, "Maison Martin, Lyon"));
  m.push_back(Text(kTexts, {3, 14}, 3, "Façades"));
  m.push_back(Text(kTexts, {3, 3}, 2.5, "1:50"));
  doc.limMin = {0, 0};
  doc.limMax = {kTitleWidth, kTitleHeight};
  doc.modelSettings = ModelFit(A4Portrait());
  LayoutDef sheet;
  sheet.name = "Présentation1";
  sheet.settings = A4Portrait();
  sheet.entities = {OverallViewport(sheet.settings)};
  doc.layouts = {sheet};
  return doc;
}

Document GardenShedR12() {
  Document doc;
  doc.version = "AC1009";
  doc.layers = {{"MURS", 7, "Continuous", -3, true},
                {"TEXTE", 5, "Continuous", -3, true},
                {"CADRE", 7, "Continuous", -3, true},
                {"VEGETATION", 3, "Continuous", -3, true}};
  doc.limMin = {0, 0};
  doc.limMax = {6000, 4000};
  const Props walls{"MURS", "", 256, -1};
  const Props texts{"TEXTE", "", 256, -1};
  const Props frame{"CADRE", "", 256, -1};
  const Props green{"VEGETATION", "", 256, -1};

  BlockDef tree;
  tree.name = "ARBRE";
  tree.entities = {Circle(kLayer0, {0, 0}, 600), Line(kLayer0, {-600, 0}, {600, 0}),
                   Line(kLayer0, {0, -600}, {0, 600})};
  doc.blocks = {tree};

  auto& m = doc.model;
  // The shed: 3 m × 2 m with a rounded back wall.
  m.push_back(Polyline2d(
      walls, {{{1000, 1000}}, {{4000, 1000}}, {{4000, 3000}, 0.4}, {{1000, 3000}}}, true));
  m.push_back(Line(walls, {2200, 1000}, {3000, 1000}));
  m.push_back(Arc(walls, {2200, 1000}, 800, 0, 90));
  m.push_back(Solid(walls, {1000, 1000}, {1150, 1000}, {1000, 1150}, {1150, 1150}));
  m.push_back(Insert(green, "ARBRE", {5200, 3200}));
  m.push_back(Insert(green, "ARBRE", {500, 3500}, 0.7));
  m.push_back(Text(texts, {2500, 2000}, 200, "Abri de jardin", {"Standard", 0, 1, 0}));

  LayoutDef paper;
  paper.name = "";
  paper.settings = A3();
  paper.entities = {
      ViewportR12(frame, {210, 148.5}, 420, 297, 1, {{210, 148.5}, 1}),
      ViewportR12(frame, {180, 160}, 300, 200, 2, {{2500, 2000}, 1.0 / 20}),
      Line(frame, {10, 10}, {410, 10}),
      Line(frame, {410, 10}, {410, 287}),
      Line(frame, {410, 287}, {10, 287}),
      Line(frame, {10, 287}, {10, 10}),
      Text(texts, {340, 20}, 5, "Relevé 1992", {"Standard", 0, 0, 0}),
  };
  doc.layouts = {paper};
  doc.activeLayout = 0;
  return doc;
}

std::vector<ExampleFile> HouseExamples() {
  return {
      {"rez-de-chaussee.dxf", WriteDxf(GroundFloor())},
      {"etage.dxf", WriteDxf(UpperFloor())},
      {"facades.dxf", WriteDxf(Elevations())},
      {"cartouche.dxf", WriteDxf(TitleBlock())},
      {"ancien-r12.dxf", WriteDxf(GardenShedR12())},
      {"planche-essais.dxf", WriteDxf(SampleSheet())},
  };
}

}  // namespace sheafwork::dxfgen
