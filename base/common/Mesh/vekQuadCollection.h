#pragma once
#include <vector>

#include "vekCommonExport.h"
#include "vekObject.h"
#include "vekOrderedQuadrilateral.h"
#include "vekVec2.h"

namespace vek {

/// A flat list of quadrilaterals, each with an int id (for grid cells: the cell number
/// j (Numx - 1) + i). Corners are in grid order, as OrderedQuadrilateral keeps them: P0
/// lower-left, P1 lower-right, P2 upper-left, P3 upper-right, so the outline runs
/// P0 -> P1 -> P3 -> P2. Quads are kept in the order they were added. Reserve returns
/// VEK_INVALID_PARAMETERS for a negative count.
class VEK_EXPORT QuadCollection : public Object {
 public:
  static QuadCollection* New();
  const char* GetClassName() const override { return "QuadCollection"; }
  /// Object's lines, then "NumberOfQuads: n".
  void PrintSelf(std::ostream& os, Indent indent) const override;

  int GetNumberOfQuads() const { return static_cast<int>(Items.size()); }
  const OrderedQuadrilateral& GetQuad(int q) const { return Items[q].Quad; }
  const vec2<float>& GetCorner(int q, int k) const { return Items[q].Quad.GetPoint(k); }
  int GetId(int q) const { return Items[q].Id; }

  /// VEK_FAILED_TO_ALLOCATE_MEMORY when the list cannot grow (nothing added).
  int AddQuad(const OrderedQuadrilateral& quad, int id);
  /// Room for n quads in all, so that adding up to n cannot fail.
  int Reserve(int n);
  void Reset() { Items.clear(); }

 protected:
  QuadCollection() = default;
  ~QuadCollection() override = default;

 private:
  QuadCollection(const QuadCollection&) = delete;
  QuadCollection& operator=(const QuadCollection&) = delete;

  struct Item {
    OrderedQuadrilateral Quad;
    int Id;
  };
  std::vector<Item> Items;
};

}  // namespace vek
