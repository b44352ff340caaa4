#pragma once
#include <string>
#include <vector>

#include "vekCommonExport.h"
#include "vekImageContainer.h"
#include "vekSmartPointer.h"

namespace vek {

/// The extra information of one error: its code (custom-message flag included), a custom message
/// in the default language (narrow) and in the user's language (wide), and the projectors,
/// cameras and images it concerns. Copyable, so an error can be kept and raised again later.
class VEK_EXPORT ErrorMetadata {
 public:
  ErrorMetadata() = default;
  explicit ErrorMetadata(int errorCode) : ErrorCode(errorCode) {}

  int GetErrorCode() const { return ErrorCode; }
  const std::string& GetCustomErrorMessage() const { return CustomMessage; }
  void SetCustomErrorMessage(const std::string& message) { CustomMessage = message; }
  const std::wstring& GetCustomErrorMessageIntl() const { return CustomMessageIntl; }
  void SetCustomErrorMessageIntl(const std::wstring& message) { CustomMessageIntl = message; }

  void AttachProjector(const int& projector) { Projectors.push_back(projector); }
  int GetAttachedProjector(int i) const { return Projectors[i]; }
  int GetNumAttachedProjectors() const { return static_cast<int>(Projectors.size()); }
  bool HasAttachedProjector() const { return !Projectors.empty(); }
  std::vector<int> GetAttachedProjectors() const { return Projectors; }
  void ResetAttachedProjectors() { Projectors.clear(); }

  void AttachCamera(const int& camera) { Cameras.push_back(camera); }
  int GetAttachedCamera(int i) const { return Cameras[i]; }
  int GetNumAttachedCameras() const { return static_cast<int>(Cameras.size()); }
  bool HasAttachedCamera() const { return !Cameras.empty(); }
  std::vector<int> GetAttachedCameras() const { return Cameras; }
  void ResetAttachedCameras() { Cameras.clear(); }

  void AttachImage(const SmartPointer<ImageContainer>& image) { Images.push_back(image); }
  int GetNumAttachedImages() const { return static_cast<int>(Images.size()); }
  bool HasAttachedImages() const { return !Images.empty(); }
  std::vector<SmartPointer<ImageContainer>> GetAttachedImages() const { return Images; }
  void ResetAttachedImages() { Images.clear(); }
  /// The i-th image as a plain pointer, for bindings to other languages (no reference is added).
  ImageContainer* GetJavaAttachedImage(int i) const { return Images[i].GetPointer(); }

 private:
  int ErrorCode = 0;
  std::string CustomMessage;
  std::wstring CustomMessageIntl;
  std::vector<int> Projectors;
  std::vector<int> Cameras;
  std::vector<SmartPointer<ImageContainer>> Images;
};

}  // namespace vek
