// The session: all tables, every operation on them, and the one way in which a change is told.
//
// A macro, a window or a program in another language asks a Session to load data, describe a sample and fit. Each thing
// that a person can ask for is one operation here. It checks its arguments, acts, tells what lies below (the lists of
// the fit, the graphs, the caches), and then tells those above, the SessionListeners, by one typed Change. It returns a
// Status, or a Result with a value, and a failure says what is wrong in one sentence. Nothing else changes a table.
//
//   session.h        the operations, by subject; each .cpp file holds those of one subject
//   change.h         what listeners hear
//   history.h        steps back and forward: what an operation touches is kept until it falls out of a bound of memory
//   statement.h      operations as the statements of a macro
//
// While a fit runs, one gate (Session::Do) refuses whatever would pull the ground away from under it; only what says so
// here can be done then. Numbers: a dataset is known by its slot from 1 to 100, a model and a graph by the number that
// they got when they were made; rows count from 1.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/noise.h"
#include "core/platform.h"
#include "core/status.h"
#include "datasets/dataset.h"
#include "datasets/load_dataset.h"
#include "evaluation/eval_context.h"
#include "files/curve_file.h"
#include "fit/fit_state.h"
#include "graphs/graph.h"
#include "graphs/graph_picture.h"
#include "graphs/graph_table.h"
#include "numeric/thread_pool.h"
#include "pictures/canvas.h"
#include "records/model.h"
#include "records/param_place.h"
#include "session/change.h"
#include "session/history.h"

namespace kalvex {

// A parameter as a person names it: of a model the leading one or an element of a row, or an experimental one.
struct ParamRef {
  ParamKind where = ParamKind::kEpsInf;
  std::uint32_t model = 0;  // its number
  int row = 1;
  int column = 0;
  int expParam = 0;

  static ParamRef EpsInf(std::uint32_t model) { return {ParamKind::kEpsInf, model, 1, 0, 0}; }
  static ParamRef Row(std::uint32_t model, int row, int column) { return {ParamKind::kRow, model, row, column, 0}; }
  static ParamRef Exp(int index) { return {ParamKind::kExp, 0, 1, 0, index}; }
};

// What is to become of a parameter; what is not given stays.
struct ParamEdit {
  std::optional<double> value{};
  std::optional<std::uint32_t> adjustable{};
  std::optional<double> min{}, max{};
  std::optional<std::uint32_t> useMin{}, useMax{};
  std::optional<int> coupling{};  // group 1 to 24; any other number means none
  bool holdInLimits = false;      // the value is held inside the limits in force, also where none is given
  bool told = true;               // the fit and the graphs hear of the model
};

// Whether the fit and the graphs hear of a change at once, or find it at their next rebuilding.
enum class Heard { kAtOnce, kLater };

struct TermPair {
  std::uint32_t datasetId = 0;
  std::uint32_t model = 0;
};

struct FitRequest {
  std::optional<int> iterations{};  // at most so many in this run, whatever the options say
  bool byHand = false;              // a person can take it back: FitState::UndoAvailable
};

struct AxisEdit {
  std::optional<double> min{}, max{};
  std::optional<bool> log{}, titleShown{};
  std::optional<std::string> title{};
};
struct GraphEdit {
  AxisEdit x, y;
  std::optional<bool> showFitted;
};

class Session {
 public:
  // threads: how many may compute at once. Seeds the noise with the platform's clock. The platform must outlive the
  // session, or be replaced before it goes.
  explicit Session(Platform& platform, int threads = 1);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session();

  // ---- what is there

  const DatasetTable& Datasets() const { return tables_.datasets; }
  const ParamTables& Params() const { return tables_.params; }
  const FitState& Fit() const { return tables_.fit; }
  const GraphTable& Graphs() const { return tables_.graphs; }
  // The graphs and ChiSq follow each change of a parameter.
  bool AutoScreenUpdate() const { return tables_.autoScreenUpdate; }
  // Graphs show the crosshair.
  bool GraphReader() const { return tables_.graphReader; }
  // The fit's lists hear of changes: the fit has been opened.
  bool FitFollows() const { return tables_.fitFollows; }

  // Null where there is none of that number, or nothing is loaded.
  const Model* FindModel(long long number) const;
  const Graph* FindGraph(long long number) const;
  const Dataset* FindDataset(long long slot) const;
  const ModelParam* FindParam(const ParamRef& param) const;
  // The type of a special model, null for a plain one.
  const ModelType* TypeOfModel(const Model& model) const;

  // What is kept so that the next evaluation is faster: it belongs to models that exist, and has a bound.
  std::size_t BytesKeptForEvaluation() const;

  void UsePlatform(Platform& platform);
  Platform& GetPlatform() { return *platform_; }
  void Listen(SessionListener& listener);
  void StopListening(SessionListener& listener);

  // ---- datasets (session_datasets.cpp)

  // Fills the slot. On failure the rows that were there stay, but for an error bar that is not above 0, which is found
  // only when the new rows are there.
  Status LoadDataset(int slot, const DatasetSource& source);
  // What the record keeps of an attempt to load is forgotten, and rows that such an attempt has left.
  Status ClearDataset(int slot);
  // Its curves leave the graphs, and its terms the fit if that follows. A slot that holds nothing is no failure.
  Status UnloadDataset(int slot);
  Status UnloadAllDatasets();
  // y becomes scale y + shift, sigma becomes scale sigma.
  Status TransformDataset(int slot, double scale, double shift);
  // A normal deviate of width sigma is added to each y, and sigma becomes that of each row. The dataset's terms leave
  // the fit if that follows.
  Status AddNoise(int slot, double sigma);
  // Rows outside of the range take no part in the fit; a limit that is not given stays. kLater: nobody is told, and the
  // next rebuilding of the fit's points takes the new range.
  Status CutDataset(int slot, std::optional<double> xMin, std::optional<double> xMax, Heard heard);
  Status SetDatasetQuantity(int slot, Quantity quantity, Heard heard);
  // Can be done during a fit. A slot that holds nothing gives an empty file.
  Status ExportDataset(int slot, const std::string& file, bool onlyFitted, bool errorBars);

  // ---- models (session_models.cpp)

  // A model with one default row; its number.
  Result<std::uint32_t> NewModel();
  // Its curves leave the graphs, its terms the fit, and what was kept for its evaluation goes.
  Status CloseModel(std::uint32_t model);
  // position: of the new row, from 1; one outside counts as the nearest inside.
  Status InsertRow(std::uint32_t model, int position);
  Status RemoveRow(std::uint32_t model, int row);
  Status MoveRow(std::uint32_t model, int row, bool up);
  // key: 1 to 5, see SortKey.
  Status SortRows(std::uint32_t model, int key);
  Status FixAllParams(std::uint32_t model, bool fix);
  // Writes the model, a summary, and a line of "Par.dat".
  Status SaveModel(std::uint32_t model, const std::string& file);
  Status LoadModel(std::uint32_t model, const std::string& file);

  // ---- parameters (session_params.cpp)

  // All values of a dragged slider between two ends of a gesture are one step of the history.
  Status SetParam(const ParamRef& param, const ParamEdit& edit);
  // The whole record, past limits and coupling.
  Status CopyParam(const ParamRef& to, const ParamRef& from);
  // The values of all rows of all models. Loading goes past limits and coupling, up to the first record that belongs to
  // another place.
  Status SaveParams(const std::string& file);
  Status LoadParams(const std::string& file);
  // Writes what "ParsSpecial.cfg" asks for.
  Status SaveParamsSpecial();

  // ---- the variational dielectric function (session_mesh.cpp)

  // A mesh at the frequencies of the sources; without a single row it is cleared.
  Status InitMesh(std::uint32_t model, const std::array<VdfSource, 3>& sources, bool on, bool kk, bool fitActive);
  // Without a mesh these four do nothing, and succeed.
  Status ToggleMeshOn(std::uint32_t model);
  Status ToggleMeshKK(std::uint32_t model);
  Status ToggleMeshFitActive(std::uint32_t model);
  Status MakeMeshPositive(std::uint32_t model);
  // Only the switches that are given, and only where they differ.
  Status SwitchMesh(std::uint32_t model, std::optional<bool> on, std::optional<bool> kk, std::optional<bool> fitActive);
  Status SaveMesh(std::uint32_t model, const std::string& file);
  Status LoadMesh(std::uint32_t model, const std::string& file);

  // ---- the fit (session_fit.cpp)

  // From now on the lists follow changes; they are rebuilt. Both can be done during a fit, which Close asks to stop.
  Status OpenFit();
  Status CloseFit();
  // A term at the end of the list; the slot need not be loaded.
  Status AddTerm(int slot, std::uint32_t model, std::optional<double> weight);
  // Pairs that the list has already are left out.
  Status AddTerms(std::span<const TermPair> pairs);
  // The first term of the dataset in one slot and the model in the other, both places in their tables from 1. The lists
  // are rebuilt also if there is no such term.
  Status DeleteTerm(int slot, int modelSlot);
  Status RemoveTerms(std::span<const int> ids);
  Status WeighTerms(std::span<const int> ids, double weight);
  Status SetFitOptions(const FitOptions& options);
  // During a run it asks that run to stop, and succeeds. Fit().report tells how a run ended.
  Status RunFit(const FitRequest& request);
  void StopFit();
  // Swaps the values before the last run and the present ones.
  Status UndoFit();
  // Everything that follows parameters is made anew, whether or not AutoScreenUpdate is on.
  Status Recompute();
  // Files about a fit, in the current folder: "QntyErrorBars.dat", "Jakob.dat", "Jakob2.dat", "TestDeriv1.txt",
  // "TestDeriv.txt", "Tab.dat".
  Status WriteQuantityErrorBars();
  Status DumpDerivatives();
  Status DumpSensitivity();
  Status TestDerivatives();
  Status TestQuantityDerivatives();
  Status WriteGapTable();

  // ---- graphs and curves (session_graphs.cpp); all can be done during a fit

  // Of the usual size, or of one in pixels; its number.
  Result<std::uint32_t> NewGraph(std::optional<int> width = {}, std::optional<int> height = {});
  Status CloseGraph(std::uint32_t graph);
  Status ResizeGraph(std::uint32_t graph, std::optional<int> width, std::optional<int> height);
  Status EditGraph(std::uint32_t graph, const GraphEdit& edit);
  Status AddCurve(std::uint32_t graph, const Curve& curve);
  // The first curve of that kind, of that dataset (its id) or model, and of the Quantity unless it is -1.
  Status RemoveCurve(std::uint32_t graph, CurveKind kind, std::uint32_t of, std::optional<Quantity> quantity);
  Status SetCurves(std::uint32_t graph, std::vector<Curve> curves);
  Status SetAutoScreenUpdate(bool on);
  Status SetGraphReader(bool on);
  // What shows the model, or the experimental parameters, is drawn anew; the fit does not hear of it.
  void RedrawModel(std::uint32_t model);
  void RedrawExpParams();

  // The number of curves written.
  Result<int> ExportGraph(std::uint32_t graph, const std::string& file);
  Status DrawGraph(std::uint32_t graph, PictureFormat format, int width, int height, const std::string& file);
  // No model, or no Quantity, gives an empty file. kNotComputed: the file is written, but its values are old ones.
  Status ExportModelCurve(std::optional<std::uint32_t> model, const CurveExport& what, const std::string& file);

  // Everything, or what has changed since the graph was painted last.
  void PaintGraph(std::uint32_t graph, Canvas& canvas);
  void RepaintGraph(std::uint32_t graph, Canvas& canvas);
  // The next repainting is of everything.
  void ForgetPicture(std::uint32_t graph);
  // The crosshair at a pixel of the window, or nowhere.
  void MoveGraphReader(std::uint32_t graph, int x, int y);
  void HideGraphReader(std::uint32_t graph);

  // ---- the history (session.cpp)

  // Takes the last step back, or does it again. Their labels are in GetHistory().
  Status StepBack();
  Status StepForward();
  // A gesture has ended: the next operation is a step of its own.
  void EndGesture() { history_.EndGesture(); }
  const History& GetHistory() const { return history_; }
  void SetHistoryBound(std::size_t bytes) { history_.SetBound(bytes); }

 private:
  friend struct SessionAccess;  // tests set tables up by hand
  class RunFollower;            // of session_fit.cpp

  // The gate, the history and the telling around an operation. act gives a Status or a Result.
  template <class Act>
  auto Do(Operation operation, const Pieces& touched, Act act) -> decltype(act());
  // The same for what changes no table.
  template <class Act>
  auto DoOutside(Operation operation, Act act) -> decltype(act());
  Status Gate() const;

  void Tell(ChangeKind kind, std::uint32_t id = 0, int slot = 0) { told_.push_back({kind, id, slot}); }
  void Deliver(const Operation* operation);

  Model* ModelOf(std::uint32_t number);
  Graph* GraphOf(std::uint32_t number);
  Dataset* SlotOf(int slot);
  ModelParam* ParamOf(const ParamRef& param);
  ParamPlace PlaceOf(const ParamRef& param) const;

  void AfterStep();

  // Floor by floor: the graphs, then the fit.
  void TellGraphs(GraphEvent event, std::int64_t id);
  void TellFitOfDataset(std::uint32_t datasetId);
  void TellFitOfParams();
  void DropTermsIf(const std::function<bool(const ChiSqTerm&)>& isGone);
  void RebuildTerms();
  void RebuildParams(bool compute);
  void HearModel(Model& model, bool fitToo = true);
  void HearRows(Model& model);
  void HearExpParams(bool fitToo = true);
  void HearCoupled();
  void ShowValues();
  // An operation on the whole of one model, by change(model), and what it has changed.
  enum class Changed { kValues, kRows };
  template <class Act>
  Status ChangeModel(std::uint32_t number, Operation operation, Changed what, Act change);
  template <class Act>
  Status ChangeGraph(std::uint32_t number, Operation operation, Act change);
  Pieces PiecesOfEdit(const ParamRef& param, const ParamEdit& edit);

  Platform* platform_;
  ThreadPool pool_;
  SessionTables tables_;
  EvalContext eval_;
  History history_;
  std::vector<SessionListener*> listeners_;
  std::vector<Change> told_;
};

}  // namespace kalvex
