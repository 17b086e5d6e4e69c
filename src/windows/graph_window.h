// The window of a graph: what mouse and keys do in it. Nothing is picked or zoomed; the axes change in a dialog.
#pragma once

#include "windows/graph_dialogs.h"

namespace kalvex {

struct Desk;

// Its size is that of the graph, whose whole window is drawn on.
struct GraphWindow {
  int x = 200;
  int y = 200;
};

// The dialog that is open: it has the number of its graph, 0 for none. It is modal, so there is one at a time.
struct GraphDialogs {
  std::uint32_t propertiesOf = 0;
  GraphPropertiesForm properties;
  std::uint32_t contentsOf = 0;
  GraphContents contents;
  bool wantsFront = false;  // a screen brings the dialog to the front, and clears this
};

// A double click: inside the frame it opens the contents, outside the properties. While a dialog is open, of any graph,
// that one comes to the front instead, and what is typed in it is kept.
void DoublePressGraph(Desk& desk, const Graph& graph, int x, int y);
// The space bar: asks for a file and exports the graph as text. A file that cannot be written ends it in silence.
void PressGraphSpace(Desk& desk, const Graph& graph);
void ResizeGraphWindow(Desk& desk, const Graph& graph, int width, int height);
// The user closes the window, and with it the graph and a dialog of its own.
void CloseGraphWindow(Desk& desk, const Graph& graph);

// "Apply" stores, and shows what an axis made of it; "OK" stores and closes; "Cancel" closes.
void ApplyProperties(Desk& desk);
void AcceptProperties(Desk& desk);
void CancelProperties(Desk& desk);
void ApplyContents(Desk& desk);
void AcceptContents(Desk& desk);
void CancelContents(Desk& desk);

}  // namespace kalvex
