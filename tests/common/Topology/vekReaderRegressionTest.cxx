// Inputs that made the fuzz targets fail, read the way the library meets them.
#include <gtest/gtest.h>

#include <climits>
#include <sstream>
#include <string>

#include "../../fuzz/vekRegressionInputs.h"
#include "vekErrorHelper.h"
#include "vekSmartPointer.h"
#include "vekSpatialConnectivity.h"

namespace vek {
namespace {

std::string Written(const SpatialConnectivity& model) {
  std::ostringstream out;
  model.Write(out, "");
  return out.str();
}

// Layer INT_MAX made "highest layer + 1", the number of layers, overflow.
TEST(ConnectivityRegression, TheTopLayerOfIntIsRefused) {
  const std::string input = test::RegressionInput("SpatialConnectivity", "top-layer");
  ASSERT_NE(input.find("2147483647"), std::string::npos);
  auto model = SmartPointer<SpatialConnectivity>::New();
  ASSERT_EQ(model->Initialize(2, 1), VEK_SUCCESS);
  ASSERT_EQ(model->AddNeighbor(0, 1), VEK_SUCCESS);
  const std::string before = Written(*model);
  std::istringstream in(input + "tail");
  const int status = model->Read(in);
  EXPECT_TRUE(ErrorHelper::AreErrorsTheSame(status, VEK_UNABLE_TO_READ_CONNECTIVITY));
  EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(status),
            "Failed to read SpatialConnectivity, layer 2147483647 of projector 0 out of range.");
  EXPECT_EQ(Written(*model), before);
  std::string rest;
  in >> rest;
  EXPECT_EQ(rest, "tail");  // the damaged object was skipped as a whole

  auto layered = SmartPointer<SpatialConnectivity>::New();
  ASSERT_EQ(layered->Initialize(2, 0), VEK_SUCCESS);
  EXPECT_TRUE(ErrorHelper::AreErrorsTheSame(layered->SetProjectorLayer(0, INT_MAX), VEK_INVALID_PARAMETERS));
  EXPECT_EQ(layered->GetNumberOfLayers(), 1);
  EXPECT_EQ(layered->SetProjectorLayer(1, INT_MAX - 1), VEK_SUCCESS);
  EXPECT_EQ(layered->GetNumberOfLayers(), INT_MAX);
}

}  // namespace
}  // namespace vek
