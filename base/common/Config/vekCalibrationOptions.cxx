#include "vekCalibrationOptions.h"

#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekOptionListing.h"
#include "vekOptionValueCheck.h"

namespace vek {

namespace {

// The store's value for `key` when some file names it; `named` says whether one did.
template <class T>
int Named(ConfigurationDatabase& store, const char* key, const char* type, T& value, bool& named) {
  OptionListing::Entry entry;
  int status = OptionListing::Find(store, key, entry);
  named = status == VEK_SUCCESS && entry.From != OptionListing::Nowhere;
  if (status != VEK_SUCCESS || !named) return status;
  status = OptionValueCheck::Check(type, entry.Value);
  if (status != VEK_SUCCESS)
    return ErrorHelper::ErrorWithCustomMessage(
        VEK_INVALID_PARAMETERS, std::string("Option ") + key + ": " + ErrorHelper::GetErrorMessageWithNoExtras(status));
  return store.GetOption(key, value);
}

}  // namespace

int CalibrationOptions::Load(ConfigurationDatabase& store, CalibrationSettings& settings) {
  CalibrationSettings loaded = settings;
  bool named = false;
  double gamma = 0;
  int step = 0, width = 0, height = 0;
  int status = Named(store, kBlendGamma, "Double", gamma, named);
  if (status != VEK_SUCCESS) return status;
  if (named) loaded.BlendGamma = gamma;
  status = Named(store, kWarpStep, "Int", step, named);
  if (status != VEK_SUCCESS) return status;
  if (named) loaded.WarpStep = step;
  status = Named(store, kContentWidth, "Int", width, named);
  if (status != VEK_SUCCESS) return status;
  if (named) loaded.ContentWidth = width;
  status = Named(store, kContentHeight, "Int", height, named);
  if (status != VEK_SUCCESS) return status;
  if (named) loaded.ContentHeight = height;
  status = loaded.Validate();
  if (status != VEK_SUCCESS) return status;
  settings = loaded;
  return VEK_SUCCESS;
}

}  // namespace vek
