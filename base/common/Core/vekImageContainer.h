#pragma once
#include <cstdint>
#include <vector>

#include "vekObject.h"

namespace vek {

/// One image that an error can carry along: 8 or 16 bits per channel, 1 (grey) or 3 (RGB)
/// interleaved channels, rows top to bottom, and the gamma the pixel values were taken with.
class VEK_EXPORT ImageContainer : public Object {
 public:
  static constexpr double kLinearGamma = 1.0;

  static ImageContainer* New();
  const char* GetClassName() const override { return "ImageContainer"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  /// Sizes the image and zeroes it; VEK_INVALID_PARAMETERS for a negative size, a channel count
  /// other than 1 or 3 or a depth other than 8 or 16 (the image is then left as it was).
  int Allocate(int width, int height, int channels, int bitsPerChannel);
  int GetWidth() const { return Width; }
  int GetHeight() const { return Height; }
  int GetNumberOfChannels() const { return Channels; }
  int GetBitsPerChannel() const { return BitsPerChannel; }
  void SetGamma(double gamma) { Gamma = gamma; }
  double GetGamma() const { return Gamma; }

  /// The sample of channel c at (x, y), widened to 16 bits; no bounds check.
  std::uint16_t GetValue(int x, int y, int c) const;
  void SetValue(int x, int y, int c, std::uint16_t value);
  /// The raw sample block (8-bit images: one byte per sample; 16-bit: two, native order).
  std::uint8_t* GetData8() { return Data8.data(); }
  std::uint16_t* GetData16() { return Data16.data(); }

 protected:
  ImageContainer() = default;
  ~ImageContainer() override = default;

 private:
  std::size_t SampleIndex(int x, int y, int c) const;

  int Width = 0;
  int Height = 0;
  int Channels = 1;
  int BitsPerChannel = 8;
  double Gamma = kLinearGamma;
  std::vector<std::uint8_t> Data8;
  std::vector<std::uint16_t> Data16;
};

}  // namespace vek
