#pragma once
#include "vekObject.h"
#include "vekVector3.h"

namespace vek {

/// The viewing frustum of an eye looking at the display: angular extents (left, right, bottom,
/// top), the three view-direction angles (yaw, pitch, roll about carried axes), the eye point,
/// the forward vector and a roll applied before the others. Angles in radians. A data holder:
/// fitting a frustum is done elsewhere.
///
/// kUnsetAngle and kUnsetPoint mark values not yet set; the pre-roll starts at 0.
class VEK_EXPORT FrustumView : public Object {
 public:
  static constexpr double kUnsetAngle = -1111.0;
  static constexpr double kUnsetPoint = -7777.0;

  static FrustumView* New();
  const char* GetClassName() const override { return "FrustumView"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  double GetLeftAngle() const { return LeftAngle; }
  void SetLeftAngle(const double& a) { LeftAngle = a; }
  double GetRightAngle() const { return RightAngle; }
  void SetRightAngle(const double& a) { RightAngle = a; }
  double GetBottomAngle() const { return BottomAngle; }
  void SetBottomAngle(const double& a) { BottomAngle = a; }
  double GetTopAngle() const { return TopAngle; }
  void SetTopAngle(const double& a) { TopAngle = a; }
  double GetViewAngleA() const { return ViewAngleA; }
  void SetViewAngleA(const double& a) { ViewAngleA = a; }
  double GetViewAngleB() const { return ViewAngleB; }
  void SetViewAngleB(const double& a) { ViewAngleB = a; }
  double GetViewAngleC() const { return ViewAngleC; }
  void SetViewAngleC(const double& a) { ViewAngleC = a; }
  double GetPreRollAngleInRadians() const { return PreRollAngle; }
  void SetPreRollAngleInRadians(const double& a) { PreRollAngle = a; }

  Vector3 GetEyePoint() const { return EyePoint; }
  void SetEyePoint(const Vector3& p) { EyePoint = p; }
  /// A writable view of the eye point.
  Vector3& GetEyePointForTesting() { return EyePoint; }
  Vector3 GetForwardVector() const { return ForwardVector; }
  void SetForwardVector(const Vector3& v) { ForwardVector = v; }

  /// Copies all ten fields, the pre-roll included.
  void CopyFrom(FrustumView const* other);

 protected:
  FrustumView() = default;
  ~FrustumView() override = default;

 private:
  FrustumView(const FrustumView&) = delete;
  FrustumView& operator=(const FrustumView&) = delete;

  double LeftAngle = kUnsetAngle;
  double RightAngle = kUnsetAngle;
  double BottomAngle = kUnsetAngle;
  double TopAngle = kUnsetAngle;
  double ViewAngleA = kUnsetAngle;
  double ViewAngleB = kUnsetAngle;
  double ViewAngleC = kUnsetAngle;
  Vector3 EyePoint{kUnsetPoint, kUnsetPoint, kUnsetPoint};
  Vector3 ForwardVector{kUnsetPoint, kUnsetPoint, kUnsetPoint};
  double PreRollAngle = 0.0;
};

}  // namespace vek
