#include "vekSolver.h"

#include "vekErrorCodes.h"

namespace vek {

void Solver::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "ErrorVector" << (HasErrorVector ? " Not Null" : " NULL") << "\n";
  os << indent << "Parameters" << (HasParameters ? " Not Null" : " NULL") << "\n";
  if (HasParameters) {
    os << indent << "Parameter:";
    for (double p : Parameters) os << p << " ";
    os << "\n";
  }
}

void Solver::SetNumberOfParameters(int n) {
  Parameters.assign(n > 0 ? n : 0, kNotComputed);
  HasParameters = true;
  if (HasErrorVector) Jacobian.assign(ErrorVector.size() * Parameters.size(), kNotComputed);
}

void Solver::SetNumberOfErrors(int m) {
  ErrorVector.assign(m > 0 ? m : 0, kNotComputed);
  HasErrorVector = true;
  if (HasParameters) Jacobian.assign(ErrorVector.size() * Parameters.size(), kNotComputed);
}

int Solver::ComputeErrors(const double* parameters, double* errors) const {
  return Errors(parameters, GetNumberOfParameters(), errors, GetNumberOfErrors(), ErrorsUser);
}

int Solver::Solve() {
  if (!HasParameters || !HasErrorVector || !InitialParameters || !InitialParametersUser || !Errors || !ErrorsUser ||
      !JacobianOf || !JacobianUser)
    return VEK_MINIMIZATION_PARAMETER_NOT_SET;
  int code = Initialize();
  if (code != VEK_SUCCESS) return code;
  code = ComputeInitialParameters();
  if (code != VEK_SUCCESS) return code;
  return Iterate();
}

}  // namespace vek
