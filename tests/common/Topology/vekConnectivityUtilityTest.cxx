#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "vekConnectivityUtility.h"
#include "vekErrorHelper.h"
#include "vekRectilinearConnectivityTriangleMesh.h"
#include "vekRectilinearGrid.h"
#include "vekSmartPointer.h"

namespace vek {
namespace {

using SC = SpatialConnectivity;
using CU = ConnectivityUtility;
using Pairs = std::vector<std::pair<int, int>>;
using Ints = std::vector<int>;

/// `code` is `expected` (flag ignored) with exactly these projectors and cameras attached.
testing::AssertionResult FailsWith(int code, int expected, const Ints& projectors, const Ints& cameras = {}) {
  if (!ErrorHelper::AreErrorsTheSame(code, expected) || code == VEK_SUCCESS)
    return testing::AssertionFailure() << "code " << code;
  const ErrorMetadata* record = ErrorHelper::GetErrorMetadata(code);
  if (record->GetAttachedProjectors() != projectors || record->GetAttachedCameras() != cameras)
    return testing::AssertionFailure() << "attachments differ: " << ErrorHelper::GetErrorMessageWithNoExtras(code);
  return testing::AssertionSuccess();
}

std::string Message(int code) { return ErrorHelper::GetErrorMessageWithNoExtras(code); }

SmartPointer<SC> Model() { return SmartPointer<SC>::New(); }

std::string Summary(const SC& model) {
  std::ostringstream out;
  CU::WriteNeighborSummary(model, out);
  return out.str();
}

std::string Written(const SC& model) {
  std::ostringstream out;
  model.Write(out, "");
  return out.str();
}

// A footprint as the calibration builds it: a 33 x 19 spot grid over the box.
SmartPointer<TriangleMesh> Footprint(float x0, float y0, float x1, float y1) {
  auto grid = SmartPointer<RectilinearGrid>::New();
  grid->SetOffsetx(x0);
  grid->SetOffsety(y0);
  grid->SetSpacex((x1 - x0) / 32);
  grid->SetSpacey((y1 - y0) / 18);
  grid->SetNumx(33);
  grid->SetNumy(19);
  auto mesh = SmartPointer<RectilinearConnectivityTriangleMesh>::New();
  EXPECT_EQ(mesh->CreateTriangleMesh(grid.GetPointer()), VEK_SUCCESS);
  return SmartPointer<TriangleMesh>(mesh.GetPointer());
}

struct Wall {
  std::vector<SmartPointer<TriangleMesh>> Meshes;
  void Add(float x0, float y0, float x1, float y1) { Meshes.push_back(Footprint(x0, y0, x1, y1)); }
  int Infer(SC* result, double fraction = CU::kDefaultMinOverlapFraction) const {
    std::vector<const TriangleMesh*> footprints;
    for (const auto& mesh : Meshes) footprints.push_back(mesh.GetPointer());
    return CU::InferFromFootprints(footprints, fraction, result);
  }
};

// Columns 120 wide overlapping by 20 (17%), rows 80 high overlapping by 15 (19%): diagonal
// neighbours share 20 x 15 = 3% of a footprint.
constexpr float kX[] = {0, 100, 200, 300}, kY[] = {0, 65};
void AddCell(Wall& wall, int row, int column, float shift = 0) {
  wall.Add(kX[column] + shift, kY[row] + shift, kX[column] + 120 + shift, kY[row] + 80 + shift);
}

TEST(ConnectivityUtility, BuildsMxNAndListsNeighbours) {
  auto model = Model();
  ASSERT_EQ(CU::BuildGlobalMxN(2, 3, 2, 1, model.GetPointer()), VEK_SUCCESS);
  EXPECT_EQ(model->GetNumberOfProjectors(), 12);
  EXPECT_EQ(model->GetNumberOfCameras(), 1);
  EXPECT_EQ(model->GetProjectorLayer(7), 1);
  EXPECT_EQ(model->GetGridRow(10), 1);
  EXPECT_EQ(model->GetGridColumn(10), 1);
  Ints neighbors;
  ASSERT_EQ(CU::GetNeighbors(*model, 7, neighbors), VEK_SUCCESS);
  EXPECT_EQ(neighbors, (Ints{6, 8, 10}));
  EXPECT_EQ(CU::GetNeighbors(*model, 12, neighbors), VEK_INVALID_PARAMETERS);
  EXPECT_TRUE(neighbors.empty());
  const std::string before = Written(*model);
  EXPECT_EQ(CU::BuildGlobalMxN(0, 3, 1, 0, model.GetPointer()), VEK_INVALID_PARAMETERS);
  EXPECT_EQ(CU::BuildGlobalMxN(2, 3, 1, -1, model.GetPointer()), VEK_INVALID_PARAMETERS);
  EXPECT_EQ(Written(*model), before);

  ASSERT_EQ(CU::BuildGlobalMxN(2, 2, 1, 0, model.GetPointer()), VEK_SUCCESS);
  EXPECT_EQ(Summary(*model),
            "Projector 0 (layer 0, row 0, column 0): left -, right 1, upper -, lower 2\n"
            "Projector 1 (layer 0, row 0, column 1): left 0, right -, upper -, lower 3\n"
            "Projector 2 (layer 0, row 1, column 0): left -, right 3, upper 0, lower -\n"
            "Projector 3 (layer 0, row 1, column 1): left 2, right -, upper 1, lower -\n");
  ASSERT_EQ(model->Initialize(3, 0), VEK_SUCCESS);
  model->AddNeighbor(2, 0);
  EXPECT_EQ(Summary(*model), "Projector 0 (layer 0): 2\nProjector 1 (layer 0): none\nProjector 2 (layer 0): 0\n");
}

TEST(ConnectivityUtility, VisitingOrderIsBreadthFirstInAscendingOrder) {
  auto model = Model();
  Ints order, previous;
  // 0 1 2
  // 3 4 5
  ASSERT_EQ(CU::BuildGlobalMxN(2, 3, 1, 0, model.GetPointer()), VEK_SUCCESS);
  ASSERT_EQ(CU::ComputeVisitingOrder(*model, 0, order, previous), VEK_SUCCESS);
  EXPECT_EQ(order, (Ints{0, 1, 3, 2, 4, 5}));
  EXPECT_EQ(previous, (Ints{-1, 0, 1, 0, 1, 2}));
  ASSERT_EQ(CU::ComputeVisitingOrder(*model, 4, order, previous), VEK_SUCCESS);
  EXPECT_EQ(order, (Ints{4, 1, 3, 5, 0, 2}));
  EXPECT_EQ(previous, (Ints{1, 4, 1, 4, -1, 4}));

  // Generic: 0 - 3 - 1 - 2 - 4, and 5 on its own in layer 1.
  ASSERT_EQ(model->Initialize(6, 0), VEK_SUCCESS);
  model->SetProjectorLayer(5, 1);
  for (auto [a, b] : Pairs{{0, 3}, {3, 1}, {1, 2}, {4, 2}}) ASSERT_EQ(model->AddNeighbor(a, b), VEK_SUCCESS);
  ASSERT_EQ(CU::ComputeVisitingOrder(*model, 2, order, previous), VEK_SUCCESS);
  EXPECT_EQ(order, (Ints{2, 1, 4, 3, 0}));
  EXPECT_EQ(previous, (Ints{3, 2, -1, 1, 2, -1}));
  ASSERT_EQ(CU::ComputeVisitingOrder(*model, 5, order, previous), VEK_SUCCESS);
  EXPECT_EQ(order, (Ints{5}));

  ASSERT_EQ(model->Initialize(5, 0), VEK_SUCCESS);
  model->AddNeighbor(0, 1);
  model->AddNeighbor(3, 2);
  const int status = CU::ComputeVisitingOrder(*model, 1, order, previous);
  EXPECT_TRUE(FailsWith(status, VEK_UNABLE_TO_FORM_ADJACENCY_ARRAY, {2, 3, 4}));
  EXPECT_EQ(Message(status), "Projectors 2, 3, 4 cannot be reached from projector 1 through neighbours.");
  EXPECT_TRUE(order.empty() && previous.empty());
  EXPECT_EQ(CU::ComputeVisitingOrder(*model, 5, order, previous), VEK_INVALID_PARAMETERS);
  ASSERT_EQ(model->Initialize(0, 1), VEK_SUCCESS);
  EXPECT_TRUE(FailsWith(CU::ComputeVisitingOrder(*model, 0, order, previous), VEK_CONNECTIVITY_GRAPH_NOT_SET, {}));
}

TEST(ConnectivityUtility, CamerasMustCarryEveryNeighbourPair) {
  // 0 - 1 - 2 - 3 in a row; camera 0 sees 0 1 2, camera 1 sees 2 3.
  auto model = Model();
  ASSERT_EQ(CU::BuildGlobalMxN(1, 4, 1, 3, model.GetPointer()), VEK_SUCCESS);
  for (int p : {0, 1, 2}) model->SetCameraSeesProjector(0, p, true);
  for (int p : {2, 3}) model->SetCameraSeesProjector(1, p, true);
  model->SetCameraSeesProjector(2, 3, true);
  EXPECT_EQ(CU::CheckNeighborsSeenTogether(*model), VEK_SUCCESS);
  EXPECT_EQ(CU::CheckCamerasLinked(*model), VEK_SUCCESS);

  model->SetCameraSeesProjector(1, 2, false);  // 2 and 3 now only seen apart
  int status = CU::CheckNeighborsSeenTogether(*model);
  EXPECT_TRUE(FailsWith(status, VEK_PROJECTORS_NOT_SEEN_BY_SINGLE_CAMERA, {2, 3}));
  EXPECT_EQ(Message(status), "No single camera sees both of the neighbouring projectors 2 and 3.");
  status = CU::CheckCamerasLinked(*model);
  EXPECT_TRUE(FailsWith(status, VEK_NO_ABILITY_TO_TRANSFER_INFO_TO_CAMERA, {}, {1, 2}));
  EXPECT_EQ(Message(status), "Cameras 1, 2 share no projector with camera 0, directly or through other cameras.");

  model->SetCameraSeesProjector(0, 1, false);  // nobody sees 1: its pairs are the worse failure
  status = CU::CheckNeighborsSeenTogether(*model);
  EXPECT_TRUE(FailsWith(status, VEK_ADJACENT_PROJECTORS_NOT_SEEN_BY_ANY_CAMERA, {0, 1, 1, 2}));
  EXPECT_EQ(Message(status), "No camera sees one of the neighbouring projectors 0 and 1, 1 and 2.");

  ASSERT_EQ(model->Initialize(0, 2), VEK_SUCCESS);
  EXPECT_TRUE(FailsWith(CU::CheckNeighborsSeenTogether(*model), VEK_CONNECTIVITY_GRAPH_NOT_SET, {}));
  ASSERT_EQ(model->Initialize(2, 0), VEK_SUCCESS);
  EXPECT_TRUE(FailsWith(CU::CheckCamerasLinked(*model), VEK_CONNECTIVITY_GRAPH_NOT_SET, {}));
}

TEST(ConnectivityUtility, InfersGridsFromWalls) {
  // 3 x 2, numbered out of order: 1 4 3 / 2 5 0; projector 5 has a hole where spots were missed.
  Wall wall;
  const int cells[][2] = {{1, 2}, {0, 0}, {1, 0}, {0, 2}, {0, 1}, {1, 1}};
  for (const auto& cell : cells) AddCell(wall, cell[0], cell[1]);
  wall.Meshes[5]->SetPoint(9 * 33 + 16) = vec2<float>(-5, -5);
  auto model = Model();
  for (double fraction : {CU::kDefaultMinOverlapFraction, 0.01}) {  // 0.01: corners overlap enough
    ASSERT_EQ(wall.Infer(model.GetPointer(), fraction), VEK_SUCCESS);
    ASSERT_EQ(model->GetType(), SC::kGlobalMxN);
    EXPECT_EQ(model->GetRows(), 2);
    EXPECT_EQ(model->GetColumns(), 3);
    for (int p = 0; p < 6; ++p) {
      EXPECT_EQ(model->GetGridRow(p), cells[p][0]) << p;
      EXPECT_EQ(model->GetGridColumn(p), cells[p][1]) << p;
    }
    EXPECT_EQ(model->GetNeighborPairs(), (Pairs{{0, 3}, {0, 5}, {1, 2}, {1, 4}, {2, 5}, {3, 4}, {4, 5}}));
    EXPECT_EQ(model->GetNeighbor(5, SC::kUpper), 4);
    EXPECT_EQ(model->GetNumberOfCameras(), 1);
    EXPECT_TRUE(model->DoesCameraSeeProjector(0, 5));
  }

  // 4 x 1, right to left.
  Wall row;
  for (int c = 3; c >= 0; --c) AddCell(row, 0, c);
  ASSERT_EQ(row.Infer(model.GetPointer()), VEK_SUCCESS);
  EXPECT_EQ(model->GetType(), SC::kGlobalMxN);
  EXPECT_EQ(model->GetRows() * 10 + model->GetColumns(), 14);
  EXPECT_EQ(model->GetNeighborPairs(), (Pairs{{0, 1}, {1, 2}, {2, 3}}));
  EXPECT_EQ(model->GetNeighbor(0, SC::kLeft), 1);

  // 3 x 2 without its lower right projector: sides, but not a full grid.
  Wall corner;
  for (const auto& cell : {Ints{0, 0}, Ints{0, 1}, Ints{0, 2}, Ints{1, 0}, Ints{1, 1}})
    AddCell(corner, cell[0], cell[1]);
  ASSERT_EQ(corner.Infer(model.GetPointer()), VEK_SUCCESS);
  EXPECT_EQ(model->GetType(), SC::kLocalRectilinear);
  EXPECT_EQ(model->GetNeighborPairs(), (Pairs{{0, 1}, {0, 3}, {1, 2}, {1, 4}, {3, 4}}));
  EXPECT_EQ(model->GetNeighbor(2, SC::kLower), SC::kNone);
  EXPECT_EQ(model->GetNeighbor(4, SC::kUpper), 1);
}

TEST(ConnectivityUtility, InfersLayersAndThresholds) {
  // Two layers of a 2 x 1 wall, the second moved by (3, 3): 0 1 over 2 3.
  Wall stack;
  AddCell(stack, 0, 0);
  AddCell(stack, 0, 1);
  AddCell(stack, 0, 0, 3);
  AddCell(stack, 0, 1, 3);
  auto model = Model();
  ASSERT_EQ(stack.Infer(model.GetPointer()), VEK_SUCCESS);
  EXPECT_EQ(model->GetType(), SC::kGlobalMxN);
  EXPECT_EQ(model->GetNumberOfLayers(), 2);
  EXPECT_EQ((Ints{model->GetProjectorLayer(0), model->GetProjectorLayer(1), model->GetProjectorLayer(2),
                  model->GetProjectorLayer(3)}),
            (Ints{0, 0, 1, 1}));
  EXPECT_EQ(model->GetRows() * 10 + model->GetColumns(), 12);
  EXPECT_EQ(model->GetNeighborPairs(), (Pairs{{0, 1}, {2, 3}}));

  // Overlaps of 2/3 and 7/12 of a footprint either side of the stacking fraction, 0.1 either
  // side of the minimum.
  auto pair = [&](float shift, double fraction) {
    Wall two;
    two.Add(0, 0, 120, 80);
    two.Add(shift, 0, shift + 120, 80);
    EXPECT_EQ(two.Infer(model.GetPointer(), fraction), VEK_SUCCESS);
    return std::pair(model->GetNumberOfLayers(), model->AreNeighbors(0, 1));
  };
  EXPECT_EQ(pair(40, 0.05), std::pair(2, false));
  EXPECT_EQ(pair(50, 0.05), std::pair(1, true));
  EXPECT_EQ(pair(108, 0.099), std::pair(1, true));
  EXPECT_EQ(model->GetType(), SC::kGlobalMxN);
  EXPECT_EQ(pair(108, 0.101), std::pair(1, false));
  EXPECT_EQ(model->GetType(), SC::kLocalRectilinear);
}

TEST(ConnectivityUtility, InferenceOfWallsThatAreNotGrids) {
  // A brick wall: 0 1 2 over 3 4 set half a projector to the right: no grid, generic pairs.
  Wall brick;
  for (int c = 0; c < 3; ++c) AddCell(brick, 0, c);
  brick.Add(50, 65, 170, 145);
  brick.Add(150, 65, 270, 145);
  auto model = Model();
  ASSERT_EQ(brick.Infer(model.GetPointer()), VEK_SUCCESS);
  EXPECT_EQ(model->GetType(), SC::kGeneric);
  EXPECT_EQ(model->GetNeighborPairs(), (Pairs{{0, 1}, {0, 3}, {1, 2}, {1, 3}, {1, 4}, {2, 4}, {3, 4}}));

  // 4 x 1 where projector 3 also lit stray spots inside projector 1: 1 and 3 overlap across 2.
  Wall stray;
  for (int c = 0; c < 4; ++c) AddCell(stray, 0, c);
  ASSERT_EQ(stray.Meshes[3]->Concatenate(Footprint(130, 0, 160, 80).GetPointer()), VEK_SUCCESS);
  const std::string before = Written(*model);
  const int status = stray.Infer(model.GetPointer());
  EXPECT_TRUE(FailsWith(status, VEK_INCONSISTENT_CONNECTIVITY_INFERRED, {1, 3}));
  EXPECT_EQ(Message(status),
            "Projectors 1 and 3 overlap, but their centroids place them at row 0, column 1 and row 0, column 3 of the "
            "wall, which are not adjacent.");
  EXPECT_EQ(Written(*model), before);

  // Bad input.
  Wall blank;
  AddCell(blank, 0, 0);
  blank.Add(0, 0, 0, 80);
  EXPECT_TRUE(FailsWith(blank.Infer(model.GetPointer()), VEK_UNABLE_TO_CREATE_CONNECTIVITY, {1}));
  EXPECT_TRUE(FailsWith(CU::InferFromFootprints({brick.Meshes[0].GetPointer(), nullptr}, 0.05, model.GetPointer()),
                        VEK_INVALID_PARAMETERS, {1}));
  EXPECT_EQ(brick.Infer(model.GetPointer(), CU::kStackedOverlapFraction), VEK_INVALID_PARAMETERS);
  EXPECT_EQ(brick.Infer(nullptr), VEK_INVALID_PARAMETERS);
  EXPECT_EQ(CU::InferFromFootprints({}, 0.05, model.GetPointer()), VEK_INVALID_PARAMETERS);
  EXPECT_EQ(Written(*model), before);
}

}  // namespace
}  // namespace vek
