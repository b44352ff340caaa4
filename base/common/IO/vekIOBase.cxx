#include "vekIOBase.h"

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <new>

#include "vekCustomLanguageString.h"
#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekFileContents.h"
#include "vekRectilinearGrid.h"

namespace vek {

namespace {

void DropCarriageReturn(std::string& line) {
  if (!line.empty() && line.back() == '\r') line.pop_back();
}

bool IsRelevant(const char* buffer) {
  if (buffer[0] == '\0' || buffer[0] == '#') return false;
  for (const char* c = buffer; *c; ++c)
    if (*c != ' ') return true;
  return false;
}

constexpr int kRawGridBytes = 24;

void PutLittleEndian(std::uint32_t bits, unsigned char* bytes) {
  for (int k = 0; k < 4; ++k) bytes[k] = static_cast<unsigned char>(bits >> (8 * k));
}

std::uint32_t GetLittleEndian(const unsigned char* bytes) {
  std::uint32_t bits = 0;
  for (int k = 0; k < 4; ++k) bits |= static_cast<std::uint32_t>(bytes[k]) << (8 * k);
  return bits;
}

template <class Value>
void PutValue(Value value, unsigned char* bytes) {
  static_assert(sizeof(Value) == 4);
  std::uint32_t bits;
  std::memcpy(&bits, &value, 4);
  PutLittleEndian(bits, bytes);
}

template <class Value>
Value GetValue(const unsigned char* bytes) {
  static_assert(sizeof(Value) == 4);
  const std::uint32_t bits = GetLittleEndian(bytes);
  Value value;
  std::memcpy(&value, &bits, 4);
  return value;
}

}  // namespace

IOBase* IOBase::New() { return new (std::nothrow) IOBase; }

void IOBase::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "FileName: " << FileName << "\n";
}

int IOBase::OpenFileForWriting(std::ofstream*& out, const std::string& name) {
  out = new (std::nothrow) std::ofstream(name, std::ios::out | std::ios::trunc);
  if (out && out->good()) return VEK_SUCCESS;
  delete out;
  out = nullptr;
  return ErrorHelper::ErrorWithCustomMessage(
      VEK_UNABLE_TO_OPEN_FILE_FOR_WRITING, CustomLanguageString("VEK_UNABLE_TO_OPEN_FILE_FOR_WRITING_CUSTOM") << name);
}

int IOBase::ReplaceFile(const std::string& name, const std::string& content) {
  return FileContents::Replace(name, content);
}

int IOBase::ReplaceTextFile(const std::string& name, const std::string& text) {
  return FileContents::ReplaceText(name, text);
}

int IOBase::OpenFileForReading(std::ifstream*& in, const std::string& name) {
  in = nullptr;
  std::error_code ignored;
  if (name.empty() || !std::filesystem::exists(name, ignored))
    return ErrorHelper::ErrorWithCustomMessage(VEK_FILE_NOT_FOUND, CustomLanguageString("VEK_FILE_NOT_FOUND_CUSTOM")
                                                                       << name);
  // A directory exists but opens as an empty, unreadable stream on some platforms.
  if (!std::filesystem::is_directory(name, ignored)) {
    in = new (std::nothrow) std::ifstream(name, std::ios::in | std::ios::binary);
    if (in && in->good()) return VEK_SUCCESS;
  }
  delete in;
  in = nullptr;
  return ErrorHelper::ErrorWithCustomMessage(
      VEK_UNABLE_TO_OPEN_FILE_FOR_READING, CustomLanguageString("VEK_UNABLE_TO_OPEN_FILE_FOR_READING_CUSTOM") << name);
}

int IOBase::ReadLine(std::istream* in, char* buffer) {
  if (!buffer) return VEK_FILE_NOT_FORMATTED_PROPERLY;
  buffer[0] = '\0';
  if (!in) return VEK_FILE_NOT_FORMATTED_PROPERLY;
  in->getline(buffer, kLineBufferSize);
  // A full buffer stops getline just before the CR of a CR LF line end: the line still fits.
  if (in->fail() && !in->bad() && !in->eof() && std::strlen(buffer) == kLineBufferSize - 1) {
    in->clear();
    if (in->peek() == '\r') {
      in->get();
      if (in->peek() == '\n') {
        in->get();
        return VEK_SUCCESS;
      }
    }
    in->setstate(std::ios::failbit);
  }
  if (in->fail() || in->eof()) return VEK_FILE_NOT_FORMATTED_PROPERLY;
  const size_t length = std::strlen(buffer);
  if (length > 0 && buffer[length - 1] == '\r') buffer[length - 1] = '\0';
  return VEK_SUCCESS;
}

int IOBase::ReadLineIgnoreIrrelevantLines(std::istream* in, char* buffer) {
  if (!buffer) return VEK_FILE_NOT_FORMATTED_PROPERLY;
  buffer[0] = '\0';
  while (!IsRelevant(buffer))
    if (ReadLine(in, buffer) != VEK_SUCCESS) return VEK_FILE_NOT_FORMATTED_PROPERLY;
  return VEK_SUCCESS;
}

int IOBase::ReadLineIgnoreIrrelevantLines(std::istream* in, std::string& line) {
  line.clear();
  if (!in) return VEK_FILE_NOT_FORMATTED_PROPERLY;
  while (line.empty() || line[0] == '#') {
    try {
      std::getline(*in, line);
    } catch (...) {  // a line too long for memory
      in->setstate(std::ios::failbit);
    }
    if (in->fail() || in->eof()) {
      line.clear();
      return VEK_FILE_NOT_FORMATTED_PROPERLY;
    }
    DropCarriageReturn(line);
  }
  return VEK_SUCCESS;
}

int IOBase::ReadLineWithSingleValue(std::istream& in, const std::string& key, const std::string& delimiters,
                                    std::string& value) {
  std::string line;
  const int status = ReadLineIgnoreIrrelevantLines(&in, line);
  if (status != VEK_SUCCESS) return status;
  // Runs of delimiters separate tokens; only the first two tokens matter.
  std::string tokens[2];
  int found = 0;
  size_t position = line.find_first_not_of(delimiters);
  while (found < 2 && position != std::string::npos) {
    const size_t end = line.find_first_of(delimiters, position);
    tokens[found++] = line.substr(position, end == std::string::npos ? std::string::npos : end - position);
    position = end == std::string::npos ? end : line.find_first_not_of(delimiters, end);
  }
  if (found < 2 || tokens[0] != key) return VEK_FILE_NOT_FORMATTED_PROPERLY;
  value = tokens[1];
  return VEK_SUCCESS;
}

int IOBase::WriteRectilinearGrid(std::ostream* out, const char* label, const RectilinearGrid& grid, const int& raw) {
  if (!out) return VEK_UNABLE_TO_WRITE_TO_STREAM;
  *out << (label ? label : "") << "\n";
  if (raw) {
    unsigned char bytes[kRawGridBytes];
    PutValue(grid.GetOffsetx(), bytes);
    PutValue(grid.GetOffsety(), bytes + 4);
    PutValue(grid.GetSpacex(), bytes + 8);
    PutValue(grid.GetSpacey(), bytes + 12);
    PutValue(grid.GetNumx(), bytes + 16);
    PutValue(grid.GetNumy(), bytes + 20);
    out->write(reinterpret_cast<const char*>(bytes), kRawGridBytes);
  } else {
    *out << grid.GetOffsetx() << " " << grid.GetOffsety() << " " << grid.GetSpacex() << " " << grid.GetSpacey() << " "
         << grid.GetNumx() << " " << grid.GetNumy() << " "
         << "\n";
  }
  return out->fail() ? VEK_UNABLE_TO_WRITE_TO_STREAM : VEK_SUCCESS;
}

int IOBase::ReadRectilinearGrid(std::istream* in, const char* label, const int& raw, RectilinearGrid& grid) {
  char buffer[kLineBufferSize];
  if (ReadLineIgnoreIrrelevantLines(in, buffer) != VEK_SUCCESS) return VEK_FILE_NOT_FORMATTED_PROPERLY;
  if (label && !std::strstr(buffer, label)) return VEK_FILE_NOT_FORMATTED_PROPERLY;
  float offsetx, offsety, spacex, spacey;
  int numx, numy;
  if (raw) {
    unsigned char bytes[kRawGridBytes];
    in->read(reinterpret_cast<char*>(bytes), kRawGridBytes);
    if (in->gcount() != kRawGridBytes) return VEK_UNABLE_TO_READ_NUM_FROM_FILE;
    offsetx = GetValue<float>(bytes);
    offsety = GetValue<float>(bytes + 4);
    spacex = GetValue<float>(bytes + 8);
    spacey = GetValue<float>(bytes + 12);
    numx = GetValue<int>(bytes + 16);
    numy = GetValue<int>(bytes + 20);
  } else if (!(*in >> offsetx >> offsety >> spacex >> spacey >> numx >> numy)) {
    return VEK_UNABLE_TO_READ_NUM_FROM_FILE;
  }
  grid.SetOffsetx(offsetx);
  grid.SetOffsety(offsety);
  grid.SetSpacex(spacex);
  grid.SetSpacey(spacey);
  grid.SetNumx(numx);
  grid.SetNumy(numy);
  return VEK_SUCCESS;
}

}  // namespace vek
