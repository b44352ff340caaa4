#include "vekImageContainer.h"

#include <new>

#include "vekErrorCodes.h"

namespace vek {

ImageContainer* ImageContainer::New() { return new ImageContainer; }

int ImageContainer::Allocate(int width, int height, int channels, int bitsPerChannel) {
  if (width < 0 || height < 0 || (channels != 1 && channels != 3) || (bitsPerChannel != 8 && bitsPerChannel != 16))
    return VEK_INVALID_PARAMETERS;
  std::size_t samples = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * channels;
  try {
    std::vector<std::uint8_t> data8(bitsPerChannel == 8 ? samples : 0);
    std::vector<std::uint16_t> data16(bitsPerChannel == 16 ? samples : 0);
    Data8.swap(data8);
    Data16.swap(data16);
  } catch (const std::bad_alloc&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  Width = width;
  Height = height;
  Channels = channels;
  BitsPerChannel = bitsPerChannel;
  return VEK_SUCCESS;
}

std::size_t ImageContainer::SampleIndex(int x, int y, int c) const {
  return (static_cast<std::size_t>(y) * Width + x) * Channels + c;
}

std::uint16_t ImageContainer::GetValue(int x, int y, int c) const {
  return BitsPerChannel == 8 ? Data8[SampleIndex(x, y, c)] : Data16[SampleIndex(x, y, c)];
}

void ImageContainer::SetValue(int x, int y, int c, std::uint16_t value) {
  if (BitsPerChannel == 8)
    Data8[SampleIndex(x, y, c)] = static_cast<std::uint8_t>(value);
  else
    Data16[SampleIndex(x, y, c)] = value;
}

void ImageContainer::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "Width: " << Width << "\n";
  os << indent << "Height: " << Height << "\n";
  os << indent << "Channels: " << Channels << "\n";
  os << indent << "BitsPerChannel: " << BitsPerChannel << "\n";
  os << indent << "Gamma: " << Gamma << "\n";
}

}  // namespace vek
