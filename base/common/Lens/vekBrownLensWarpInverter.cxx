#include "vekBrownLensWarpInverter.h"

#include "vekBrownLensWarp.h"
#include "vekErrorCodes.h"
#include "vekIterativeMinimizer.h"

namespace vek {

BrownLensWarpInverter* BrownLensWarpInverter::New() { return new BrownLensWarpInverter; }

BrownLensWarpInverter::BrownLensWarpInverter() : Minimizer(GaussNewtonNonlinearMinimizer::New()) {
  Minimizer->SetNumberOfParameters(2);
  Minimizer->SetNumberOfErrors(2);
  Minimizer->SetMaxIterations(kMaxIterations);
  Minimizer->SetVerbosity(0);
  Minimizer->SetInitialParametersFunction(&InitialParameters, this);
  Minimizer->SetErrorFunction(&Errors, this);
  Minimizer->SetJacobianFunction(&JacobianOf, this);
}

BrownLensWarpInverter::~BrownLensWarpInverter() { Minimizer->Release(); }

void BrownLensWarpInverter::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "Target: (" << TargetU << "," << TargetV << ")\n";
  os << indent << "Start: (" << StartU << "," << StartV << ")\n";
}

int BrownLensWarpInverter::Invert(const BrownLensWarp* warp, float x, float y, float& outX, float& outY) {
  Warp = warp;
  TargetU = (x - warp->GetCenterX()) / warp->GetFocalLengthX();
  TargetV = (y - warp->GetCenterY()) / warp->GetFocalLengthY();
  warp->GetInverseStart(x, y, StartU, StartV);
  Minimizer->Solve();
  const double* p = Minimizer->GetParameters();
  outX = static_cast<float>(warp->GetFocalLengthX() * p[0] + warp->GetCenterX());
  outY = static_cast<float>(warp->GetFocalLengthY() * p[1] + warp->GetCenterY());
  Warp = nullptr;
  return VEK_SUCCESS;
}

int BrownLensWarpInverter::InitialParameters(double* parameters, int, void* user) {
  const auto* self = static_cast<BrownLensWarpInverter*>(user);
  parameters[0] = self->StartU;
  parameters[1] = self->StartV;
  return VEK_SUCCESS;
}

int BrownLensWarpInverter::Errors(const double* parameters, int, double* errors, int, void* user) {
  const auto* self = static_cast<BrownLensWarpInverter*>(user);
  float u, v;
  self->Warp->ForwardNormalised(static_cast<float>(parameters[0]), static_cast<float>(parameters[1]), u, v);
  errors[0] = static_cast<double>(u - self->TargetU);
  errors[1] = static_cast<double>(v - self->TargetV);
  return VEK_SUCCESS;
}

int BrownLensWarpInverter::JacobianOf(const double* parameters, int n, double* jacobian, int m, void* user) {
  double shifted[2] = {parameters[0], parameters[1]};
  double plus[2], minus[2];
  for (int j = 0; j < n; ++j) {
    shifted[j] = parameters[j] + kDifferenceStep / 2;
    Errors(shifted, n, plus, m, user);
    shifted[j] = parameters[j] - kDifferenceStep / 2;
    Errors(shifted, n, minus, m, user);
    shifted[j] = parameters[j];
    for (int i = 0; i < m; ++i) jacobian[i * n + j] = (plus[i] - minus[i]) / kDifferenceStep;
  }
  return VEK_SUCCESS;
}

}  // namespace vek
