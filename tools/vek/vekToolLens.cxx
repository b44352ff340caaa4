// vek lens undistort|distort LENSFILE: camera points through a lens file, standard input to
// standard output.
#include <charconv>
#include <cmath>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "vekLensWarp.h"
#include "vekLensWarpIO.h"
#include "vekSmartPointer.h"
#include "vekTool.h"
#include "vekVec2.h"

namespace vek::tool {

namespace {

bool ParseCoordinate(std::string_view text, float& value) {
  if (text.size() > 1 && text[0] == '+') text.remove_prefix(1);
  const char* end = text.data() + text.size();
  auto [ptr, error] = std::from_chars(text.data(), end, value);
  return error == std::errc() && ptr == end && std::isfinite(value);
}

// One "x y" line: two numbers separated by blanks or tabs, nothing else.
bool ParsePoint(std::string_view line, vec2<float>& p) {
  const std::string_view blanks = " \t";
  std::string_view parts[2];
  int count = 0;
  for (std::size_t at = line.find_first_not_of(blanks); at != std::string_view::npos;
       at = line.find_first_not_of(blanks, at)) {
    const std::size_t end = std::min(line.find_first_of(blanks, at), line.size());
    if (count == 2) return false;
    parts[count++] = line.substr(at, end - at);
    at = end;
  }
  return count == 2 && ParseCoordinate(parts[0], p.x) && ParseCoordinate(parts[1], p.y);
}

int Run(const std::string& lensFile, bool undistort) {
  SmartPointer<LensWarp> warp;
  int status = LensWarpIO::ReadFromFile(lensFile.c_str(), warp);
  if (status != 0) return Report(status);

  std::vector<vec2<float>> points;
  std::string line;
  for (int number = 1; std::getline(std::cin, line); ++number) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    vec2<float> p;
    if (!ParsePoint(line, p))
      return Fail("standard input, line " + std::to_string(number) + ": expected \"x y\", found \"" +
                  line.substr(0, 60) + "\"");
    points.push_back(p);
  }
  const unsigned int count = static_cast<unsigned int>(points.size());
  if (undistort)
    warp->InplaceInvertArray(points.data(), count);
  else
    warp->InplaceForwardArray(points.data(), count);

  std::string text;
  for (const vec2<float>& p : points) text += FloatText(p.x) + " " + FloatText(p.y) + "\n";
  std::cout << text;
  return kSuccess;
}

}  // namespace

void AddLensCommands(Commands& commands) {
  auto lensFile = std::make_shared<std::string>();
  CLI::App* lens = commands.AddGroup(commands.GetRoot(), "lens", "Map camera points through a lens file.");
  lens->footer(
      "Points come on standard input, one \"x y\" per line (camera pixels), and leave on standard\n"
      "output in the same order, each number in the fewest digits that read back as the same float.\n"
      "The point -5 -5 marks a missing point and passes unchanged. A line that is not two numbers\n"
      "stops the command (exit status 1, naming the line) before anything is written.");
  struct Direction {
    const char* name;
    const char* description;
    bool undistort;
  };
  for (const Direction& d : {Direction{"undistort", "Distorted camera points to undistorted (pinhole) ones.", true},
                             Direction{"distort", "Undistorted (pinhole) points to distorted camera points.", false}}) {
    const bool undistort = d.undistort;
    CLI::App* command =
        commands.Add(*lens, d.name, d.description, [lensFile, undistort] { return Run(*lensFile, undistort); });
    command->add_option("LENSFILE", *lensFile, "A lens file, as the library writes them.")->required();
  }
}

}  // namespace vek::tool
