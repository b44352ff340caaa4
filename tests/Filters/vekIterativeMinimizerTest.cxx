#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <regex>
#include <sstream>
#include <vector>

#include "vekErrorCodes.h"
#include "vekIterativeMinimizer.h"
#include "vekSmartPointer.h"
#include "vekTestSupport.h"

namespace vek {
namespace {

using MinimizerPtr = SmartPointer<GaussNewtonNonlinearMinimizer>;

// Residuals and Jacobian of a test problem; records every point the residuals were asked for.
struct Problem {
  std::vector<double> start;
  std::function<int(const double* p, double* e)> residuals;
  std::function<int(const double* p, double* j)> jacobian;
  std::vector<std::vector<double>> asked = {};
  int jacobianCalls = 0;
};

// e = p - root, with a Jacobian `slope` that may well be wrong.
Problem Line(double start, double root, double slope) {
  return {{start},
          [=](const double* p, double* e) { return e[0] = p[0] - root, 0; },
          [=](const double*, double* j) { return j[0] = slope, 0; }};
}

// e = (p0 - 3, p1 + 2, p0 + p1 - 1) vanishes at (3, -2).
Problem Linear() {
  return {{0, 0},
          [](const double* p, double* e) { return e[0] = p[0] - 3, e[1] = p[1] + 2, e[2] = p[0] + p[1] - 1, 0; },
          [](const double*, double* j) { return j[0] = 1, j[1] = 0, j[2] = 0, j[3] = 1, j[4] = 1, j[5] = 1, 0; }};
}

int Start(double* p, int n, void* user) {
  for (int i = 0; i < n; ++i) p[i] = static_cast<Problem*>(user)->start[i];
  return VEK_SUCCESS;
}

int Residuals(const double* p, int n, double* e, int, void* user) {
  static_cast<Problem*>(user)->asked.emplace_back(p, p + n);
  return static_cast<Problem*>(user)->residuals(p, e);
}

int JacobianOf(const double* p, int, double* j, int, void* user) {
  ++static_cast<Problem*>(user)->jacobianCalls;
  return static_cast<Problem*>(user)->jacobian(p, j);
}

MinimizerPtr MakeMinimizer(Problem& problem, int errors, int verbosity = 0) {
  auto minimizer = MinimizerPtr::New();
  minimizer->SetNumberOfParameters(static_cast<int>(problem.start.size()));
  minimizer->SetNumberOfErrors(errors);
  minimizer->SetVerbosity(verbosity);
  minimizer->SetName("Test Solve");
  minimizer->SetInitialParametersFunction(&Start, &problem);
  minimizer->SetErrorFunction(&Residuals, &problem);
  minimizer->SetJacobianFunction(&JacobianOf, &problem);
  return minimizer;
}

/// How often the solver message `pattern` was logged.
int Messages(const std::string& text, const std::string& pattern) {
  const std::regex re("Message:vekIterativeMinimizer, [0-9]+: Test Solve" + pattern + "\n");
  return static_cast<int>(std::distance(std::sregex_iterator(text.begin(), text.end(), re), std::sregex_iterator()));
}

TEST(GaussNewtonNonlinearMinimizer, NewVectorsAndPrintout) {
  auto minimizer = MinimizerPtr::New();
  minimizer->SetNumberOfParameters(2);
  EXPECT_EQ(minimizer->GetJacobian(), nullptr);
  minimizer->SetNumberOfErrors(3);
  ASSERT_NE(minimizer->GetJacobian(), nullptr);
  for (int i = 0; i < 6; ++i) EXPECT_EQ(minimizer->GetJacobian()[i], -10.0);
  std::ostringstream os;
  minimizer->PrintSelf(os, Indent(2));
  EXPECT_NE(os.str().find("  ErrorVector Not Null\n  Parameters Not Null\n  Parameter:-10 -10 \n  MaxIterations: -1\n"),
            std::string::npos)
      << os.str();
}

TEST(GaussNewtonNonlinearMinimizer, MissingSetUpRunsNoCallback) {
  Problem problem = Line(0, 3, -1);
  auto minimizer = MakeMinimizer(problem, 1);
  minimizer->SetJacobianFunction(nullptr, &problem);
  EXPECT_EQ(minimizer->Solve(), VEK_MINIMIZATION_PARAMETER_NOT_SET);
  minimizer->SetJacobianFunction(&JacobianOf, nullptr);  // a callback without its user pointer
  EXPECT_EQ(minimizer->Solve(), VEK_MINIMIZATION_PARAMETER_NOT_SET);
  EXPECT_TRUE(problem.asked.empty());
  EXPECT_EQ(problem.jacobianCalls, 0);
  minimizer->SetJacobianFunction(&JacobianOf, &problem);
  problem.residuals = [](const double*, double*) { return 77; };  // callback codes pass through
  EXPECT_EQ(minimizer->Solve(), 77);
}

TEST(GaussNewtonNonlinearMinimizer, LinearProblemAndStepLimit) {
  Problem problem = Linear(), limited = Linear();
  test::LogCapture log;
  auto minimizer = MakeMinimizer(problem, 3, 1);
  ASSERT_EQ(minimizer->Solve(), VEK_SUCCESS);
  EXPECT_NEAR(minimizer->GetParameters()[0], 3, 1e-12);
  EXPECT_NEAR(minimizer->GetParameters()[1], -2, 1e-12);
  // The first step lands on the minimum, the second one is (nearly) nothing.
  EXPECT_EQ(problem.jacobianCalls, 2);
  EXPECT_EQ(Messages(log.Text(), ": Done in 1 iter with squared err[-+.e0-9]+"), 1) << log.Text();

  // A limit of 2 scales the whole first step (3, -2) to (2, -4/3); the squared error is then 1 + 4/9 + 1/9.
  auto capped = MakeMinimizer(limited, 3, 3);
  capped->SetUseStepLimit(true);
  capped->SetStepLimit(2);
  capped->SetMaxIterations(1);
  ASSERT_EQ(capped->Solve(), VEK_SUCCESS);
  EXPECT_NEAR(capped->GetParameters()[0], 2, 1e-12);
  EXPECT_NEAR(capped->GetParameters()[1], -4.0 / 3, 1e-12);
  EXPECT_NEAR(capped->GetCurrentSquaredError(), 14.0 / 9, 1e-12);
  const std::string text = log.Text();
  EXPECT_TRUE(Messages(text, ":0,0") == 1 && Messages(text, ":1,0") == 1) << text;
  EXPECT_EQ(Messages(text, ": MaxIter : 0 : 1.55556"), 1) << text;
}

TEST(GaussNewtonNonlinearMinimizer, RosenbrockValley) {
  // Residuals (10 (p1 - p0^2), 1 - p0): the minimum 0 lies at (1, 1). The first full step overshoots.
  Problem problem{{-1.2, 1},
                  [](const double* p, double* e) { return e[0] = 10 * (p[1] - p[0] * p[0]), e[1] = 1 - p[0], 0; },
                  [](const double* p, double* j) { return j[0] = -20 * p[0], j[1] = 10, j[2] = -1, j[3] = 0, 0; }};
  auto minimizer = MakeMinimizer(problem, 2);
  ASSERT_EQ(minimizer->Solve(), VEK_SUCCESS);
  EXPECT_NEAR(minimizer->GetParameters()[0], 1, 1e-9);
  EXPECT_NEAR(minimizer->GetParameters()[1], 1, 1e-9);
  EXPECT_LT(minimizer->GetCurrentSquaredError(), 1e-20);
}

TEST(GaussNewtonNonlinearMinimizer, StepHalvingGivesUpAtTwoToTheMinus19) {
  // A Jacobian of the wrong sign: every step points uphill.
  Problem problem = Line(0, 3, -1), strict = Line(0, 3, -1);
  auto minimizer = MakeMinimizer(problem, 1, 1);
  test::LogCapture log;
  ASSERT_EQ(minimizer->Solve(), VEK_SUCCESS);  // the default tolerance accepts the old point
  EXPECT_EQ(minimizer->GetParameters()[0], 0);
  // The start, the full step -3, then -3 * 2^-k for k = 1..19.
  ASSERT_EQ(problem.asked.size(), 21u);
  EXPECT_EQ(problem.asked[0][0], 0);
  for (int k = 0; k <= 19; ++k) EXPECT_EQ(problem.asked[1 + k][0], -3 * std::ldexp(1.0, -k)) << k;
  EXPECT_EQ(Messages(log.Text(), ": Done in 0 iter with squared err9"), 1) << log.Text();
  // With a tolerance at or below the error the failure is reported, the old point kept.
  auto failing = MakeMinimizer(strict, 1);
  failing->SetErrorTolerance(9);
  EXPECT_EQ(failing->Solve(), VEK_COULD_NOT_DECREASE_ERROR_FURTHER);
  EXPECT_EQ(failing->GetParameters()[0], 0);
}

TEST(GaussNewtonNonlinearMinimizer, BudgetAndSingularSystems) {
  // A Jacobian twice too large halves the distance to 0 every step: never converged, not an error.
  Problem halving = Line(1, 0, 2), idle = Line(1, 0, 2), flat = Line(2, 5, 0);
  test::LogCapture log;
  auto minimizer = MakeMinimizer(halving, 1, 1);
  ASSERT_EQ(minimizer->Solve(), VEK_SUCCESS);
  EXPECT_EQ(halving.jacobianCalls, 100);
  EXPECT_EQ(minimizer->GetParameters()[0], std::ldexp(1.0, -100));
  EXPECT_EQ(Messages(log.Text(), ": MaxIter : 99 : 6.22302e-61"), 1) << log.Text();  // 2^-200
  auto none = MakeMinimizer(idle, 1);
  none->SetMaxIterations(0);
  EXPECT_EQ(none->Solve(), VEK_SUCCESS);
  EXPECT_EQ(idle.jacobianCalls, 0);

  // A zero Jacobian: the singular value 0 is cut and reported whatever the verbosity, and the
  // step is exactly 0, which counts as converged.
  auto singular = MakeMinimizer(flat, 1, 0);
  ASSERT_EQ(singular->Solve(), VEK_SUCCESS);
  EXPECT_EQ(singular->GetParameters()[0], 2);
  EXPECT_EQ(flat.jacobianCalls, 1);
  EXPECT_EQ(Messages(log.Text(), ": Singular system: i = 0 w\\[i\\] = 0"), 1) << log.Text();
}

}  // namespace
}  // namespace vek
