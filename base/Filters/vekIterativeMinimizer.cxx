#include "vekIterativeMinimizer.h"

#include <Eigen/Dense>
#include <cmath>

#include "vekErrorCodes.h"
#include "vekOutputFile.h"
#include "vekOutputMessages.h"

// Solver messages are debug lines on the error channel whatever their kind.
#define VEK_SOLVER_MESSAGE(text) VEK_REPORT(::vek::OutputFile::Error, "Message:", GetName() << text)

namespace vek {

namespace {

double SumOfSquares(const std::vector<double>& values) {
  double sum = 0;
  for (double v : values) sum += v * v;
  return sum;
}

}  // namespace

void IterativeMinimizer::PrintSelf(std::ostream& os, Indent indent) const {
  Solver::PrintSelf(os, indent);
  os << indent << "MaxIterations: " << MaxIterations << "\n";
}

int IterativeMinimizer::Initialize() {
  if (MaxIterations < 0) MaxIterations = kDefaultMaxIterations;
  return VEK_SUCCESS;
}

int IterativeMinimizer::Iterate() {
  if (MaxIterations < 1) return VEK_SUCCESS;
  for (int i = 0; i < MaxIterations; ++i) {
    bool done = false;
    const int code = IterateOnce(done);
    if (code != VEK_SUCCESS) return code;
    if (done) {
      if (GetVerbosity() >= 1) VEK_SOLVER_MESSAGE(": Done in " << i << " iter with squared err" << CurrentSquaredError);
      return VEK_SUCCESS;
    }
    if (i == MaxIterations - 1 && GetVerbosity() >= 1)
      VEK_SOLVER_MESSAGE(": MaxIter : " << i << " : " << CurrentSquaredError);
  }
  return VEK_SUCCESS;
}

GaussNewtonNonlinearMinimizer* GaussNewtonNonlinearMinimizer::New() { return new GaussNewtonNonlinearMinimizer; }

int GaussNewtonNonlinearMinimizer::IterateOnce(bool& done) {
  const int n = GetNumberOfParameters();
  const int m = GetNumberOfErrors();
  if (GetVerbosity() >= 3)
    for (int i = 0; i < n; ++i) VEK_SOLVER_MESSAGE(":" << i << "," << Parameters[i]);

  done = false;
  int code = ComputeErrors(Parameters.data(), ErrorVector.data());
  if (code != VEK_SUCCESS) return code;
  code = ComputeJacobian();
  if (code != VEK_SUCCESS) return code;

  using Matrix = Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;
  const Eigen::Map<const Matrix> jacobian(Jacobian.data(), m, n);
  const Eigen::Map<const Eigen::VectorXd> errors(ErrorVector.data(), m);
  const Eigen::MatrixXd normal = jacobian.transpose() * jacobian;
  const Eigen::VectorXd gradient = -(jacobian.transpose() * errors);

  Step.assign(n, 0.0);
  if (n > 0 && normal.allFinite() && gradient.allFinite()) {
    const Eigen::JacobiSVD<Eigen::MatrixXd> svd(normal, Eigen::ComputeFullU | Eigen::ComputeFullV);
    Eigen::VectorXd inverse = Eigen::VectorXd::Zero(n);
    const Eigen::VectorXd& w = svd.singularValues();
    for (int i = 0; i < n; ++i) {
      if (w[i] < kSingularValueCutoff)
        VEK_SOLVER_MESSAGE(": Singular system: i = " << i << " w[i] = " << w[i]);
      else
        inverse[i] = 1.0 / w[i];
    }
    const Eigen::VectorXd step = svd.matrixV() * inverse.asDiagonal() * (svd.matrixU().transpose() * gradient);
    for (int i = 0; i < n; ++i) Step[i] = step[i];
  }

  if (UseStepLimit) {
    double scale = 1.0;
    for (double d : Step)
      if (std::fabs(d) > StepLimit) scale = std::fmin(scale, StepLimit / std::fabs(d));
    if (scale < 1.0)
      for (double& d : Step) d *= scale;
  }

  Saved = Parameters;
  for (int j = 0; j < n; ++j) Parameters[j] += Step[j];

  const double before = SumOfSquares(ErrorVector);
  CurrentSquaredError = before;
  Trial.assign(m, 0.0);
  code = ComputeErrors(Parameters.data(), Trial.data());
  if (code != VEK_SUCCESS) return code;
  double after = SumOfSquares(Trial);
  double fraction = 1.0;
  while (after > before) {
    fraction *= 0.5;
    if (fraction < kSmallestStepFraction) {
      Parameters = Saved;
      if (ErrorTolerance > CurrentSquaredError) {
        done = true;
        return VEK_SUCCESS;
      }
      return VEK_COULD_NOT_DECREASE_ERROR_FURTHER;
    }
    for (int j = 0; j < n; ++j) Parameters[j] -= fraction * Step[j];
    code = ComputeErrors(Parameters.data(), Trial.data());
    if (code != VEK_SUCCESS) return code;
    after = SumOfSquares(Trial);
  }
  CurrentSquaredError = after;
  ErrorVector = Trial;

  double stepSquared = 0;
  double parameterSquared = 0;
  for (int j = 0; j < n; ++j) {
    if (std::fabs(Step[j]) <= kNegligibleStep) continue;
    stepSquared += Step[j] * Step[j];
    parameterSquared += Parameters[j] * Parameters[j];
    if (stepSquared > kConvergence * parameterSquared) return VEK_SUCCESS;
  }
  done = true;
  return VEK_SUCCESS;
}

}  // namespace vek
