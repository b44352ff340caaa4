#include "vekHistogramStructure.h"

#include <climits>
#include <cmath>
#include <new>
#include <vector>

#include "vekErrorCodes.h"
#include "vekOutputMessages.h"

namespace vek {

HistogramStructure* HistogramStructure::New() { return new (std::nothrow) HistogramStructure; }

HistogramStructure::~HistogramStructure() {
  if (Hist) Hist->UnRegister();
}

int HistogramStructure::Allocate() {
  if (NumBins < 0) {
    VEK_REPORT_ERROR("Cannot allocate " << NumBins << " bins");
    return VEK_INVALID_PARAMETERS;
  }
  DataArray<unsigned int>* counts = Hist ? Hist : DataArray<unsigned int>::New();
  if (!counts) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  if (counts->SetNumberOfValues(NumBins) != VEK_SUCCESS) {
    if (counts != Hist) counts->Release();
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  Hist = counts;
  Clear();
  return VEK_SUCCESS;
}

void HistogramStructure::Clear() {
  for (int b = 0; b < GetNumCounts(); ++b) (*Hist)[b] = 0;
  NumEntries = 0;
}

int HistogramStructure::AddBin(int bin) {
  if (bin < 0 || bin >= GetNumCounts()) {
    VEK_REPORT_ERROR("Bin " << bin << " is outside the histogram (" << GetNumCounts() << " bins)");
    return VEK_INDEX_OUT_OF_RANGE;
  }
  ++(*Hist)[bin];
  ++NumEntries;
  return VEK_SUCCESS;
}

unsigned int HistogramStructure::GetBin(int bin) const {
  if (bin < 0 || bin >= GetNumCounts()) {
    VEK_REPORT_ERROR("Bin " << bin << " is outside the histogram (" << GetNumCounts() << " bins)");
    return 0;
  }
  return (*Hist)[bin];
}

int HistogramStructure::FindFractionalBin(float fraction) const {
  const float target = std::ceil(static_cast<float>(NumEntries) * fraction);
  if (!(target > 0.0f)) return kNoBin;
  const int bins = GetNumCounts();
  unsigned long long sum = 0;
  int added = 0;
  while (added < bins && !(static_cast<double>(sum) >= target)) sum += (*Hist)[added++];
  return added - 1;
}

double HistogramStructure::GetEntropy() const {
  if (NumEntries <= 0) return 0.0;
  double weighted = 0.0;
  for (int b = 0; b < GetNumCounts(); ++b) {
    const unsigned int c = (*Hist)[b];
    if (c == 0) continue;
    const float cf = static_cast<float>(c);
    weighted += static_cast<double>(cf) * std::log(cf);
  }
  const float n = static_cast<float>(NumEntries);
  return static_cast<double>(std::log(n)) - weighted / static_cast<double>(n);
}

int HistogramStructure::Smooth() {
  const int bins = GetNumCounts();
  if (bins == 0) return VEK_SUCCESS;
  std::vector<unsigned int> smoothed;
  try {
    smoothed.resize(static_cast<size_t>(bins));
  } catch (...) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  const DataArray<unsigned int>& c = *Hist;
  for (int i = 0; i < bins; ++i) {
    unsigned long long s = 2ull * c[i];
    if (i > 0) s += c[i - 1];
    if (i + 1 < bins) s += c[i + 1];
    const bool end = i == 0 || i == bins - 1;
    smoothed[static_cast<size_t>(i)] = static_cast<unsigned int>(s / (end ? 3 : 4));
  }
  for (int i = 0; i < bins; ++i) (*Hist)[i] = smoothed[static_cast<size_t>(i)];
  return VEK_SUCCESS;
}

void HistogramStructure::PrintHistogram(std::ostream& os) const {
  for (int b = 0; b < GetNumCounts(); ++b) os << "Bin " << b << " : " << (*Hist)[b] << "\n";
}

void HistogramStructure::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "NumEntries: " << NumEntries << "\n";
  os << indent << "NumBins: " << NumBins << "\n";
  os << indent << "Hist: " << (Hist ? " Not Null" : " NULL") << "\n";
}

}  // namespace vek
