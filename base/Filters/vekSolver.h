#pragma once
#include <string>
#include <vector>

#include "vekCommonExport.h"
#include "vekObject.h"

namespace vek {

/// The base of the callback-driven least-squares solvers: the unknowns, the residuals at the
/// current unknowns and their Jacobian (one row per residual, one column per unknown, stored row
/// after row), and the three user callbacks that fill them.
///
/// Each callback returns a status code (0 is success) that the solver passes on unchanged. The
/// vectors do not exist until SetNumberOfParameters / SetNumberOfErrors create them; the Jacobian
/// exists once both do. New vectors and the Jacobian are filled with kNotComputed so that a value
/// nobody wrote stands out.
class VEK_EXPORT Solver : public Object {
 public:
  /// Fills `parameters` (n values) with the starting point.
  using InitialParametersFunction = int (*)(double* parameters, int n, void* user);
  /// Fills `errors` (m values) with the residuals at `parameters`.
  using ErrorFunction = int (*)(const double* parameters, int n, double* errors, int m, void* user);
  /// Fills `jacobian` (m rows of n values, row after row) at `parameters`.
  using JacobianFunction = int (*)(const double* parameters, int n, double* jacobian, int m, void* user);

  static constexpr double kNotComputed = -10.0;
  static constexpr int kDefaultVerbosity = 5;

  const char* GetClassName() const override { return "Solver"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  virtual int Initialize() = 0;
  virtual int Iterate() = 0;
  virtual int IterateOnce(bool& done) = 0;

  /// Missing vectors or callbacks (a callback counts as set only with its user pointer) give
  /// VEK_MINIMIZATION_PARAMETER_NOT_SET before any callback runs. Otherwise Initialize, the
  /// initial-parameters callback and Iterate, stopping at the first non-zero code.
  int Solve();

  void SetNumberOfParameters(int n);
  void SetNumberOfErrors(int m);
  int GetNumberOfParameters() const { return HasParameters ? static_cast<int>(Parameters.size()) : 0; }
  int GetNumberOfErrors() const { return HasErrorVector ? static_cast<int>(ErrorVector.size()) : 0; }
  bool HasParameterVector() const { return HasParameters; }
  bool HasErrors() const { return HasErrorVector; }

  /// Null while the vector does not exist.
  double* GetParameters() { return HasParameters ? Parameters.data() : nullptr; }
  const double* GetParameters() const { return HasParameters ? Parameters.data() : nullptr; }
  const double* GetErrorVector() const { return HasErrorVector ? ErrorVector.data() : nullptr; }
  const double* GetJacobian() const { return HasParameters && HasErrorVector ? Jacobian.data() : nullptr; }

  void SetInitialParametersFunction(InitialParametersFunction function, void* user) {
    InitialParameters = function;
    InitialParametersUser = user;
  }
  void SetErrorFunction(ErrorFunction function, void* user) {
    Errors = function;
    ErrorsUser = user;
  }
  void SetJacobianFunction(JacobianFunction function, void* user) {
    JacobianOf = function;
    JacobianUser = user;
  }

  void SetVerbosity(int level) { Verbosity = level; }
  int GetVerbosity() const { return Verbosity; }
  void SetName(const std::string& name) { Name = name; }
  const std::string& GetName() const { return Name; }

 protected:
  Solver() = default;
  ~Solver() override = default;

  int ComputeErrors(const double* parameters, double* errors) const;
  int ComputeJacobian() {
    return JacobianOf(Parameters.data(), GetNumberOfParameters(), Jacobian.data(), GetNumberOfErrors(), JacobianUser);
  }
  int ComputeInitialParameters() {
    return InitialParameters(Parameters.data(), GetNumberOfParameters(), InitialParametersUser);
  }

  std::vector<double> Parameters;
  std::vector<double> ErrorVector;
  std::vector<double> Jacobian;
  bool HasParameters = false;
  bool HasErrorVector = false;

 private:
  Solver(const Solver&) = delete;
  Solver& operator=(const Solver&) = delete;

  int Verbosity = kDefaultVerbosity;
  std::string Name = "Unspecified Solve";
  InitialParametersFunction InitialParameters = nullptr;
  void* InitialParametersUser = nullptr;
  ErrorFunction Errors = nullptr;
  void* ErrorsUser = nullptr;
  JacobianFunction JacobianOf = nullptr;
  void* JacobianUser = nullptr;
};

}  // namespace vek
