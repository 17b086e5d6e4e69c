#include "windows/graph_window.h"

#include "graphs/painting.h"
#include "windows/ask_file.h"
#include "windows/desk.h"
#include "windows/window_texts.h"

namespace kalvex {

void DoublePressGraph(Desk& desk, const Graph& graph, int x, int y) {
  GraphDialogs& dialogs = desk.graphDialogs;
  dialogs.wantsFront = true;
  if (dialogs.contentsOf != 0 || dialogs.propertiesOf != 0) return;
  if (IsInFrame(graph, x, y)) {
    dialogs.contentsOf = graph.number;
    dialogs.contents = ContentsOf(graph, desk.session.Datasets(), desk.session.Params());
  } else {
    dialogs.propertiesOf = graph.number;
    dialogs.properties = PropertiesOf(graph);
  }
}

void PressGraphSpace(Desk& desk, const Graph& graph) {
  if (const auto file = AskFile(desk, texts::kExportGraphFile)) {
    desk.session.ExportGraph(graph.number, *file).GetStatus().Ignore();
  }
}

void ResizeGraphWindow(Desk& desk, const Graph& graph, int width, int height) {
  if (graph.Width == width && graph.Height == height) return;
  desk.session.ResizeGraph(graph.number, width, height).Ignore();
}

void CloseGraphWindow(Desk& desk, const Graph& graph) { desk.session.CloseGraph(graph.number).Ignore(); }

void ApplyProperties(Desk& desk) {
  GraphDialogs& dialogs = desk.graphDialogs;
  if (!desk.session.EditGraph(dialogs.propertiesOf, EditOf(dialogs.properties)).Ok()) return;
  dialogs.properties = PropertiesOf(*desk.session.FindGraph(dialogs.propertiesOf));
}

void AcceptProperties(Desk& desk) {
  ApplyProperties(desk);
  CancelProperties(desk);
}

void CancelProperties(Desk& desk) { desk.graphDialogs.propertiesOf = 0; }

void ApplyContents(Desk& desk) {
  const GraphDialogs& dialogs = desk.graphDialogs;
  if (dialogs.contentsOf != 0) desk.session.SetCurves(dialogs.contentsOf, CurvesOf(dialogs.contents)).Ignore();
}

void AcceptContents(Desk& desk) {
  ApplyContents(desk);
  CancelContents(desk);
}

void CancelContents(Desk& desk) { desk.graphDialogs.contentsOf = 0; }

}  // namespace kalvex
