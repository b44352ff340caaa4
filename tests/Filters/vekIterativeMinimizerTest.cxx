#include <gtest/gtest.h>

#include <cmath>
#include <regex>
#include <sstream>
#include <utility>
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
  Problem(std::vector<double> s, int (*r)(const double*, double*), int (*j)(const double*, double*))
      : start(std::move(s)), residuals(r), jacobian(j) {}
  std::vector<double> start;
  int (*residuals)(const double* p, double* e) = nullptr;
  int (*jacobian)(const double* p, double* j) = nullptr;
  std::vector<std::vector<double>> asked;
  int jacobianCalls = 0;
};

int Start(double* p, int n, void* user) {
  const auto* problem = static_cast<Problem*>(user);
  for (int i = 0; i < n; ++i) p[i] = problem->start[i];
  return VEK_SUCCESS;
}

int Residuals(const double* p, int n, double* e, int, void* user) {
  auto* problem = static_cast<Problem*>(user);
  problem->asked.emplace_back(p, p + n);
  return problem->residuals(p, e);
}

int JacobianOf(const double* p, int, double* j, int, void* user) {
  auto* problem = static_cast<Problem*>(user);
  ++problem->jacobianCalls;
  return problem->jacobian(p, j);
}

MinimizerPtr MakeMinimizer(Problem& problem, int parameters, int errors, int verbosity = 0) {
  auto minimizer = MinimizerPtr::New();
  minimizer->SetNumberOfParameters(parameters);
  minimizer->SetNumberOfErrors(errors);
  minimizer->SetVerbosity(verbosity);
  minimizer->SetName("Test Solve");
  minimizer->SetInitialParametersFunction(&Start, &problem);
  minimizer->SetErrorFunction(&Residuals, &problem);
  minimizer->SetJacobianFunction(&JacobianOf, &problem);
  return minimizer;
}

int CountMatches(const std::string& text, const std::string& pattern) {
  const std::regex re(pattern);
  return static_cast<int>(std::distance(std::sregex_iterator(text.begin(), text.end(), re), std::sregex_iterator()));
}

const std::string kPrefix = "Message:vekIterativeMinimizer, [0-9]+: Test Solve";

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

// e = p - 3 with a Jacobian of the wrong sign: every step points uphill.
Problem Uphill() {
  return Problem{{0},
                 [](const double* p, double* e) { return e[0] = p[0] - 3, 0; },
                 [](const double*, double* j) { return j[0] = -1, 0; }};
}

TEST(GaussNewtonNonlinearMinimizer, MissingSetUpRunsNoCallback) {
  Problem problem = Uphill();
  auto minimizer = MakeMinimizer(problem, 1, 1);
  minimizer->SetJacobianFunction(nullptr, &problem);
  EXPECT_EQ(minimizer->Solve(), VEK_MINIMIZATION_PARAMETER_NOT_SET);
  minimizer->SetJacobianFunction(&JacobianOf, nullptr);  // a callback without its user pointer
  EXPECT_EQ(minimizer->Solve(), VEK_MINIMIZATION_PARAMETER_NOT_SET);
  EXPECT_TRUE(problem.asked.empty());
  EXPECT_EQ(problem.jacobianCalls, 0);

  // Callback codes pass through unchanged.
  minimizer->SetJacobianFunction(&JacobianOf, &problem);
  problem.residuals = [](const double*, double*) { return 77; };
  EXPECT_EQ(minimizer->Solve(), 77);
}

TEST(GaussNewtonNonlinearMinimizer, LinearProblemSolvedInOneStep) {
  // e = (p0 - 3, p1 + 2, p0 + p1 - 1) vanishes at (3, -2).
  Problem problem{
      {0, 0},
      [](const double* p, double* e) { return e[0] = p[0] - 3, e[1] = p[1] + 2, e[2] = p[0] + p[1] - 1, 0; },
      [](const double*, double* j) { return j[0] = 1, j[1] = 0, j[2] = 0, j[3] = 1, j[4] = 1, j[5] = 1, 0; }};
  test::LogCapture log;
  auto minimizer = MakeMinimizer(problem, 2, 3, 1);
  ASSERT_EQ(minimizer->Solve(), VEK_SUCCESS);
  EXPECT_NEAR(minimizer->GetParameters()[0], 3, 1e-12);
  EXPECT_NEAR(minimizer->GetParameters()[1], -2, 1e-12);
  // The first step lands on the minimum, the second one is (nearly) nothing.
  EXPECT_EQ(problem.jacobianCalls, 2);
  EXPECT_EQ(CountMatches(log.Text(), kPrefix + ": Done in 1 iter with squared err[-+.e0-9]+\n"), 1) << log.Text();
}

TEST(GaussNewtonNonlinearMinimizer, RosenbrockValley) {
  // Residuals (10 (p1 - p0^2), 1 - p0): the minimum 0 lies at (1, 1).
  Problem problem{{-1.2, 1},
                  [](const double* p, double* e) { return e[0] = 10 * (p[1] - p[0] * p[0]), e[1] = 1 - p[0], 0; },
                  [](const double* p, double* j) { return j[0] = -20 * p[0], j[1] = 10, j[2] = -1, j[3] = 0, 0; }};
  auto minimizer = MakeMinimizer(problem, 2, 2);
  ASSERT_EQ(minimizer->Solve(), VEK_SUCCESS);
  EXPECT_NEAR(minimizer->GetParameters()[0], 1, 1e-9);
  EXPECT_NEAR(minimizer->GetParameters()[1], 1, 1e-9);
  EXPECT_LT(minimizer->GetCurrentSquaredError(), 1e-20);
}

TEST(GaussNewtonNonlinearMinimizer, StepHalvingGivesUpAtTwoToTheMinus19) {
  Problem problem = Uphill();
  auto minimizer = MakeMinimizer(problem, 1, 1, 1);
  test::LogCapture log;
  ASSERT_EQ(minimizer->Solve(), VEK_SUCCESS);  // the default tolerance accepts the old point
  EXPECT_EQ(minimizer->GetParameters()[0], 0);
  EXPECT_EQ(minimizer->GetCurrentSquaredError(), 9);
  // The start, the full step -3, then -3 * 2^-k for k = 1..19.
  ASSERT_EQ(problem.asked.size(), 21u);
  EXPECT_EQ(problem.asked[0][0], 0);
  for (int k = 0; k <= 19; ++k) EXPECT_EQ(problem.asked[1 + k][0], -3 * std::ldexp(1.0, -k)) << k;
  EXPECT_EQ(CountMatches(log.Text(), kPrefix + ": Done in 0 iter with squared err9\n"), 1) << log.Text();

  // With a tolerance at or below the error the failure is reported, the old point kept.
  Problem strict = Uphill();
  auto failing = MakeMinimizer(strict, 1, 1);
  failing->SetErrorTolerance(9);
  EXPECT_EQ(failing->Solve(), VEK_COULD_NOT_DECREASE_ERROR_FURTHER);
  EXPECT_EQ(failing->GetParameters()[0], 0);
}

TEST(GaussNewtonNonlinearMinimizer, BudgetRunsOutWithoutError) {
  // A Jacobian twice too large halves the distance to 0 every step: never converged.
  Problem problem{{1},
                  [](const double* p, double* e) { return e[0] = p[0], 0; },
                  [](const double*, double* j) { return j[0] = 2, 0; }};
  test::LogCapture log;
  auto minimizer = MakeMinimizer(problem, 1, 1, 1);
  ASSERT_EQ(minimizer->Solve(), VEK_SUCCESS);
  EXPECT_EQ(problem.jacobianCalls, 100);
  EXPECT_EQ(minimizer->GetParameters()[0], std::ldexp(1.0, -100));
  // 2^-200 = 6.2230152778611e-61
  EXPECT_EQ(CountMatches(log.Text(), kPrefix + ": MaxIter : 99 : 6.22302e-61\n"), 1) << log.Text();

  Problem none = problem;
  none.jacobianCalls = 0;
  auto idle = MakeMinimizer(none, 1, 1);
  idle->SetMaxIterations(0);
  EXPECT_EQ(idle->Solve(), VEK_SUCCESS);
  EXPECT_EQ(none.jacobianCalls, 0);
}

TEST(GaussNewtonNonlinearMinimizer, SingularSystemZeroStepConverges) {
  // A zero Jacobian: the singular value 0 is cut, the step is exactly 0, which counts as converged.
  Problem problem{{2},
                  [](const double* p, double* e) { return e[0] = p[0] - 5, 0; },
                  [](const double*, double* j) { return j[0] = 0, 0; }};
  test::LogCapture log;
  auto minimizer = MakeMinimizer(problem, 1, 1, 0);
  ASSERT_EQ(minimizer->Solve(), VEK_SUCCESS);
  EXPECT_EQ(minimizer->GetParameters()[0], 2);
  EXPECT_EQ(problem.jacobianCalls, 1);
  // Written whatever the verbosity.
  EXPECT_EQ(CountMatches(log.Text(), kPrefix + ": Singular system: i = 0 w\\[i\\] = 0\n"), 1) << log.Text();
}

TEST(GaussNewtonNonlinearMinimizer, StepLimitScalesTheWholeStep) {
  // e = (p0 - 10, p1 - 5): the first step (10, 5) is cut to (2, 1).
  Problem problem{{0, 0},
                  [](const double* p, double* e) { return e[0] = p[0] - 10, e[1] = p[1] - 5, 0; },
                  [](const double*, double* j) { return j[0] = 1, j[1] = 0, j[2] = 0, j[3] = 1, 0; }};
  test::LogCapture log;
  auto minimizer = MakeMinimizer(problem, 2, 2, 3);
  minimizer->SetUseStepLimit(true);
  minimizer->SetStepLimit(2);
  minimizer->SetMaxIterations(1);
  ASSERT_EQ(minimizer->Solve(), VEK_SUCCESS);
  EXPECT_NEAR(minimizer->GetParameters()[0], 2, 1e-12);
  EXPECT_NEAR(minimizer->GetParameters()[1], 1, 1e-12);
  EXPECT_NEAR(minimizer->GetCurrentSquaredError(), 64 + 16, 1e-9);
  const std::string text = log.Text();
  EXPECT_EQ(CountMatches(text, kPrefix + ":0,0\n"), 1) << text;
  EXPECT_EQ(CountMatches(text, kPrefix + ":1,0\n"), 1) << text;
  EXPECT_EQ(CountMatches(text, kPrefix + ": MaxIter : 0 : 80\n"), 1) << text;
}

}  // namespace
}  // namespace vek
