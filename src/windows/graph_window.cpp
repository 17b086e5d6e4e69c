#include "windows/graph_window.h"

#include "graphs/graph_export.h"
#include "graphs/graph_table.h"
#include "graphs/painting.h"
#include "windows/ask_file.h"
#include "windows/desk.h"
#include "windows/window_texts.h"

namespace kalvex {

void DoublePressGraph(const WindowDesk& desk, const Graph& graph, int x, int y) {
  GraphDialogs& dialogs = desk.graphDialogs;
  dialogs.wantsFront = true;
  if (dialogs.contentsOf != 0 || dialogs.propertiesOf != 0) return;
  if (IsInFrame(graph, x, y)) {
    dialogs.contentsOf = graph.number;
    dialogs.contents = ContentsOf(graph, desk.datasets, desk.params);
  } else {
    dialogs.propertiesOf = graph.number;
    dialogs.properties = PropertiesOf(graph);
  }
}

void PressGraphSpace(const WindowDesk& desk, const Graph& graph) {
  if (const auto file = AskFile(desk.platform, desk.fileFolder, texts::kExportGraphFile)) {
    ExportGraph(graph, desk.eval, *file);
  }
}

void MoveMouseOverGraph(const WindowDesk& desk, Graph& graph, int x, int y) {
  if (desk.graphReader && IsInFrame(graph, x, y)) {
    MoveReader(graph, x, y);
  } else {
    HideReader(graph);
  }
}

void ResizeGraph(Graph& graph, int width, int height) {
  if (graph.Width == width && graph.Height == height) return;
  graph.Width = width;
  graph.Height = height;
  RebuildGraph(graph);
}

void CloseGraphWindow(const WindowDesk& desk, Graph& graph) {
  if (desk.graphDialogs.propertiesOf == graph.number) CancelProperties(desk);
  if (desk.graphDialogs.contentsOf == graph.number) CancelContents(desk);
  CloseGraph(graph);
}

// A graph may have been closed behind its dialog, which then stores nothing.
void ApplyProperties(const WindowDesk& desk) {
  Graph* const graph = GetGraphByNumber(desk.graphs, desk.graphDialogs.propertiesOf);
  if (!graph) return;
  StoreProperties(desk.graphDialogs.properties, *graph);
  desk.graphDialogs.properties = PropertiesOf(*graph);
}

void AcceptProperties(const WindowDesk& desk) {
  ApplyProperties(desk);
  CancelProperties(desk);
}

void CancelProperties(const WindowDesk& desk) { desk.graphDialogs.propertiesOf = 0; }

void ApplyContents(const WindowDesk& desk) {
  if (Graph* const graph = GetGraphByNumber(desk.graphs, desk.graphDialogs.contentsOf)) {
    StoreContents(desk.graphDialogs.contents, *graph);
  }
}

void AcceptContents(const WindowDesk& desk) {
  ApplyContents(desk);
  CancelContents(desk);
}

void CancelContents(const WindowDesk& desk) { desk.graphDialogs.contentsOf = 0; }

}  // namespace kalvex
