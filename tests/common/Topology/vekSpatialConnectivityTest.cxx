#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "vekErrorHelper.h"
#include "vekSmartPointer.h"
#include "vekSpatialConnectivity.h"

namespace vek {
namespace {

using SC = SpatialConnectivity;
using Pairs = std::vector<std::pair<int, int>>;

/// `code` is `expected` (custom-message flag ignored) and its message is `message`.
testing::AssertionResult Fails(int code, int expected, const std::string& message) {
  const std::string text = ErrorHelper::GetErrorMessageWithNoExtras(code);
  if (ErrorHelper::AreErrorsTheSame(code, expected) && code != VEK_SUCCESS && text == message)
    return testing::AssertionSuccess();
  return testing::AssertionFailure() << "code " << code << " '" << text << "'";
}

std::string Written(const SC& model, const std::string& indent = "") {
  std::ostringstream out;
  EXPECT_EQ(model.Write(out, indent), VEK_SUCCESS);
  return out.str();
}

SmartPointer<SC> Make(int projectors, int cameras, int type) {
  auto model = SmartPointer<SC>::New();
  EXPECT_EQ(model->Initialize(projectors, cameras, type), VEK_SUCCESS);
  return model;
}

// Two layers of a 1 x 2 wall, with sides: 0 | 1 over 2 | 3; camera 0 sees 0, 1, 2, camera 1 sees 3.
SmartPointer<SC> StackedRow() {
  auto model = Make(4, 2, SC::kLocalRectilinear);
  model->SetProjectorLayer(2, 1);
  model->SetProjectorLayer(3, 1);
  EXPECT_EQ(model->AddNeighbor(0, SC::kRight, 1), VEK_SUCCESS);
  EXPECT_EQ(model->AddNeighbor(3, SC::kLeft, 2), VEK_SUCCESS);
  for (int p : {0, 1, 2}) model->SetCameraSeesProjector(0, p, true);
  model->SetCameraSeesProjector(1, 3, true);
  return model;
}

TEST(SpatialConnectivity, SidesPairUpAndRepeatedAddsChangeNothing) {
  auto model = StackedRow();
  EXPECT_EQ(model->GetNeighbor(1, SC::kLeft), 0);
  EXPECT_EQ(model->GetNeighbor(2, SC::kRight), 3);
  EXPECT_EQ(model->GetNeighbor(0, SC::kUpper), SC::kNone);
  EXPECT_EQ(model->GetNeighbor(0, 4), SC::kNone);
  EXPECT_EQ(model->GetNeighborPairs(), (Pairs{{0, 1}, {2, 3}}));
  EXPECT_EQ(model->AddNeighbor(1, SC::kLeft, 0), VEK_SUCCESS);
  EXPECT_EQ(model->GetNeighborPairs(), (Pairs{{0, 1}, {2, 3}}));
  EXPECT_TRUE(model->AreNeighbors(1, 0));
  EXPECT_FALSE(model->AreNeighbors(0, 2));
  EXPECT_EQ(model->GetNumberOfLayers(), 2);
  EXPECT_TRUE(model->DoesCameraSeeProjector(1, 3));
  EXPECT_FALSE(model->DoesCameraSeeProjector(1, 2));
  EXPECT_FALSE(model->DoesCameraSeeProjector(2, 0));

  // Growing the cameras keeps what the first ones see.
  EXPECT_EQ(model->SetNumberOfCameras(3), VEK_SUCCESS);
  EXPECT_TRUE(model->DoesCameraSeeProjector(0, 2) && model->DoesCameraSeeProjector(1, 3));
  EXPECT_FALSE(model->DoesCameraSeeProjector(2, 0));
}

TEST(SpatialConnectivity, EditsThatDoNotFitFailAndChangeNothing) {
  auto rect = StackedRow();
  const std::string before = Written(*rect);
  const std::string add = "Cannot add projector ";
  EXPECT_TRUE(Fails(rect->AddNeighbor(0, SC::kRight, 3), VEK_UNABLE_TO_ADD_NEIGHBOR,
                    add + "3 as right neighbour of projector 0: projector 0 and projector 3 are in different layers "
                          "(0 and 1)."));
  EXPECT_TRUE(Fails(rect->AddNeighbor(0, SC::kLower, 4), VEK_UNABLE_TO_ADD_NEIGHBOR,
                    add + "4 as lower neighbour of projector 0: projector index out of range (0, 4 of 4 projectors)."));
  EXPECT_TRUE(Fails(rect->AddNeighbor(1, SC::kUpper, 1), VEK_UNABLE_TO_ADD_NEIGHBOR,
                    add + "1 as upper neighbour of projector 1: projector 1 cannot be its own neighbour."));
  EXPECT_TRUE(Fails(rect->AddNeighbor(1, 7, 0), VEK_UNABLE_TO_ADD_NEIGHBOR,
                    add + "0 as unknown neighbour of projector 1: no such side."));
  EXPECT_TRUE(Fails(rect->AddNeighbor(0, 1), VEK_UNABLE_TO_ADD_NEIGHBOR,
                    "Cannot add neighbours 0 and 1: the LocalRectilinear kind needs a side."));
  // Taken sides: the projector's own, the neighbour's opposite one, and a pair already on another side.
  EXPECT_EQ(rect->SetProjectorLayer(2, 0), VEK_INVALID_PARAMETERS | 0x8000);
  auto free = Make(3, 0, SC::kLocalRectilinear);
  ASSERT_EQ(free->AddNeighbor(0, SC::kRight, 1), VEK_SUCCESS);
  EXPECT_TRUE(Fails(free->AddNeighbor(0, SC::kRight, 2), VEK_UNABLE_TO_RE_ADD_NEIGHBOR,
                    add + "2 as right neighbour of projector 0: that side already holds projector 1."));
  EXPECT_TRUE(Fails(free->AddNeighbor(2, SC::kRight, 1), VEK_UNABLE_TO_RE_ADD_NEIGHBOR,
                    add + "1 as right neighbour of projector 2: its left side already holds projector 0."));
  EXPECT_TRUE(Fails(free->AddNeighbor(1, SC::kUpper, 0), VEK_UNABLE_TO_RE_ADD_NEIGHBOR,
                    add + "0 as upper neighbour of projector 1: they are already neighbours on another side."));
  EXPECT_EQ(free->GetNeighborPairs(), (Pairs{{0, 1}}));
  EXPECT_EQ(free->GetNeighbor(1, SC::kUpper), SC::kNone);
  EXPECT_EQ(Written(*rect), before);

  auto generic = Make(3, 0, SC::kGeneric);
  generic->SetProjectorLayer(2, 1);
  EXPECT_TRUE(Fails(generic->AddNeighbor(0, SC::kRight, 1), VEK_UNABLE_TO_ADD_NEIGHBOR,
                    add + "1 as right neighbour of projector 0: the Generic kind has no sides."));
  EXPECT_TRUE(Fails(generic->AddNeighbor(1, 2), VEK_UNABLE_TO_ADD_NEIGHBOR,
                    "Cannot add neighbours 1 and 2: projector 1 and projector 2 are in different layers (0 and 1)."));
  EXPECT_TRUE(generic->GetNeighborPairs().empty());

  auto grid = Make(1, 0, SC::kGlobalMxN);
  EXPECT_TRUE(
      Fails(grid->AddNeighbor(0, SC::kLeft, 0), VEK_UNABLE_TO_ADD_NEIGHBOR,
            add + "0 as left neighbour of projector 0: the GlobalMxN kind takes its neighbours from its grid."));
  EXPECT_EQ(Make(0, 0, SC::kGeneric)->Initialize(2, 0, SC::kGlobalMxN), VEK_INVALID_PARAMETERS);
  EXPECT_EQ(Make(0, 0, SC::kGeneric)->Initialize(-1, 0), VEK_INVALID_PARAMETERS);
}

TEST(SpatialConnectivity, ForcingKinds) {
  // 2 x 2 in layer 0 (0 1 / 2 3), first with one link missing; then a single projector 4 in layer 1.
  auto model = Make(5, 0, SC::kLocalRectilinear);
  model->AddNeighbor(0, SC::kRight, 1);
  model->AddNeighbor(2, SC::kUpper, 0);
  model->AddNeighbor(3, SC::kLeft, 2);
  const std::string force = "Cannot force the GlobalMxN kind: ";
  EXPECT_TRUE(Fails(model->ForceConnectivityType(SC::kGlobalMxN), VEK_UNABLE_TO_FORCE_CONNECTIVITY,
                    force + "the sides do not link projector 4 with the rest of layer 0."));
  model->SetProjectorLayer(4, 1);
  EXPECT_TRUE(Fails(model->ForceConnectivityType(SC::kGlobalMxN), VEK_UNABLE_TO_FORCE_CONNECTIVITY,
                    force + "layer 1 spans 1 x 1 cells, another layer 2 x 2."));
  model->SetProjectorLayer(4, 0);
  ASSERT_EQ(model->AddNeighbor(3, SC::kRight, 4), VEK_SUCCESS);
  ASSERT_EQ(model->AddNeighbor(1, SC::kLower, 4), VEK_SUCCESS);  // 4 both right of 3 and below 1
  EXPECT_TRUE(Fails(model->ForceConnectivityType(SC::kGlobalMxN), VEK_UNABLE_TO_FORCE_CONNECTIVITY,
                    force + "the sides around projector 3 do not form a grid."));
  auto square = Make(4, 0, SC::kLocalRectilinear);
  square->AddNeighbor(0, SC::kRight, 1);
  square->AddNeighbor(2, SC::kUpper, 0);
  square->AddNeighbor(3, SC::kLeft, 2);
  EXPECT_TRUE(Fails(square->ForceConnectivityType(SC::kGlobalMxN), VEK_UNABLE_TO_FORCE_CONNECTIVITY,
                    force + "the sides leave adjacent cells of the grid unlinked."));
  model = square;
  model->AddNeighbor(1, SC::kLower, 3);
  EXPECT_EQ(model->GetType(), SC::kLocalRectilinear);
  EXPECT_TRUE(Fails(model->ForceConnectivityType(7), VEK_UNABLE_TO_FORCE_CONNECTIVITY,
                    "Cannot force the Unknown kind: no such kind."));
  ASSERT_EQ(model->ForceConnectivityType(SC::kGlobalMxN), VEK_SUCCESS);
  EXPECT_EQ(model->GetGridRow(3) * 10 + model->GetGridColumn(3), 11);

  // Generic pairs carry no sides; without pairs they turn into single-projector grids.
  ASSERT_EQ(model->ForceConnectivityType(SC::kGeneric), VEK_SUCCESS);
  EXPECT_EQ(model->GetNeighborPairs(), (Pairs{{0, 1}, {0, 2}, {1, 3}, {2, 3}}));
  EXPECT_EQ(model->GetNeighbor(0, SC::kRight), SC::kNone);
  EXPECT_TRUE(Fails(model->ForceConnectivityType(SC::kLocalRectilinear), VEK_UNABLE_TO_FORCE_CONNECTIVITY,
                    "Cannot force the LocalRectilinear kind: generic neighbour pairs have no sides."));
  auto lone = Make(2, 0, SC::kGeneric);
  lone->SetProjectorLayer(1, 1);
  ASSERT_EQ(lone->ForceConnectivityType(SC::kGlobalMxN), VEK_SUCCESS);
  EXPECT_EQ(lone->GetRows() * 10 + lone->GetColumns(), 11);

  // A 2 x 3 wall numbered out of order: 5 4 3 / 0 1 2, in two steps through the sides.
  auto wall = Make(6, 0, SC::kLocalRectilinear);
  const int links[][3] = {{5, SC::kRight, 4}, {4, SC::kRight, 3}, {0, SC::kRight, 1}, {1, SC::kRight, 2},
                          {5, SC::kLower, 0}, {4, SC::kLower, 1}, {3, SC::kLower, 2}};
  for (const auto& link : links) ASSERT_EQ(wall->AddNeighbor(link[0], link[1], link[2]), VEK_SUCCESS);
  ASSERT_EQ(wall->ForceConnectivityType(SC::kGlobalMxN), VEK_SUCCESS);
  EXPECT_EQ(wall->GetRows(), 2);
  EXPECT_EQ(wall->GetColumns(), 3);
  const int rows[] = {1, 1, 1, 0, 0, 0}, columns[] = {0, 1, 2, 2, 1, 0};
  for (int p = 0; p < 6; ++p) {
    EXPECT_EQ(wall->GetGridRow(p), rows[p]) << p;
    EXPECT_EQ(wall->GetGridColumn(p), columns[p]) << p;
  }
  EXPECT_EQ(wall->GetNeighbor(4, SC::kLower), 1);
  EXPECT_EQ(wall->SetProjectorLayer(4, 0), VEK_INVALID_PARAMETERS | 0x8000);
  ASSERT_EQ(wall->ForceConnectivityType(SC::kLocalRectilinear), VEK_SUCCESS);
  EXPECT_EQ(wall->GetGridRow(0), SC::kNone);
  EXPECT_EQ(wall->GetNeighbor(2, SC::kUpper), 3);

  // Grids given by position: a full grid per layer, nothing else.
  auto placed = Make(4, 0, SC::kGeneric);
  const std::string grid = "Cannot force a 1 x 2 grid: ";
  EXPECT_TRUE(Fails(placed->ForceGlobalGrid(1, 2, {0, 0, 0, 0}, {0, 1, 1, 0}), VEK_UNABLE_TO_FORCE_CONNECTIVITY,
                    grid + "4 projectors in 1 layers cannot fill 1 x 2 cells per layer."));
  placed->SetProjectorLayer(2, 1);
  placed->SetProjectorLayer(3, 1);
  EXPECT_TRUE(Fails(placed->ForceGlobalGrid(1, 2, {0, 0, 0, 0}, {0, 1, 1, 1}), VEK_UNABLE_TO_FORCE_CONNECTIVITY,
                    grid + "projector 3 and projector 2 share row 0, column 1 of layer 1."));
  EXPECT_TRUE(Fails(placed->ForceGlobalGrid(1, 2, {0, 0, 0, 1}, {0, 1, 1, 0}), VEK_UNABLE_TO_FORCE_CONNECTIVITY,
                    grid + "projector 3 lies outside the grid."));
  EXPECT_EQ(placed->GetType(), SC::kGeneric);
  ASSERT_EQ(placed->ForceGlobalGrid(1, 2, {0, 0, 0, 0}, {0, 1, 1, 0}), VEK_SUCCESS);
  EXPECT_EQ(placed->GetNeighborPairs(), (Pairs{{0, 1}, {2, 3}}));
  EXPECT_EQ(placed->GetNeighbor(3, SC::kRight), 2);
}

TEST(SpatialConnectivity, WrittenText) {
  auto model = Make(3, 1, SC::kGeneric);
  model->AddNeighbor(2, 1);
  model->AddNeighbor(0, 2);
  model->SetCameraSeesProjector(0, 1, true);
  EXPECT_EQ(Written(*model, "\t"),
            "\t{ SpatialConnectivity 1.0 \n"
            "\t  { DataArray 1.0 \n\t  5 \n\t    0 \n\t    3 \n\t    1 \n\t    0 \n\t    0 \n\t  } \n"
            "\t  { DataArray 1.0 \n\t  3 \n\t    0 \n\t    0 \n\t    0 \n\t  } \n"
            "\t  { DataArray 1.0 \n\t  4 \n\t    0 \n\t    2 \n\t    1 \n\t    2 \n\t  } \n"
            "\t  { DataArray 1.0 \n\t  3 \n\t    0 \n\t    1 \n\t    0 \n\t  } \n"
            "\t} \n");

  auto grid = Make(1, 0, SC::kGlobalMxN);
  EXPECT_EQ(Written(*grid),
            "{ SpatialConnectivity 1.0 \n"
            "  { DataArray 1.0 \n  5 \n    2 \n    1 \n    0 \n    1 \n    1 \n  } \n"
            "  { DataArray 1.0 \n  1 \n    0 \n  } \n"
            "  { DataArray 1.0 \n  2 \n    0 \n    0 \n  } \n"
            "  { DataArray 1.0 \n  0 \n  } \n"
            "} \n");

  std::ostringstream failed;
  failed.setstate(std::ios::badbit);
  EXPECT_TRUE(Fails(model->Write(failed, ""), VEK_UNABLE_TO_WRITE_CONNECTIVITY,
                    "Failed to write connectivity object, stream has failed."));
}

TEST(SpatialConnectivity, ReadsBackWhatItWrites) {
  auto generic = Make(3, 1, SC::kGeneric);
  generic->AddNeighbor(2, 1);
  auto wall = Make(4, 0, SC::kGeneric);
  wall->SetProjectorLayer(2, 1);
  wall->SetProjectorLayer(3, 1);
  ASSERT_EQ(wall->ForceGlobalGrid(2, 1, {1, 0, 0, 1}, {0, 0, 0, 0}), VEK_SUCCESS);
  const SmartPointer<SC> models[] = {generic, StackedRow(), wall, Make(0, 0, SC::kGlobalMxN), Make(0, 2, SC::kGeneric)};

  // All in one stream, nested in an outer object and followed by a word, as a record would hold them.
  std::string text = "{ Outer 1.0 \n";
  for (const auto& model : models) text += Written(*model, "  ");
  text += "} \nafter";
  std::istringstream in(text);
  std::string word;
  in >> word >> word >> word;
  for (const auto& model : models) {
    auto read = Make(1, 1, SC::kGeneric);
    ASSERT_EQ(read->Read(in), VEK_SUCCESS);
    EXPECT_EQ(Written(*read), Written(*model));
    EXPECT_EQ(read->GetNeighborPairs(), model->GetNeighborPairs());
    EXPECT_EQ(read->GetType(), model->GetType());
  }
  std::string close;
  in >> close >> word;
  EXPECT_TRUE(close == "}" && word == "after");
  auto read = Make(0, 0, SC::kGeneric);
  std::istringstream again(Written(*wall));
  ASSERT_EQ(read->Read(again), VEK_SUCCESS);
  EXPECT_EQ(read->GetGridRow(0), 1);
  EXPECT_EQ(read->GetNeighbor(3, SC::kUpper), 2);
}

TEST(SpatialConnectivity, DamagedTextFailsAndLeavesTheModel) {
  auto original = StackedRow();
  const std::string good = Written(*original);
  auto target = Make(2, 1, SC::kGeneric);
  target->AddNeighbor(0, 1);
  const std::string kept = Written(*target);

  // Every truncation of good text.
  for (size_t n = 0; n + 3 <= good.size(); ++n) {  // up to, not including, the closing "} \n"
    std::istringstream in(good.substr(0, n));
    const int status = target->Read(in);
    ASSERT_TRUE(ErrorHelper::AreErrorsTheSame(status, VEK_UNABLE_TO_READ_CONNECTIVITY)) << n << ": " << status;
  }
  EXPECT_EQ(Written(*target), kept);

  const std::string read = "Failed to read SpatialConnectivity, ";
  const std::string head = "{ SpatialConnectivity 1.0 \n";
  const std::string sizes = "{ DataArray 1.0 \n5 \n1 \n2 \n0 \n0 \n0 \n} \n";
  const std::string layers = "{ DataArray 1.0 \n2 \n0 \n0 \n} \n";
  const std::string none = "{ DataArray 1.0 \n0 \n} \n";
  const std::string sides = "{ DataArray 1.0 \n8 \n-1 \n1 \n-1 \n-1 \n0 \n-1 \n-1 \n-1 \n} \n";
  const struct {
    std::string text, message;
  } cases[] = {
      {"{ SpatialConnectivity 1.1 \n" + sizes + layers + sides + none + "} \n",
       read + "object header: Failed to read SpatialConnectivity from stream, incorrect object version '1.1' found."},
      {"{ Connectivity 1.0 \n} \n",
       read + "object header: Failed to read SpatialConnectivity from stream, incorrect object type 'Connectivity' "
              "found."},
      {"{SpatialConnectivity 1.0 \n} \n",
       read + "object header: Failed to read SpatialConnectivity from stream, found incorrect object header."},
      {"SpatialConnectivity", read + "object header: Failed to read object header, first character peek was 'S'"},
      {"{}", read + "the object is empty."},
      {head + "{ DataArray 1.0 \n4 \n1 \n2 \n0 \n0 \n} \n" + layers + sides + none + "} \n",
       read + "sizes array holds 4 values, not 5."},
      {head + sizes + "{ DataArray 1.0 \n3 \n0 \n0 \n0 \n} \n" + sides + none + "} \n",
       read + "layers array holds 3 values for 2 projectors."},
      {head + sizes + layers + "{ DataArray 1.0 \n2 \n0 \n1 \n} \n" + none + "} \n",
       read + "neighbours array holds 2 values, which does not suit 2 projectors of the LocalRectilinear kind."},
      {head + sizes + layers + sides + "{ DataArray 1.0 \n1 \n1 \n} \n" + "} \n",
       read + "camera visibility array holds 1 values for 0 cameras and 2 projectors."},
      {head + sizes + layers + "{ DataArray 1.0 \n8 \n-1 \n1 \n-1 \n-1 \n-1 \n-1 \n-1 \n-1 \n} \n" + none + "} \n",
       read + "the left side of projector 1 does not match its neighbour's opposite side."},
      {head + sizes + layers + "{ DataArray 1.0 \n8 \n-1 \n1 \n-1 \n-1 \n0 \n-1 \n-1 \n7 \n} \n" + none + "} \n",
       read + "Cannot add projector 7 as lower neighbour of projector 1: projector index out of range (1, 7 of 2 "
              "projectors)."},
      {head + "{ DataArray 1.0 \n5 \n3 \n2 \n0 \n0 \n0 \n} \n" + layers + sides + none + "} \n",
       read + "unknown kind 3."},
      {head + "{ DataArray 1.0 \n5 \n0 \n2 \n1 \n0 \n0 \n} \n" + layers + none +
           "{ DataArray 1.0 \n2 \n1 \n2 \n} \n} \n",
       read + "camera visibility values must be 0 or 1, found 2."},
      {head + "{ DataArray 1.0 \n5 \n2 \n2 \n0 \n1 \n2 \n} \n" + layers + "{ DataArray 1.0 \n4 \n0 \n0 \n0 \n0 \n} \n" +
           none + "} \n",
       read + "Cannot force a 1 x 2 grid: projector 1 and projector 0 share row 0, column 0 of layer 0."},
      {head + sizes + layers + sides + "{ Extra 1.0 { DataArray 1.0 \n0 \n} \n} \n" + none + "} \n",
       read + "camera visibility array: Failed to read DataArray from stream, incorrect object type 'Extra' found."},
      {head + sizes + layers + sides + none + "{ Extra } \n} \n", read + "unexpected text before the closing brace."},
      {head + sizes + layers + sides + "{ DataArray 1.0 \n1 \n",
       read + "camera visibility array: Failed to read DataArray from stream, element 0 of 1 missing."},
  };
  for (const auto& c : cases) {
    std::istringstream in(c.text + "next");
    EXPECT_TRUE(Fails(target->Read(in), VEK_UNABLE_TO_READ_CONNECTIVITY, c.message)) << c.text;
    EXPECT_EQ(Written(*target), kept);
  }
  // A damaged object with well-formed arrays is skipped to its end.
  std::istringstream in(head + sizes + "{ DataArray 1.0 \n3 \n0 \n0 \n0 \n} \n" + sides + none + "} \nnext");
  target->Read(in);
  std::string word;
  in >> word;
  EXPECT_EQ(word, "next");
}

}  // namespace
}  // namespace vek
