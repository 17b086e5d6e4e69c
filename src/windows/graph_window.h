// The window of a graph: actions of mouse and keys. There is no picking and no zooming; a dialog changes the axes.
#pragma once

#include "windows/graph_dialogs.h"

namespace kalvex {

struct Desk;

// Its size is that of the graph.
struct GraphWindow {
  int x = 200;
  int y = 200;
};

// The open dialog, by the number of its graph; 0 for none. It is modal, so at most one is open.
struct GraphDialogs {
  std::uint32_t propertiesOf = 0;
  GraphPropertiesForm properties;
  std::uint32_t contentsOf = 0;
  GraphContents contents;
  bool wantsFront = false;  // the screen brings the dialog to the front and clears this
};

// A double click opens a dialog: inside the frame the contents, outside the properties. If a dialog of any graph is
// already open, it comes to the front instead and keeps its entries.
void DoublePressGraph(Desk& desk, const Graph& graph, int x, int y);
// The space bar: asks for a file and exports the graph as text. If the file cannot be written, no message is shown.
void PressGraphSpace(Desk& desk, const Graph& graph);
void ResizeGraphWindow(Desk& desk, const Graph& graph, int width, int height);
// The user closes the window. The graph and its dialog are closed too.
void CloseGraphWindow(Desk& desk, const Graph& graph);

// "Apply" stores and shows the normalised axes. "OK" stores and closes. "Cancel" closes.
void ApplyProperties(Desk& desk);
void AcceptProperties(Desk& desk);
void CancelProperties(Desk& desk);
void ApplyContents(Desk& desk);
void AcceptContents(Desk& desk);
void CancelContents(Desk& desk);

}  // namespace kalvex
