// The fit's state: which dataset is held against which model, every measured point in use, every parameter that
// influences one, and where a run stands.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/shared_list.h"
#include "datasets/quantity.h"
#include "records/model.h"
#include "records/param_place.h"

namespace kalvex {

// One dataset held against one model.
struct ChiSqTerm {
  int id = 0;
  std::uint32_t datasetId = 0;
  std::uint32_t modelId = 0;
  double weight = 1.0;     // 0 takes the term out of the fit; it stays in the list
  double termChiSq = 0;    // without the weight
  double prevChiSq = 0;    // of the derivative test
  SharedList<int> params;  // indices of the FitParams on which it depends
};

// The id counter is the program's, so that the ids of the fit's list and of a list of candidates never meet.
struct ChiSqTermList {
  std::vector<ChiSqTerm> terms;
};

// The points of one term, by frequency. Columns, and of the place of a point a single byte: a sum of squares over
// millions of points takes as long as their numbers take to come from memory.
struct TermPoints {
  int term = 0;
  Quantity quantity = kRefl;
  bool oneEach = true;  // no two of the points share a frequency of the spectrum
  std::vector<double> y;
  std::vector<double> sigma;
  std::vector<std::uint8_t> at;           // which frequency of its block of kSpectrumBlock
  std::vector<std::size_t> firstOfBlock;  // the first point of each block, and at last the number of points
};

// All points that are held against one model: at each frequency one evaluation serves them.
struct FitSpectrum {
  std::uint32_t modelId = 0;
  std::vector<double> x;  // cm-1, ascending
  std::vector<QuantitySet> wanted;
  std::vector<TermPoints> terms;
};

// A parameter of the fit, by place and number and never by address: rows, meshes and models come and go while the list
// waits to be rebuilt.
struct FitParam {
  ParamPlace place;
  std::uint32_t modelNumber = 0;  // of the model that holds it; 0 for an experimental parameter
  std::vector<char> termUse;      // one flag a term: the parameter influences it
  bool used = false;              // it influences at least one term
  bool isMaster = true;           // no earlier used parameter is of the same coupling group
  int master = 0;                 // the parameter whose row and column of the matrices serves this one
};

struct FitOptions {
  bool StopOnIterations = false;
  int MaxIterations = 1000;
  bool StopOnTime = false;
  int MaxSeconds = 100;
  bool StopOnReduction = true;
  int ReductionIterations = 3;
  double ReductionAmount = 0.001;  // of ChiSq itself, no ratio
  bool StopOnOutOfRange = false;   // kept, without effect
  bool StopOnLambda = true;
  double MaxLambda = 1e20;
  bool CalcConfidence = false;
  double DeltaChiSq = 100.0;
  bool LogFit = false;
  double SingularDet = 1e-30;  // kept and shown; the solver has its own test
  int ScreenUpdateEvery = 1;   // kept and shown; the screen follows every accepted iteration
  double InitialLambda = 0.001;
};

// What the caller of a run may like to know about its end.
struct FitReport {
  std::string stop;  // which rule ended it
  double startChiSq = 0;
  std::vector<int> withoutInfluence;    // masters whose diagonal of alpha was 0 when no step could be taken
  std::vector<std::string> notWritten;  // files of the run that could not be written
};

struct FitState {
  ChiSqTermList list;
  int nextTermId = 0;
  SharedList<FitSpectrum> spectra;  // by model
  SharedList<FitParam> params;      // the masters first
  std::vector<double> startValues;  // of the params before the last run: the swap partners of Undo

  int NumFitParams = 0;
  int NumFreeParams = 0;  // masters: the size of the matrices
  double TotalChiSq = 0;
  double Lambda = 0;
  int IterationCount = 0;
  int ElapsedSeconds = 0;
  double ChiSqChange = 0;  // ChiSq at the start of the run minus the present one
  bool FitRunning = false;
  bool UndoAvailable = false;      // the Undo button: a run started by hand can be taken back
  bool startValuesStored = false;  // the last run can be taken back, whoever started it
  bool StopRequested = false;

  FitOptions options;
  FitReport report;
};

}  // namespace kalvex
