#include <gtest/gtest.h>

#include <sstream>
#include <vector>

#include "vekErrorCodes.h"
#include "vekHistogramStructure.h"
#include "vekSmartPointer.h"
#include "vekTestSupport.h"

namespace vek {
namespace {

using Counts = std::vector<unsigned>;

SmartPointer<HistogramStructure> MakeHistogram(const Counts& counts) {
  auto h = SmartPointer<HistogramStructure>::New();
  h->SetNumBins(static_cast<int>(counts.size()));
  EXPECT_EQ(h->Allocate(), VEK_SUCCESS);
  for (size_t b = 0; b < counts.size(); ++b)
    for (unsigned k = 0; k < counts[b]; ++k) EXPECT_EQ(h->AddBin(static_cast<int>(b)), VEK_SUCCESS);
  return h;
}

Counts CountsOf(const HistogramStructure& h) {
  Counts c;
  for (int b = 0; b < h.GetNumBins(); ++b) c.push_back(h.GetBin(b));
  return c;
}

TEST(HistogramStructure, CountsPrintingAndRangeChecks) {
  auto h = MakeHistogram({1, 2, 0, 4});
  EXPECT_EQ(h->GetNumEntries(), 7);
  std::ostringstream os;
  h->PrintSelf(os, Indent(0));
  h->PrintHistogram(os);
  EXPECT_EQ(os.str(),
            "Reference Count: 1\nNumEntries: 7\nNumBins: 4\nHist:  Not Null\n"
            "Bin 0 : 1\nBin 1 : 2\nBin 2 : 0\nBin 3 : 4\n");
  {
    test::LogCapture log;
    EXPECT_EQ(h->AddBin(4), VEK_INDEX_OUT_OF_RANGE);
    EXPECT_EQ(h->GetBinNum(4), 0u);
    EXPECT_NE(log.Text().find(": Bin 4 is outside the histogram (4 bins)\n"), std::string::npos);
  }

  h->Clear();
  EXPECT_EQ(CountsOf(*h), (Counts{0, 0, 0, 0}));
  EXPECT_EQ(h->GetNumEntries(), 0);
}

TEST(HistogramStructure, FractionalBinIsWhereTheRunningCountReachesTheTarget) {
  auto h = MakeHistogram({1, 2, 3, 4});       // entries in bins 0 1 1 2 2 2 3 3 3 3
  EXPECT_EQ(h->FindMedianBin(), 2);           // the 5th entry
  EXPECT_EQ(h->FindFractionalBin(0.25f), 1);  // ceil(2.5): the 3rd entry
  EXPECT_EQ(h->FindFractionalBin(0.05f), 0);  // ceil(0.5): the 1st entry
  EXPECT_EQ(h->FindFractionalBin(1.0f), 3);
  EXPECT_EQ(h->FindFractionalBin(2.0f), 3);  // never reached: every bin added
  EXPECT_EQ(h->FindFractionalBin(0.0f), -1);

  EXPECT_EQ(MakeHistogram({2, 0, 0, 2})->FindMedianBin(), 0);  // empty bins after the target are not added
  EXPECT_EQ(MakeHistogram({0, 0, 0})->FindMedianBin(), -1);
  EXPECT_EQ(SmartPointer<HistogramStructure>::New()->FindMedianBin(), -1);
}

TEST(HistogramStructure, EntropyInNats) {
  const double ln2 = 0.6931471805599453;
  EXPECT_NEAR(MakeHistogram({0, 2, 0, 2})->GetEntropy(), ln2, 1e-6);
  EXPECT_NEAR(MakeHistogram({3, 3, 3, 3})->GetEntropy(), 2 * ln2, 1e-6);
  EXPECT_NEAR(MakeHistogram({1, 3})->GetEntropy(), 0.5623351446188083, 1e-6);  // ln 4 - 3/4 ln 3
  EXPECT_EQ(MakeHistogram({0, 0})->GetEntropy(), 0.0);
}

TEST(HistogramStructure, SmoothOneTwoOneWithTruncatingIntegerEnds) {
  auto h = MakeHistogram({4, 0, 4});
  ASSERT_EQ(h->Smooth(), VEK_SUCCESS);
  EXPECT_EQ(CountsOf(*h), (Counts{2, 2, 2}));  // 8/3, 8/4, 8/3
  EXPECT_EQ(h->GetNumEntries(), 8);            // the entries added, not the smoothed total

  // 18/3, 16/4, 15/4, 11/4, 5/3: each from the counts before smoothing.
  h = MakeHistogram({9, 0, 7, 1, 2});
  ASSERT_EQ(h->Smooth(), VEK_SUCCESS);
  EXPECT_EQ(CountsOf(*h), (Counts{6, 4, 3, 2, 1}));

  h = MakeHistogram({5});  // 10/3
  ASSERT_EQ(h->Smooth(), VEK_SUCCESS);
  EXPECT_EQ(CountsOf(*h), (Counts{3}));
  EXPECT_EQ(h->GetNumEntries(), 5);
}

}  // namespace
}  // namespace vek
