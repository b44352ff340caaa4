#pragma once
#include "vekCommonExport.h"

namespace vek {

/// What a caller should do after an error. The library only passes these values between the
/// application's callbacks and its callers.
enum class ErrorAction : int { None = 0, Continue = 1, Retry = 2, Skip = 3, Abort = 4 };

struct ErrorActionWithPreference {
  ErrorAction Action = ErrorAction::None;
  int Preference = 0;  // 0: no preference recorded
};

/// Decides the action for an error; by default the suggested one.
class VEK_EXPORT ErrorActionCallback {
 public:
  virtual ~ErrorActionCallback() = default;
  virtual ErrorAction GetErrorAction(const int& errorCode, const ErrorAction& defaultAction);
};

/// Asks the user (through a GUI) for the action and a remembered preference.
class VEK_EXPORT GuiErrorActionCallback {
 public:
  virtual ~GuiErrorActionCallback() = default;
  virtual ErrorActionWithPreference GetErrorActionAndPreference(const int& errorCode, const ErrorAction& defaultAction);
};

/// The application's callbacks, process-wide. Not owned: the application keeps them alive.
class VEK_EXPORT ErrorActionGlobalCallback {
 public:
  static void SetErrorActionCallback(ErrorActionCallback* callback) { m_ErrorActionCallback = callback; }
  static void SetGuiErrorActionCallback(GuiErrorActionCallback* callback) { m_GuiErrorActionCallback = callback; }
  static bool HasErrorActionCallback() { return m_ErrorActionCallback != nullptr; }
  static bool HasGuiErrorActionCallback() { return m_GuiErrorActionCallback != nullptr; }
  static ErrorAction GetErrorAction(const int& errorCode, const ErrorAction& defaultAction);
  static ErrorActionWithPreference GetErrorActionAndPreferenceFromGui(const int& errorCode,
                                                                      const ErrorAction& defaultAction);

 private:
  static ErrorActionCallback* m_ErrorActionCallback;
  static GuiErrorActionCallback* m_GuiErrorActionCallback;
};

}  // namespace vek
