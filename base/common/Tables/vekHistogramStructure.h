#pragma once
#include <ostream>

#include "vekCommonExport.h"
#include "vekDataArray.h"
#include "vekObject.h"

namespace vek {

/// An integer histogram: NumBins counts and their total NumEntries, with median and fractional
/// bins, entropy and 1-2-1 smoothing. SetNumBins only records the size; Allocate makes the counts.
///
/// Smooth works in integers and truncates: inside bins get (c[i-1] + 2c[i] + c[i+1]) / 4, the first
/// and the last bin divide their two- or three-term sum by 3 instead, and a single bin becomes
/// 2c / 3. Those end weights are kept on purpose. Smooth changes only the counts: NumEntries still
/// holds the number of entries added, which is what fractional bins and entropy are taken of.
///
/// Bins are not clamped into range: AddBin refuses a bin outside the counts with
/// VEK_INDEX_OUT_OF_RANGE and counts nothing, and GetBin reads 0 there; both report the error.
/// The entropy of an empty histogram is 0.
class VEK_EXPORT HistogramStructure : public Object {
 public:
  static constexpr int kNoBin = -1;

  static HistogramStructure* New();
  const char* GetClassName() const override { return "HistogramStructure"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  void SetNumBins(int n) { NumBins = n; }
  int GetNumBins() const { return NumBins; }
  int GetNumEntries() const { return NumEntries; }
  /// Null until Allocate.
  const DataArray<unsigned int>* GetHist() const { return Hist; }

  /// Sizes the counts to NumBins and clears them.
  int Allocate();
  void Clear();

  int AddBin(int bin);
  unsigned int GetBin(int bin) const;
  unsigned int GetBinNum(int bin) const { return GetBin(bin); }

  /// The bin in which the running count first reaches ceil(NumEntries * fraction); kNoBin when
  /// there are no bins or that target is not above 0 (NaN included).
  int FindFractionalBin(float fraction) const;
  int FindMedianBin() const { return FindFractionalBin(0.5f); }

  /// ln N - (sum over non-empty bins of c ln c) / N, N = NumEntries, in nats.
  double GetEntropy() const;
  int Smooth();

  /// One line "Bin <index> : <count>" per bin.
  void PrintHistogram(std::ostream& os) const;

 protected:
  HistogramStructure() = default;
  ~HistogramStructure() override;

 private:
  HistogramStructure(const HistogramStructure&) = delete;
  HistogramStructure& operator=(const HistogramStructure&) = delete;

  int GetNumCounts() const { return Hist ? Hist->GetNumberOfValues() : 0; }

  int NumBins = 0;
  int NumEntries = 0;
  DataArray<unsigned int>* Hist = nullptr;
};

}  // namespace vek
