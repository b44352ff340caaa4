#include "vekFrustumView.h"

namespace vek {

FrustumView* FrustumView::New() { return new FrustumView; }

void FrustumView::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "Theta X Range: " << LeftAngle << " , " << RightAngle << "\n";
  os << indent << "Theta Y Range: " << BottomAngle << " , " << TopAngle << "\n";
  os << indent << "View   : " << ViewAngleA << ", " << ViewAngleB << ", " << ViewAngleC << "\n";
  os << indent << "Eye    : " << EyePoint << "\n";
  os << indent << "Forward: " << ForwardVector << "\n";
}

void FrustumView::CopyFrom(FrustumView const* other) {
  LeftAngle = other->LeftAngle;
  RightAngle = other->RightAngle;
  BottomAngle = other->BottomAngle;
  TopAngle = other->TopAngle;
  ViewAngleA = other->ViewAngleA;
  ViewAngleB = other->ViewAngleB;
  ViewAngleC = other->ViewAngleC;
  EyePoint = other->EyePoint;
  ForwardVector = other->ForwardVector;
  PreRollAngle = other->PreRollAngle;
}

}  // namespace vek
