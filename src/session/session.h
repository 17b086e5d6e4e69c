// The session: all tables, every operation on them, and the notification of changes. This folder stands on floor 7,
// above the fit, the files and the graphs, and below the windows and macros.
//
// A macro, a window or a program in another language uses a Session to load data, describe a sample and fit. Everything
// that a person can request is one operation here. An operation checks its arguments, changes the tables, updates the
// lists of the fit, the graphs and the caches, and then notifies the SessionListeners by one typed Change. It returns a
// Status, or a Result with a value. The text of a failure says in one sentence what is wrong. No other code changes a
// table. Read the files in this order:
//
//   session.h        the operations, by subject; each session_*.cpp file implements one subject
//   change.h         what listeners receive
//   do.h             the frame around every operation: gate, history, notification
//   history.h        undo and redo; copies of what operations changed are kept within a bound of memory
//   statement.h      operations as statements of a macro
//
// While a fit runs, the gate (Session::Do) refuses every operation that would change the data of the fit. Operations
// that are possible during a fit say so below; the others return kBusy. Numbers: a dataset is identified by its slot
// from 1 to 100, a model or a graph by the number it got when it was made; rows count from 1.
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

// A parameter: epsInf of a model, an element of a row, or an experimental parameter.
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

// New values for the fields of a parameter. A field without a value stays as it is.
struct ParamEdit {
  std::optional<double> value{};
  std::optional<std::uint32_t> adjustable{};
  std::optional<double> min{}, max{};
  std::optional<std::uint32_t> useMin{}, useMax{};
  std::optional<int> coupling{};  // group 1 to 24; any other number means none
  bool holdInLimits = false;      // clamp the value to the active limits even if it is not given
  bool told = true;               // notify the fit and the graphs
};

// Whether the fit and the graphs are updated at once or at their next rebuilding.
enum class Heard { kAtOnce, kLater };

struct TermPair {
  std::uint32_t datasetId = 0;
  std::uint32_t model = 0;
};

struct FitRequest {
  std::optional<int> iterations{};      // limit for this run, whatever the options say
  std::optional<int> starts{};          // from how many points; more than 1 needs method 2
  std::optional<std::uint32_t> seed{};  // of the scattered ones
  bool byHand = false;                  // a person can undo the run: FitState::UndoAvailable
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

// What is done where a macro or a person does not say otherwise. Each part is a setting by itself, and FitOptions sets
// it.
enum class Defaults : int {
  kFormer = 1,   // macros written before there was a choice give the same files as ever
  kPresent = 2,  // the bounded fit, standard errors, relative stop rules; a fit needs no window
};

// The options, with those in which the defaults differ set to the defaults, or to their values in `from`.
FitOptions WithDefaults(FitOptions options, Defaults defaults);
FitOptions WithDefaultsOf(FitOptions options, const FitOptions& from);

class Session {
 public:
  // threads: number of threads for computing. The noise is seeded with the platform's clock. The platform must outlive
  // the session, or be replaced before it is destroyed.
  explicit Session(Platform& platform, int threads = 1, Defaults defaults = Defaults::kPresent);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session();

  // ---- reading the tables

  const DatasetTable& Datasets() const { return tables_.datasets; }
  const ParamTables& Params() const { return tables_.params; }
  const FitState& Fit() const { return tables_.fit; }
  const GraphTable& Graphs() const { return tables_.graphs; }
  // If on, the graphs and ChiSq are updated at each change of a parameter.
  bool AutoScreenUpdate() const { return tables_.autoScreenUpdate; }
  // Graphs show the crosshair.
  bool GraphReader() const { return tables_.graphReader; }
  // True if the fit window has been opened: the fit's lists are updated at each change.
  bool FitFollows() const { return tables_.fitFollows; }

  // Null if that number does not exist, or if nothing is loaded in the slot.
  const Model* FindModel(long long number) const;
  const Graph* FindGraph(long long number) const;
  const Dataset* FindDataset(long long slot) const;
  const ModelParam* FindParam(const ParamRef& param) const;
  // The type of a special model, null for a plain one.
  const ModelType* TypeOfModel(const Model& model) const;

  // Size of the caches for evaluation. They belong to existing models and have a bound.
  std::size_t BytesKeptForEvaluation() const;

  void UsePlatform(Platform& platform);
  Platform& GetPlatform() { return *platform_; }
  void Listen(SessionListener& listener);
  void StopListening(SessionListener& listener);

  // ---- datasets (session_datasets.cpp)

  // Fills the slot. On failure the previous rows stay, with one exception: an error bar that is not positive is
  // detected only after the new rows have replaced them.
  Status LoadDataset(int slot, const DatasetSource& source);
  // Deletes the settings of a failed attempt to load, and the rows that it left.
  Status ClearDataset(int slot);
  // Removes its curves from the graphs, and its terms from the fit if FitFollows. An empty slot is not a failure.
  Status UnloadDataset(int slot);
  Status UnloadAllDatasets();  // one step of the history
  // y becomes scale y + shift, sigma becomes scale sigma, or |scale| sigma where points without a positive sigma are
  // left out of the fit.
  Status TransformDataset(int slot, double scale, double shift);
  // Adds a normal deviate of width sigma to each y; sigma becomes the error bar of each row. Removes the dataset's
  // terms from the fit if FitFollows.
  Status AddNoise(int slot, double sigma);
  // Excludes rows outside of the range from the fit. A limit without a value stays. With Heard::kLater nothing is
  // notified; the new range takes effect when the fit's points are next rebuilt.
  Status CutDataset(int slot, std::optional<double> xMin, std::optional<double> xMax, Heard heard);
  // kNotThere if nothing is loaded in the slot.
  Status SetDatasetQuantity(int slot, Quantity quantity, Heard heard);
  // Possible during a fit. An empty slot gives an empty file.
  Status ExportDataset(int slot, const std::string& file, bool onlyFitted, bool errorBars);

  // ---- models (session_models.cpp)

  // Makes a model with one default row and returns its number.
  Result<std::uint32_t> NewModel();
  // Removes its curves from the graphs, its terms from the fit, and its caches.
  Status CloseModel(std::uint32_t model);
  // position: of the new row, from 1; a position outside is clamped.
  Status InsertRow(std::uint32_t model, int position);
  Status RemoveRow(std::uint32_t model, int row);
  Status MoveRow(std::uint32_t model, int row, bool up);
  // key: 1 to 5, see SortKey.
  Status SortRows(std::uint32_t model, int key);
  Status FixAllParams(std::uint32_t model, bool fix);
  // Writes the model, a summary, and a line of "Par.dat"; see files/model_file.h.
  Status SaveModel(std::uint32_t model, const std::string& file);
  Status LoadModel(std::uint32_t model, const std::string& file);

  // ---- parameters (session_params.cpp)

  // All values of a slider between two calls of EndGesture are one step of the history.
  Status SetParam(const ParamRef& param, const ParamEdit& edit);
  // Copies the whole record, without regard to limits and coupling.
  Status CopyParam(const ParamRef& to, const ParamRef& from);
  // The values of all rows of all models. Loading disregards limits and coupling and stops at the first record that
  // does not match; see files/param_file.h.
  Status SaveParams(const std::string& file);
  Status LoadParams(const std::string& file);
  // Writes the files that "ParsSpecial.cfg" lists.
  Status SaveParamsSpecial();

  // ---- the variational dielectric function (session_mesh.cpp)

  // Makes a mesh at the frequencies of the sources. Without any row the mesh is cleared.
  Status InitMesh(std::uint32_t model, const std::array<VdfSource, 3>& sources, bool on, bool kk, bool fitActive);
  // Without a mesh these four change nothing and succeed.
  Status ToggleMeshOn(std::uint32_t model);
  Status ToggleMeshKK(std::uint32_t model);
  Status ToggleMeshFitActive(std::uint32_t model);
  Status MakeMeshPositive(std::uint32_t model);
  // Sets the given switches, if they differ from the present ones.
  Status SwitchMesh(std::uint32_t model, std::optional<bool> on, std::optional<bool> kk, std::optional<bool> fitActive);
  Status SaveMesh(std::uint32_t model, const std::string& file);
  Status LoadMesh(std::uint32_t model, const std::string& file);

  // ---- the fit (session_fit.cpp)

  // Opens the fit: its lists are rebuilt and follow changes until CloseFit. Both are possible during a fit; CloseFit
  // stops the run.
  Status OpenFit();
  Status CloseFit();
  // Appends a term to the list. The slot may be empty.
  Status AddTerm(int slot, std::uint32_t model, std::optional<double> weight);
  // Pairs that are already in the list are skipped.
  Status AddTerms(std::span<const TermPair> pairs);
  // Removes the first term of that dataset and model. Both are places in their tables, from 1. The lists are rebuilt
  // even if there is no such term.
  Status DeleteTerm(int slot, int modelSlot);
  Status RemoveTerms(std::span<const int> ids);
  Status WeighTerms(std::span<const int> ids, double weight);
  Status SetFitOptions(const FitOptions& options);
  // Sets every option that the defaults differ in.
  Status SetDefaults(Defaults defaults);
  // During a run it stops that run and succeeds. kNothingToDo if the fit is not open. Fit().report contains the reason
  // why a run ended.
  Status RunFit(const FitRequest& request);
  void StopFit();
  // Swaps the present values and those before the last run.
  Status UndoFit();
  // Updates everything that depends on parameters, whether or not AutoScreenUpdate is on.
  Status Recompute();
  // Write files about a fit into the current folder: "QntyErrorBars.dat", "Jakob.dat", "Jakob2.dat", "TestDeriv1.txt",
  // "TestDeriv.txt", "Tab.dat".
  Status WriteQuantityErrorBars();
  // The points of a term with the model's values and residuals.
  Status ExportResiduals(int slot, std::uint32_t model, const std::string& file);
  Status DumpDerivatives();
  Status DumpSensitivity();
  Status TestDerivatives();
  Status TestQuantityDerivatives();
  Status WriteGapTable();

  // ---- graphs and curves (session_graphs.cpp); all are possible during a fit

  // Makes a graph of the default size or of the given size in pixels, and returns its number.
  Result<std::uint32_t> NewGraph(std::optional<int> width = {}, std::optional<int> height = {});
  Status CloseGraph(std::uint32_t graph);
  Status ResizeGraph(std::uint32_t graph, std::optional<int> width, std::optional<int> height);
  Status EditGraph(std::uint32_t graph, const GraphEdit& edit);
  Status AddCurve(std::uint32_t graph, const Curve& curve);
  // Removes the first curve of that kind, of that dataset (id) or model, and of the Quantity unless it is -1.
  Status RemoveCurve(std::uint32_t graph, CurveKind kind, std::uint32_t of, std::optional<Quantity> quantity);
  Status SetCurves(std::uint32_t graph, std::vector<Curve> curves);
  Status SetAutoScreenUpdate(bool on);
  Status SetGraphReader(bool on);
  // Redraws everything that shows the model or the experimental parameters. The fit is not notified.
  void RedrawModel(std::uint32_t model);
  void RedrawExpParams();

  // Returns the number of curves that were written.
  Result<int> ExportGraph(std::uint32_t graph, const std::string& file);
  Status DrawGraph(std::uint32_t graph, PictureFormat format, int width, int height, const std::string& file);
  // Without a model or a Quantity the file is empty. kNotComputed: the file is written, but its values are those of an
  // earlier evaluation.
  Status ExportModelCurve(std::optional<std::uint32_t> model, const CurveExport& what, const std::string& file);

  // Paints everything, or only what has changed since the graph was painted last.
  void PaintGraph(std::uint32_t graph, Canvas& canvas);
  void RepaintGraph(std::uint32_t graph, Canvas& canvas);
  // The next repainting paints everything.
  void ForgetPicture(std::uint32_t graph);
  // Moves the crosshair to a pixel of the window. Outside of the frame it disappears.
  void MoveGraphReader(std::uint32_t graph, int x, int y);
  void HideGraphReader(std::uint32_t graph);

  // ---- the history (session.cpp)

  // Undoes the last step, or redoes it. GetHistory() has the labels.
  Status StepBack();
  Status StepForward();
  // Ends a gesture: the next operation is a step of its own.
  void EndGesture() { history_.EndGesture(); }
  const History& GetHistory() const { return history_; }
  void SetHistoryBound(std::size_t bytes) { history_.SetBound(bytes); }
  void ForgetHistory() { history_ = History(); }

 private:
  friend struct SessionAccess;  // for tests, which fill the tables directly
  class RunFollower;            // defined in session_fit.cpp

  // Runs an operation with gate, history and notification. act returns a Status or a Result.
  template <class Act>
  auto Do(Operation operation, const Pieces& touched, Act act) -> decltype(act());
  // The same for an operation that changes no table.
  template <class Act>
  auto DoOutside(Operation operation, Act act) -> decltype(act());
  Status Gate() const;

  void Tell(ChangeKind kind, std::uint32_t id = 0, int slot = 0) { told_.push_back({kind, id, slot}); }
  void Deliver(const Operation* operation);

  Model* ModelOf(std::uint32_t number);
  Graph* GraphOf(std::uint32_t number);
  Dataset* SlotOf(int slot);
  void EmptySlot(int slot);
  ModelParam* ParamOf(const ParamRef& param);
  ParamPlace PlaceOf(const ParamRef& param) const;

  void AfterStep();

  // Notify the lower floors: first the graphs, then the fit.
  void TellGraphs(GraphEvent event, std::int64_t id);
  void TellFitOfDataset();
  void TellFitOfParams();
  void TakeFitOptions(const FitOptions& options);
  void DropTermsIf(const std::function<bool(const ChiSqTerm&)>& isGone);
  void RebuildTerms();
  void RebuildParams(bool compute);
  void HearModel(Model& model, bool fitToo = true);
  void HearRows(Model& model);
  void HearExpParams(bool fitToo = true);
  void HearCoupled();
  void ShowValues();
  // An operation on one whole model. `change` changes the model; `what` says which part it changes.
  enum class Changed { kValues, kRows };
  template <class Act>
  Status ChangeModel(std::uint32_t number, Operation operation, Changed what, Act change);
  template <class Act>
  Status ChangeGraph(std::uint32_t number, Operation operation, Act change);
  Pieces PiecesOfEdit(const ParamRef& param) const;

  Platform* platform_;
  ThreadPool pool_;
  SessionTables tables_;
  EvalContext eval_;
  History history_;
  std::vector<SessionListener*> listeners_;
  std::vector<Change> told_;
};

}  // namespace kalvex
