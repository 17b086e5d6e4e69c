// src/fit (floor 6, together with src/files, src/graphs and src/pictures) holds the least-squares fit.
//
//   fit_state.h         FitState: terms, points, parameters, options and the state of a run
//   fit_lists.h         builds the lists of points and parameters, and computes ChiSq
//   bounded_fit.h       least squares within limits, for any problem; bounded_run.h applies it to the spectra
//   many_starts.h       the bounded fit from many starts
//   damped_loop.h       the damped loop; fit_coordinate.h has its limits as a change of variable
//   normal_equations.h  curvature matrix and gradient; block_gradients.h collects the derivatives
//   run_fit.h           RunFit by either method, and Undo; fit_run.h is what the methods share
//   standard_errors.h   errors, and what the data do not determine
//   confidence.h, residuals.h, fit_log.h, fit_dumps.h, derivative_test.h   what a fit writes to files
//
// Read this header, fit_lists.h and run_fit.h first.
//
// FitState: the terms (a dataset compared with a model), every measured point in use, every parameter that influences
// one, and the state of a run.
#pragma once

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "core/shared_list.h"
#include "datasets/quantity.h"
#include "fit/many_starts.h"
#include "fit/standard_errors.h"
#include "records/model.h"
#include "records/param_place.h"

namespace kalvex {

// A dataset compared with a model.
struct ChiSqTerm {
  int id = 0;
  std::uint32_t datasetId = 0;
  std::uint32_t modelId = 0;
  double weight = 1.0;     // a term of weight 0 stays in the list but is not fitted
  double termChiSq = 0;    // without the weight
  double prevChiSq = 0;    // used by the derivative test
  SharedList<int> params;  // indices of the FitParams on which it depends

  bool operator==(const ChiSqTerm&) const = default;
};

// The terms of the fit, or of a list of candidates. All lists take their ids from FitState::nextTermId: an id is never
// used twice.
struct ChiSqTermList {
  std::vector<ChiSqTerm> terms;

  bool operator==(const ChiSqTermList&) const = default;
};

// The points of one term in order of frequency. They are stored as columns, and the position in a block as one byte:
// with millions of points, memory bandwidth limits the speed of ChiSq.
struct TermPoints {
  int term = 0;
  Quantity quantity = kRefl;
  bool oneEach = true;  // no two points share a frequency of the spectrum
  double period = 0;    // of an angle: residuals are taken modulo this. 0: no period
  std::vector<double> y;
  std::vector<double> sigma;
  std::vector<std::uint8_t> at;           // index of the frequency in its block of kSpectrumBlock
  std::vector<std::size_t> firstOfBlock;  // the first point of each block; the last entry is the number of points

  // The model's value minus the measured one.
  double Misfit(double value, std::size_t p) const {
    const double difference = value - y[p];
    return period > 0 ? std::remainder(difference, period) : difference;
  }
  double Residual(double value, std::size_t p) const { return Misfit(value, p) / sigma[p]; }

  bool operator==(const TermPoints&) const = default;
};

// All points of the terms of one model. One evaluation per frequency serves all of them.
struct FitSpectrum {
  std::uint32_t modelId = 0;
  std::vector<double> x;  // cm-1, ascending
  std::vector<QuantitySet> wanted;
  std::vector<TermPoints> terms;

  bool operator==(const FitSpectrum&) const = default;
};

// A parameter of the fit. It is identified by place and model number, not by address: rows, meshes and models may be
// removed before the list is rebuilt.
struct FitParam {
  ParamPlace place;
  std::uint32_t modelNumber = 0;  // of the model that holds it; 0 for an experimental parameter
  bool used = false;              // it influences at least one term
  bool isMaster = true;           // no earlier used parameter has the same coupling group
  int master = 0;                 // index of the parameter whose row and column of the matrix this one uses

  bool operator==(const FitParam&) const = default;
};

struct FitOptions {
  bool StopOnIterations = false;
  int MaxIterations = 1000;
  bool StopOnTime = false;
  int MaxSeconds = 100;
  bool StopOnReduction = true;
  int ReductionIterations = 3;
  double ReductionAmount = 0.001;  // absolute change of ChiSq, not a ratio
  bool StopOnOutOfRange = false;   // stored, without effect
  bool StopOnLambda = true;
  double MaxLambda = 1e20;
  bool CalcConfidence = false;
  double DeltaChiSq = 100.0;
  bool LogFit = false;
  double SingularDet = 1e-30;  // stored and shown; the solver has its own criterion
  int ScreenUpdateEvery = 1;   // stored and shown; the screen is updated after every accepted iteration
  double InitialLambda = 0.001;
  int Method = 1;                  // 1: the damped loop; 2: the bounded fit
  bool RelativeReduction = false;  // ReductionAmount is a part of ChiSq
  bool StandardErrors = false;     // computed at the end of each run
  bool WrapAngles = false;         // residuals of angles are taken modulo their period
  bool SkipInvalid = false;        // points that are not finite or have no positive sigma take no part
  bool NeedsWindow = true;         // a run is possible only while the fit window is open

  bool operator==(const FitOptions&) const = default;
};

// How a run ended.
struct FitReport {
  std::string stop;          // the stop rule that ended the run
  bool interrupted = false;  // an interrupt of the process ended the run
  double startChiSq = 0;
  std::vector<Minimum> minima;  // found from many starts, the lowest first
  int startsNotConverged = 0;
  bool converged = false;               // known for method 2 only
  std::vector<int> withoutInfluence;    // masters with a diagonal element of 0 in alpha, if no step could be taken
  std::vector<int> onLimit;             // masters on a limit, where the slope of ChiSq pushes on
  double gainLeft = 0;                  // method 1, if the end is doubtful: what a further step promises, of ChiSq
  std::vector<int> stuckOnLimit;        // method 1: masters on a limit although ChiSq falls inside
  std::vector<int> movedInside;         // method 2: masters that were outside their limits at the start
  Determination determination;          // if standard errors were computed
  std::vector<std::string> notWritten;  // files of the run that could not be written

  bool operator==(const FitReport&) const = default;
};

struct FitState {
  ChiSqTermList list;
  int nextTermId = 0;
  SharedList<FitSpectrum> spectra;  // by model
  SharedList<FitParam> params;      // the masters first
  // Values and errors of params before the last run. Undo swaps them with the present ones, the errors only if the run
  // computes standard errors.
  std::vector<double> startValues, startErrors;

  std::size_t skippedPoints = 0;  // by SkipInvalid

  int NumFitParams = 0;
  int NumFreeParams = 0;  // number of masters: the size of the matrix
  double TotalChiSq = 0;
  double Lambda = 0;
  int IterationCount = 0;
  int ElapsedSeconds = 0;
  double ChiSqChange = 0;  // ChiSq at the start of the run minus the present one
  bool FitRunning = false;
  bool UndoAvailable = false;      // state of the Undo button: the last run was started in the window and can be undone
  bool startValuesStored = false;  // the last run can be undone, from a window or a macro
  bool StopRequested = false;

  FitOptions options;
  FitReport report;

  bool operator==(const FitState&) const = default;
};

}  // namespace kalvex
