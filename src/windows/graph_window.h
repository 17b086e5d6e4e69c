// The window of a graph: what mouse and keys do in it. Nothing is picked or zoomed; the axes change in a dialog.
#pragma once

#include "windows/graph_dialogs.h"

namespace kalvex {

struct WindowDesk;

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
void DoublePressGraph(const WindowDesk& desk, const Graph& graph, int x, int y);
// The space bar: asks for a file and exports the graph as text. A file that cannot be written ends it in silence.
void PressGraphSpace(const WindowDesk& desk, const Graph& graph);
// The mouse is at a pixel of the window, or has left it: the reader follows while it is switched on.
void MoveMouseOverGraph(const WindowDesk& desk, Graph& graph, int x, int y);
void ResizeGraph(Graph& graph, int width, int height);
// The user closes the window, and with it the graph and a dialog of its own.
void CloseGraphWindow(const WindowDesk& desk, Graph& graph);

// "Apply" stores, and shows what an axis made of it; "OK" stores and closes; "Cancel" closes.
void ApplyProperties(const WindowDesk& desk);
void AcceptProperties(const WindowDesk& desk);
void CancelProperties(const WindowDesk& desk);
void ApplyContents(const WindowDesk& desk);
void AcceptContents(const WindowDesk& desk);
void CancelContents(const WindowDesk& desk);

}  // namespace kalvex
