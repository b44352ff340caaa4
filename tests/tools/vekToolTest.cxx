#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "vekPlatform.h"
#include "vekSmartPointer.h"
#include "vekTestSupport.h"
#include "vekTextureMesh.h"
#include "vekVersion.h"

namespace vek {
namespace {

struct Outcome {
  int status = -1;
  std::string out, err;
};

// Runs the built tool in a base folder of its own, with `input` on standard input.
class ToolTest : public ::testing::Test {
 protected:
  void SetUp() override {
    if (std::string(VEK_TOOL_PROGRAM).empty()) GTEST_SKIP() << "the tool is not built";
    platform::SetEnvironmentValue("VEK_BASE_DIR", Base.Path().string());
  }
  void TearDown() override { platform::SetEnvironmentValue("VEK_BASE_DIR", PreviousBase); }

  // Arguments are quoted for both command interpreters, so they hold no quotes, "$" or "%".
  Outcome Run(const std::vector<std::string>& arguments, const std::string& input = "") {
    test::WriteFile(Files.File("in"), input);
    std::string line;
    for (const std::string& a : arguments) line += " \"" + a + "\"";
    line += " <\"" + Files.File("in") + "\" >\"" + Files.File("out") + "\" 2>\"" + Files.File("err") + "\"";
#ifdef _WIN32
    // cmd drops the first and last quote of a line with more than two, hence the outer pair. The
    // "call" of ShellCommandForProgram would do as well, but under Wine it turns every failing
    // exit status into 1.
    line = "\"\"" + std::string(VEK_TOOL_PROGRAM) + "\"" + line + "\"";
#else
    line = platform::ShellCommandForProgram(VEK_TOOL_PROGRAM) + line;
#endif
    const int status = std::system(line.c_str());
    // POSIX gives the wait status (exit status in bits 8 to 15, a signal below), Windows the exit
    // status itself: the tool's statuses are below 256 either way, and a crash matches none.
    return {status >= 256 ? status >> 8 : status, Lines(Files.File("out")), Lines(Files.File("err"))};
  }

  // The file's text with Windows line ends read as plain ones.
  static std::string Lines(const std::string& file) {
    std::string text = test::ReadFile(file);
    for (std::size_t at = text.find("\r\n"); at != std::string::npos; at = text.find("\r\n", at)) text.erase(at, 1);
    return text;
  }

  std::string PreviousBase = platform::EnvironmentVariable("VEK_BASE_DIR");
  test::TempDirectory Base, Files;
};

TEST_F(ToolTest, HelpExitsZeroAndUsageErrorsTwo) {
  for (const char* command : {"", "version", "error", "option", "option get", "option set", "option list", "lens",
                              "lens undistort", "lens distort", "mesh", "mesh info"}) {
    std::vector<std::string> arguments;
    std::istringstream words(command);
    for (std::string word; words >> word;) arguments.push_back(word);
    arguments.push_back("--help");
    Outcome help = Run(arguments);
    EXPECT_EQ(help.status, 0) << command;
    EXPECT_NE(help.out.find("Usage: vek" + std::string(*command ? " " : "") + command), std::string::npos)
        << help.out;
  }
  for (const std::vector<std::string>& wrong :
       {std::vector<std::string>{}, {"version", "extra"}, {"error", "79", "--language", "xx"}, {"error"},
        {"option"}, {"option", "get"}, {"option", "list", "--every"}, {"lens", "undistort"}, {"frobnicate"}}) {
    Outcome usage = Run(wrong);
    EXPECT_EQ(usage.status, 2) << ::testing::PrintToString(wrong);
    EXPECT_EQ(usage.out, "");
    EXPECT_EQ(usage.err.rfind("vek: ", 0), 0u) << usage.err;
  }
  EXPECT_EQ(Run({"version"}).out, std::string("vek ") + VEK_VERSION_STRING + "\n");
}

TEST_F(ToolTest, ErrorShowsCodesAndExplainsTheCustomMessageFlag) {
  Outcome plain = Run({"error", "79"});
  EXPECT_EQ(plain.status, 0);
  EXPECT_EQ(plain.out, "VEK_FILE_NOT_FOUND (79): File Not Found\n");
  EXPECT_EQ(Run({"error", "0x4f"}).out, plain.out);
  EXPECT_EQ(Run({"error", "79", "--language", "de"}).out, "VEK_FILE_NOT_FOUND (79): Datei nicht gefunden\n");
  Outcome flagged = Run({"error", "32847"});
  EXPECT_EQ(flagged.status, 0);
  EXPECT_EQ(flagged.out.rfind(plain.out + "32847 is 79 with the custom-message flag (32768)", 0), 0u) << flagged.out;

  const std::vector<std::pair<std::string, std::string>> refused = {
      {"32768", "32768 is no status code: it would be VEK_SUCCESS (0) with the custom-message flag"},
      {"40000", "40000 is no status code: it would be 7232 with the custom-message flag (32768), and 7232 is no code"},
      {"2", "2 is no status code\n"},
      {"65536", "65536 is no status code: codes are 0 to 32767"},
      {"-1", "-1 is no status code"},
      {"79x", "CODE: \"79x\" is no number"}};
  for (const auto& [code, message] : refused) {
    Outcome o = Run({"error", code});
    EXPECT_EQ(o.status, 2) << code;
    EXPECT_EQ(o.err.rfind("vek: " + message, 0), 0u) << o.err;
  }
}

TEST_F(ToolTest, OptionsAreCheckedListedAndMissingOnesFail) {
  Outcome missing = Run({"option", "get", "NoSuchKey"});
  EXPECT_EQ(missing.status, 1);
  EXPECT_EQ(missing.out, "");
  EXPECT_EQ(missing.err, "vek: no option file sets or describes NoSuchKey\n");

  const std::vector<std::vector<std::string>> refused = {
      {"Gain", "Float", "abc", "\"abc\" is no Float"},
      {"I", "Int", "3.5", "\"3.5\" is no Int"},
      {"D", "Double", "1e400", "\"1e400\" is beyond the Double range"},
      {"L", "FloatArray", "1,2,3",
       "\"1,2,3\" is no FloatArray: element \"1,2,3\" is no Float (elements are separated by blanks)"},
      {"T", "Number", "1", "\"Number\" is no option type"}};
  for (const auto& r : refused) {
    Outcome o = Run({"option", "set", r[0], r[1], r[2]});
    EXPECT_EQ(o.status, 1) << r[2];
    EXPECT_EQ(o.err.rfind("vek: VEK_INVALID_PARAMETERS: " + r[3], 0), 0u) << o.err;
  }
  EXPECT_EQ(Run({"option", "list", "--all"}).out, "");  // nothing refused was written

  EXPECT_EQ(Run({"option", "set", "Gain", "Float", "0.75"}).status, 0);
  EXPECT_EQ(Run({"option", "set", "L", "FloatArray", "1 2 3"}).status, 0);
  EXPECT_EQ(Run({"option", "set", "Offset", "Int", "-7"}).status, 0);
  Outcome retyped = Run({"option", "set", "Offset", "Float", "2"});
  EXPECT_EQ(retyped.status, 1);
  EXPECT_EQ(retyped.err, "vek: VEK_INVALID_PARAMETERS: Offset is described as Int, not Float\n");
  EXPECT_EQ(Run({"option", "get", "Offset"}).out, "-7\n");
  EXPECT_EQ(Run({"option", "list"}).out, "Gain\tFloat\t0.75\nL\tFloatArray\t1 2 3\nOffset\tInt\t-7\n");

  test::WriteFile(Base.File("Config/KOROptionDefaults.txt"), "Factory = 5\n");
  EXPECT_EQ(Run({"option", "get", "Factory"}).out, "5\n");
  EXPECT_EQ(Run({"option", "list", "--all"}).out,
            "Gain\tFloat\t0.75\tset\nL\tFloatArray\t1 2 3\tset\nOffset\tInt\t-7\tset\nFactory\tUnknown\t5\tdefault\n");
}

TEST_F(ToolTest, LensCommandsUndoEachOther) {
  // Radial: 640 x 480, centre in the middle, scaled k1 -0.1 and k2 0.01.
  const std::string lens = Files.File("lens.txt");
  test::WriteFile(lens, "7 1.1 640 480 0 0 -0.1 0.01 \n");
  const std::vector<std::pair<float, float>> points = {{10, 20}, {600.25f, 470}, {-5, -5}, {320.5f, 100}, {1e-3f, 0}};
  std::string input;
  for (const auto& [x, y] : points) input += std::to_string(x) + " " + std::to_string(y) + "\r\n";

  Outcome undistorted = Run({"lens", "undistort", lens}, input);
  ASSERT_EQ(undistorted.status, 0) << undistorted.err;
  Outcome back = Run({"lens", "distort", lens}, undistorted.out);
  ASSERT_EQ(back.status, 0) << back.err;
  std::istringstream moved(undistorted.out), restored(back.out);
  for (const auto& [x, y] : points) {
    float mx = 0, my = 0, rx = 0, ry = 0;
    ASSERT_TRUE(moved >> mx >> my);
    ASSERT_TRUE(restored >> rx >> ry);
    if (x == -5 && y == -5) {
      EXPECT_EQ(mx, -5);  // the missing-point mark passes unchanged
      EXPECT_EQ(my, -5);
    } else {
      EXPECT_GT(std::hypot(mx - x, my - y), 0.01f);  // the lens does move it
    }
    EXPECT_NEAR(rx, x, 1e-3f);
    EXPECT_NEAR(ry, y, 1e-3f);
  }

  Outcome malformed = Run({"lens", "distort", lens}, "1 2\n3\n");
  EXPECT_EQ(malformed.status, 1);
  EXPECT_EQ(malformed.out, "");
  EXPECT_EQ(malformed.err, "vek: standard input, line 2: expected \"x y\", found \"3\"\n");
  Outcome noLens = Run({"lens", "undistort", Files.File("none.txt")});
  EXPECT_EQ(noLens.status, 1);
  EXPECT_EQ(noLens.err, "vek: VEK_FILE_NOT_FOUND: File Not Found: " + Files.File("none.txt") + "\n");
}

TEST_F(ToolTest, MeshInfoSummarisesAWrittenMesh) {
  auto mesh = SmartPointer<TextureMesh>::New();
  mesh->SetNumPoints(4);
  mesh->SetNumTriangles(2);
  ASSERT_EQ(mesh->Allocate(), 0);
  mesh->AddPoint(0, 0, 0, 0, 0, 1);
  mesh->AddPoint(1, 1920, 1080, 1, 1, 0.5f);
  mesh->AddPoint(2, 1920, -12.5f, 1, 0, 0.125f);
  // Vertex 3 stays unset (-5, -5) and out of the bounds.
  mesh->AddTriangle(0, 0, 1, 2);
  mesh->AddTriangle(1, 3, 2, 1);
  mesh->SetMapping(TextureMesh::PIXELS);
  mesh->SetTextureType(TextureMesh::ANISOTROPIC);
  mesh->SetAnisotropy(16);
  std::ostringstream written;
  mesh->Serialize(written);
  const std::string file = Files.File("warp.txt");
  test::WriteFile(file, written.str());

  // The file holds y = 1080 as 1033.004 in six digits, "1033": it reads back as 1079.996.
  Outcome info = Run({"mesh", "info", file});
  EXPECT_EQ(info.status, 0) << info.err;
  EXPECT_EQ(info.out,
            "vertices: 4\nfaces: 2\nmapping: PIXELS\nsampling: ANISOTROPIC 16\n"
            "xy bounds: 0 -12.5 .. 1920 1079.996\nuv bounds: 0 0 .. 1 1\nalpha range: 0 .. 1\n");

  test::WriteFile(file, written.str().substr(0, written.str().size() - 4));
  Outcome damaged = Run({"mesh", "info", file});
  EXPECT_EQ(damaged.status, 1);
  EXPECT_EQ(damaged.err, "vek: VEK_FILE_NOT_FORMATTED_PROPERLY: " + file +
                             ", line 10: the last line has no line end: the input is cut short\n");
}

}  // namespace
}  // namespace vek
