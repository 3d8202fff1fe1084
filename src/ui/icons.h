#pragma once
// The program's icons, drawn with QPainter at whatever size and pixel ratio
// they are asked for, so that they stay sharp on high-density screens.
#include <QIcon>

namespace sheafwork::ui {

enum class IconId {
  App,
  AddDrawing,
  Remove,
  NewList,
  OpenList,
  SaveList,
  Plot,
  PlotTest,
  Logging,
  Layouts,
  PageSetups,
  Devices,
  Settings,
  Layers,
  Help,
  Good,     ///< a row plotted
  Bad,      ///< a row failed
  Pending,  ///< a row being plotted
  Drawing,  ///< a row not plotted yet
};

QIcon MakeIcon(IconId id);

}  // namespace sheafwork::ui
