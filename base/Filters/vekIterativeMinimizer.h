#pragma once
#include <limits>
#include <vector>

#include "vekCommonExport.h"
#include "vekSolver.h"

namespace vek {

/// A solver that repeats one improvement step until the step reports convergence or the
/// iteration budget is spent. Running out of iterations is not an error. Messages (verbosity 1
/// and up) go to the error channel as "Message:" lines that name the solver.
class VEK_EXPORT IterativeMinimizer : public Solver {
 public:
  static constexpr int kUnsetMaxIterations = -1;
  static constexpr int kDefaultMaxIterations = 100;

  const char* GetClassName() const override { return "IterativeMinimizer"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  /// An unset (negative) iteration budget becomes the default.
  int Initialize() override;
  int Iterate() override;

  void SetMaxIterations(int n) { MaxIterations = n; }
  int GetMaxIterations() const { return MaxIterations; }
  /// With the limit on, a step whose largest component exceeds the limit is scaled down to it.
  void SetUseStepLimit(bool on) { UseStepLimit = on; }
  bool GetUseStepLimit() const { return UseStepLimit; }
  void SetStepLimit(double limit) { StepLimit = limit; }
  double GetStepLimit() const { return StepLimit; }
  /// A step that cannot reduce the error still ends the solve successfully while the squared
  /// error is below this tolerance; the default accepts any finite error.
  void SetErrorTolerance(double tolerance) { ErrorTolerance = tolerance; }
  double GetErrorTolerance() const { return ErrorTolerance; }
  double GetCurrentSquaredError() const { return CurrentSquaredError; }

 protected:
  IterativeMinimizer() = default;
  ~IterativeMinimizer() override = default;

  int MaxIterations = kUnsetMaxIterations;
  bool UseStepLimit = false;
  double StepLimit = -1.0;
  double ErrorTolerance = std::numeric_limits<double>::max();
  double CurrentSquaredError = std::numeric_limits<double>::max();

 private:
  IterativeMinimizer(const IterativeMinimizer&) = delete;
  IterativeMinimizer& operator=(const IterativeMinimizer&) = delete;
};

/// Gauss-Newton with step halving. Each step solves the normal equations J^T J d = -J^T e by
/// singular value decomposition, zeroing (and reporting, whatever the verbosity) singular values
/// below kSingularValueCutoff. A step that does not lower the sum of squared residuals is halved
/// down to a fraction of 2^-19; beyond that the old parameters are kept and the step fails with
/// VEK_COULD_NOT_DECREASE_ERROR_FURTHER (or ends the solve, see SetErrorTolerance). The solve has
/// converged when |d|^2 <= 1e-10 |p|^2, components of |d| <= 1e-150 left out on both sides.
///
/// A system with a non-finite entry (not-a-number or infinite residuals) gets a zero step, so the
/// solve ends at once with the parameters unchanged instead of wandering.
class VEK_EXPORT GaussNewtonNonlinearMinimizer : public IterativeMinimizer {
 public:
  static constexpr double kSingularValueCutoff = 1e-6;
  static constexpr double kSmallestStepFraction = 1e-6;
  static constexpr double kConvergence = 1e-10;
  static constexpr double kNegligibleStep = 1e-150;

  static GaussNewtonNonlinearMinimizer* New();
  const char* GetClassName() const override { return "GaussNewtonNonlinearMinimizer"; }

  int IterateOnce(bool& done) override;

 protected:
  GaussNewtonNonlinearMinimizer() = default;
  ~GaussNewtonNonlinearMinimizer() override = default;

 private:
  GaussNewtonNonlinearMinimizer(const GaussNewtonNonlinearMinimizer&) = delete;
  GaussNewtonNonlinearMinimizer& operator=(const GaussNewtonNonlinearMinimizer&) = delete;

  std::vector<double> Step;
  std::vector<double> Saved;
  std::vector<double> Trial;
};

}  // namespace vek
