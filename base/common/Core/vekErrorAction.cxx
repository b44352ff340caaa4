#include "vekErrorAction.h"

namespace vek {

ErrorActionCallback* ErrorActionGlobalCallback::m_ErrorActionCallback = nullptr;
GuiErrorActionCallback* ErrorActionGlobalCallback::m_GuiErrorActionCallback = nullptr;

ErrorAction ErrorActionCallback::GetErrorAction(const int&, const ErrorAction& defaultAction) { return defaultAction; }

ErrorActionWithPreference GuiErrorActionCallback::GetErrorActionAndPreference(const int&,
                                                                              const ErrorAction& defaultAction) {
  return {defaultAction, 0};
}

ErrorAction ErrorActionGlobalCallback::GetErrorAction(const int& errorCode, const ErrorAction& defaultAction) {
  return m_ErrorActionCallback ? m_ErrorActionCallback->GetErrorAction(errorCode, defaultAction) : defaultAction;
}

ErrorActionWithPreference ErrorActionGlobalCallback::GetErrorActionAndPreferenceFromGui(
    const int& errorCode, const ErrorAction& defaultAction) {
  return m_GuiErrorActionCallback ? m_GuiErrorActionCallback->GetErrorActionAndPreference(errorCode, defaultAction)
                                  : ErrorActionWithPreference{defaultAction, 0};
}

}  // namespace vek
