// Every special model: 1000 frequencies of a Quantity, as a table for docs/performance.md. The macro on the type's page
// sets it up, with partners of four oscillators and with meshes fine enough for real use.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "core/files.h"
#include "core/text.h"
#include "evaluation/eval_spectrum.h"
#include "files/vdf_file.h"
#include "macro/run_macro.h"
#include "records/model_rows.h"
#include "records/model_table.h"
#include "tables.h"
#include "types/describe.h"
#include "types/types.h"
#include "windows/desk.h"

namespace {

using kalvex::G;
using kalvex::Model;
using kalvex::ModelType;
using kalvex::Tables;
using kalvex::Wo;
using kalvex::Wp;

constexpr int kFrequencies = 1000, kDataRows = 1000, kMeshPoints = 100;

// The meshes on the pages are small, to make a first trial fast. Rows count from 0.
struct MeshSetting {
  int code, row, column;
  double value;
};
constexpr MeshSetting kMeshes[] = {
    {13, 1, G, 10},   {13, 2, Wo, 10},                                       // nodes of thickness and angle
    {20, 1, G, 1024}, {22, 1, G, 1024}, {51, 1, G, 1024}, {91, 1, G, 1024},  // points of a trace
    {26, 0, Wo, 100},                                                        // wave vectors in each direction
    {31, 7, G, 100},  {31, 8, G, 60},   {31, 9, G, 60},                      // bins, wave vectors
    {32, 0, Wp, 10},                                                         // nodes of each layer
    {34, 3, Wo, 60},  {34, 5, Wp, 12},  {36, 3, Wo, 60},  {36, 5, Wp, 12},   // wave vectors in a disc
    {38, 3, Wo, 60},  {38, 5, Wp, 12},  {66, 3, Wo, 60},  {66, 5, Wp, 12},  {55, 4, G, 40},
    {55, 5, Wo, 60},  {60, 4, G, 40},   {60, 5, Wo, 60},  // wave vectors along the field, levels
    {62, 3, Wo, 60},  {111, 3, Wo, 60}, {52, 2, Wo, 60},  // levels
    {74, 2, G, 60},   {74, 4, G, 100},  {93, 3, Wo, 60},  {93, 4, G, 100},  {76, 4, Wo, 12},  // modes of a ribbon
    {80, 3, G, 100},  {80, 4, G, 64},   {83, 3, G, 100},  {83, 4, G, 64},  // momenta, points of the tip's cycle
    {105, 3, G, 100}, {105, 4, G, 64},  {107, 4, G, 64},  {110, 4, G, 64},  {84, 2, Wo, 60},
    {84, 3, Wp, 10},  {97, 2, Wp, 60},  {97, 2, G, 10}};  // levels, parts of a spread

// A temporary current directory: types write files there, and macros read them.
class FolderOfItsOwn {
 public:
  FolderOfItsOwn()
      : before_(std::filesystem::current_path()),
        own_(std::filesystem::temp_directory_path() / ("kalvex_bench_types_" + std::to_string(::getpid()))) {
    std::filesystem::create_directories(own_);
    std::filesystem::current_path(own_);
  }
  FolderOfItsOwn(const FolderOfItsOwn&) = delete;
  FolderOfItsOwn& operator=(const FolderOfItsOwn&) = delete;
  ~FolderOfItsOwn() {
    std::filesystem::current_path(before_);
    std::filesystem::remove_all(own_);
  }

 private:
  std::filesystem::path before_, own_;
};

double At(const ModelType& type, double share) { return type.page.from + (type.page.to - type.page.from) * share; }

// Writes the page's macro and the files that it loads: datasets, and a mesh for a variational dielectric function.
kalvex::Status WritePage(const ModelType& type) {
  std::string data;
  for (int i = 0; i < kDataRows; ++i) {
    const double share = i / (kDataRows - 1.0);
    data += kalvex::TextG(At(type, share)) + ' ' + kalvex::TextG(0.5 + 0.3 * std::sin(20 * share)) + '\n';
  }
  for (const char number : {'1', '2', '3', '4'}) {
    kalvex::Status written = kalvex::WriteWholeFile(std::string("data") + number + ".dat", data);
    if (!written.Ok()) return written;
  }
  kalvex::VarDielFunc vdf;
  vdf.On = true;
  for (int i = 0; i < kMeshPoints; ++i) {
    vdf.mesh.push_back({20.0 + 10 * i, {}, {}});
    vdf.mesh.back().e2.value = 0.4 * std::exp(-0.001 * (i - 30) * (i - 30));
  }
  kalvex::Status written = kalvex::SaveVdf(vdf, "mesh.kvv");
  return written.Ok() ? kalvex::WriteWholeFile("page.kvs", kalvex::MacroOf(type)) : written;
}

void AddOscillators(const ModelType& type, Model& partner) {
  constexpr double kPlaces[] = {0.1, 0.3, 0.55, 0.8};
  kalvex::ClearRows(partner);
  for (const double place : kPlaces) {
    const int row = kalvex::RowCount(partner);
    kalvex::InsertRow(partner, row);
    const double w = At(type, place);
    kalvex::Cell(partner, row, Wo).value = w;
    kalvex::Cell(partner, row, Wp).value = w;
    kalvex::Cell(partner, row, G).value = 0.1 * w;
  }
}

void RefineMesh(Model& model) {
  for (const MeshSetting& mesh : kMeshes) {
    if (model.epsInf.value == -mesh.code) kalvex::Cell(model, mesh.row, mesh.column).value = mesh.value;
  }
}

// The model of the page, which is the last one of its macro, and the datasets. Null if the macro fails.
Model* SetUp(const ModelType& type, Tables& tables) {
  if (!WritePage(type).Ok()) return nullptr;
  kalvex::Session session(tables.platform);
  kalvex::Desk desk(session);
  if (kalvex::RunMacro(desk, "page.kvs") != kalvex::kMacroEnded) return nullptr;
  tables.params = session.Params();
  tables.datasets = session.Datasets();
  Model* last = nullptr;
  for (Model& model : tables.params.models) {
    if (model.number == 0) continue;
    last = &model;
    if (kalvex::TypeOf(tables.eval, model)) {
      RefineMesh(model);
    } else {
      AddOscillators(type, model);
    }
  }
  return last;
}

std::vector<kalvex::ParamPlace> FreePlaces(Tables& tables) {
  std::vector<kalvex::ParamPlace> places;
  const auto add = [&](const kalvex::ParamPlace& place) {
    if (kalvex::ParamAt(tables.params, place).adjustable) places.push_back(place);
  };
  for (int nm = 0; nm < kalvex::kMaxModels; ++nm) {
    const Model& model = tables.params.models[static_cast<std::size_t>(nm)];
    if (model.number == 0) continue;
    add({.Where = kalvex::ParamKind::kEpsInf, .nm = nm});
    for (int cell = 0; cell < kalvex::RowCount(model) * kalvex::kColumns; ++cell) {
      add({.Where = kalvex::ParamKind::kRow, .nm = nm, .nl = cell / kalvex::kColumns, .nc = cell % kalvex::kColumns});
    }
  }
  return places;
}

// The first result on the page. For the lattice type it is the conductivity, not the bands.
kalvex::Quantity QuantityOf(const ModelType& type) {
  if (type.fills.empty()) return kalvex::kRefl;  // a material gives all of them
  return type.code == 31 ? kalvex::kDepth : type.fills[0].quantity;
}

enum Slopes { kValues, kWithSlopes };
enum Numbers { kChange, kStay };

// The parameters of all models either change from one spectrum to the next, as in a fit, or stay.
void Evaluate(benchmark::State& state, const ModelType* type, Slopes slopes, Numbers numbers) {
  Tables tables;
  Model* const model = SetUp(*type, tables);
  if (!model) return state.SkipWithError("the macro of the page does not run");
  const std::vector<kalvex::ParamPlace> places = FreePlaces(tables);
  std::vector<double> x(kFrequencies);
  for (int i = 0; i < kFrequencies; ++i) x[static_cast<std::size_t>(i)] = At(*type, i / (kFrequencies - 1.0));
  const std::vector<kalvex::QuantitySet> wanted(x.size(), kalvex::QuantitySet{QuantityOf(*type)});
  const bool derivatives = slopes == kWithSlopes;
  const kalvex::SpectrumRequest request{x, wanted, derivatives,
                                        derivatives ? std::span(places) : std::span<const kalvex::ParamPlace>()};
  double step = 1e-9;
  for (auto _ : state) {
    step = -step;
    for (std::size_t k = 0; numbers == kChange && k < places.size(); ++k) {
      kalvex::ParamAt(tables.params, places[k]).value *= 1 + step;
    }
    const int status = kalvex::EvalSpectrum(tables.eval, *model, request, [](const kalvex::SpectrumBlock&) {});
    if (status != 0) return state.SkipWithError("the evaluation fails");
  }
  state.counters["free"] = static_cast<double>(places.size());
}

// A line for each type, as in docs/performance.md. If unchanged parameters save a fifth or more, both times are
// printed.
class TypeTable : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override {
    std::puts("| type | free | values, ms | kept | with slopes, ms | kept |\n|---|---|---|---|---|---|");
    return true;
  }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      const std::string name = run.run_name.function_name, type = name.substr(0, name.rfind('/'));
      if (type != type_) Finalize();
      type_ = type;
      const std::string column = name.substr(type.size() + 1);
      const auto free = run.counters.find("free");
      if (free == run.counters.end()) {
        std::fprintf(stderr, "%s does not run\n", name.c_str());
        continue;
      }
      free_ = free->second;
      times_[column == "values"        ? 0
             : column == "values_kept" ? 1
             : column == "slopes"      ? 2
                                       : 3] = run.GetAdjustedCPUTime();
    }
  }
  void Finalize() override {
    if (type_.empty()) return;
    std::printf("| %s | %.0f |%s%s%s%s\n", type_.c_str() + type_.find('/') + 1, free_, Text(times_[0]).c_str(),
                Kept(times_[0], times_[1]).c_str(), Text(times_[2]).c_str(), Kept(times_[2], times_[3]).c_str());
    std::fflush(stdout);
    times_.fill(0);
    type_.clear();
  }

 private:
  static std::string Text(double time) {
    char text[32];
    std::snprintf(text, sizeof text, time < 10 ? " %.2f |" : " %.0f |", time);
    return time == 0 ? " |" : text;
  }
  static std::string Kept(double time, double kept) { return kept < 0.8 * time ? Text(kept) : " |"; }

  std::string type_;
  double free_ = 0;
  std::array<double, 4> times_{};
};

void Register(const ModelType& type) {
  const std::string name = "ModelType/" + std::to_string(type.code) + ' ' + type.name;
  const auto add = [&](const char* column, Slopes slopes, Numbers numbers) {
    benchmark::RegisterBenchmark((name + '/' + column).c_str(), Evaluate, &type, slopes, numbers)
        ->Unit(benchmark::kMillisecond)
        ->MinTime(0.2);
  };
  add("values", kValues, kChange);
  add("values_kept", kValues, kStay);
  if (!type.fitted) return;
  add("slopes", kWithSlopes, kChange);
  add("slopes_kept", kWithSlopes, kStay);
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  const FolderOfItsOwn folder;
  for (const ModelType* const type : kalvex::ModelTypeTable) Register(*type);
  TypeTable table;
  benchmark::RunSpecifiedBenchmarks(&table);
  return 0;
}
