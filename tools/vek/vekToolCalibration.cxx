// vek warp CALIBRATION_DIR OUT_DIR and vek demo [OUT_DIR]: the calibration path, on measured
// spot grids or on a made-up wall judged against its ground truth.
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <memory>
#include <optional>
#include <sstream>
#include <string>

#include "vekCalibrationDemo.h"
#include "vekCalibrationOptions.h"
#include "vekConfigurationDatabase.h"
#include "vekPlatform.h"
#include "vekSmartPointer.h"
#include "vekTool.h"
#include "vekWarpCalibration.h"

namespace vek::tool {

namespace {

struct WarpArguments {
  std::string CalibrationDir, OutDir, Svg;
  std::optional<int> Step;
  std::optional<double> Gamma;
  bool PngAlpha = false;
};

struct DemoArguments {
  std::string OutDir = "vek-demo";
  double Noise = SyntheticWall::Parameters().NoiseSigma;
};

// Progress on standard error, for a person watching a terminal; nothing for a file or a pipe.
WarpCalibration::ProgressFunction TerminalProgress() {
  if (!platform::IsStandardErrorTerminal()) return {};
  return [](const std::string& stage, int done, int total) {
    std::cerr << "\r" << stage << " " << done << "/" << total << "      " << (done == total ? "\n" : "") << std::flush;
  };
}

void PrintSummary(const WarpCalibration& run, const std::string& outDir) {
  std::ostringstream text;
  text << std::fixed;
  for (int p = 0; p < run.GetNumberOfProjectors(); ++p) {
    const ProjectorFootprint& footprint = *run.GetFootprint(p);
    std::string neighbors;
    for (int q : run.GetNeighbors(p)) neighbors += (neighbors.empty() ? "" : " ") + std::to_string(q);
    text << "projector " << p << ": coverage " << std::setprecision(1) << 100 * run.GetCoverage(p) << "%, neighbours "
         << (neighbors.empty() ? "none" : neighbors) << ", spots " << footprint.GetNumberOfFoundSpots() << " found "
         << footprint.GetNumberOfFilledSpots() << " filled, residual max " << std::setprecision(3)
         << footprint.GetResidualMax() << " RMS " << footprint.GetResidualRMS() << " camera px, "
         << run.GetWarp(p)->GetNumPoints() << " vertices\n";
  }
  text << "warps, connectivity and summary in " << outDir << "\n";
  std::cout << text.str();
}

int Warp(const WarpArguments& a) {
  auto store = SmartPointer<ConfigurationDatabase>::New();
  CalibrationSettings defaults;
  int status = store->LoadOptionsDatabase();
  if (status == 0) status = CalibrationOptions::Load(*store, defaults);
  if (status != 0) return Report(status);
  CalibrationSettingOverrides overrides;
  overrides.WarpStep = a.Step;
  overrides.BlendGamma = a.Gamma;
  SmartPointer<WarpCalibration> run;
  status = WarpCalibration::Run(a.CalibrationDir, a.OutDir, defaults, overrides, &run, TerminalProgress());
  if (status == 0 && !a.Svg.empty()) status = run->WriteCameraView(a.Svg);
  if (status == 0 && a.PngAlpha) status = run->WriteAlphaMaps(a.OutDir);
  if (status != 0) return Report(status);
  PrintSummary(*run, a.OutDir);
  return kSuccess;
}

int Demo(const DemoArguments& a) {
  SyntheticWall::Parameters wall;
  wall.NoiseSigma = a.Noise;
  CalibrationAccuracy::Result accuracy;
  SmartPointer<WarpCalibration> run;
  const int status = CalibrationDemo::Run(a.OutDir, wall, CalibrationSettings(), accuracy, &run, TerminalProgress());
  if (status != 0) return Report(status);
  const std::filesystem::path out(a.OutDir);
  std::cout << "A wall of " << wall.Columns << " x " << wall.Rows << " projectors of " << wall.ProjectorWidth << " x "
            << wall.ProjectorHeight << ", " << wall.SpotColumns << " x " << wall.SpotRows
            << " spots each, detection noise " << a.Noise << " camera px\n"
            << "calibration folder: " << (out / CalibrationDemo::kCalibrationFolder).string() << "\n";
  PrintSummary(*run, (out / CalibrationDemo::kWarpFolder).string());
  std::cout << "pictures: " << (out / CalibrationDemo::kCameraViewFile).string() << ", "
            << (out / CalibrationDemo::kWarpFolder / "projector_*_alpha.png").string() << "\n\n";
  std::ostringstream report;
  CalibrationAccuracy::PrintReport(report, accuracy);
  std::cout << report.str();
  return accuracy.Passed() ? kSuccess : Fail("the demo missed an accuracy target");
}

}  // namespace

void AddCalibrationCommands(Commands& commands) {
  auto warp = std::make_shared<WarpArguments>();
  CLI::App* warpCommand = commands.Add(commands.GetRoot(), "warp",
                                       "Compute every projector's warp and blend from a calibration folder.",
                                       [warp] { return Warp(*warp); });
  warpCommand->add_option("CALIBRATION_DIR", warp->CalibrationDir, "The calibration folder (see the README).")
      ->required();
  warpCommand->add_option("OUT_DIR", warp->OutDir, "Where the warps go; created when missing.")->required();
  warpCommand->add_option("--step", warp->Step, "Warp grid step in projector pixels (default 32).")
      ->check(CLI::Range(1, 1 << 20));
  warpCommand->add_option("--gamma", warp->Gamma, "Blend gamma (default 2.2).")->check(CLI::Range(1e-6, 10.0));
  warpCommand->add_option("--svg", warp->Svg, "Also draw the camera's view into this SVG file.");
  warpCommand->add_flag("--png-alpha", warp->PngAlpha,
                        "Also write each projector's alpha map, projector_<k>_alpha.png, into OUT_DIR.");
  warpCommand->footer(
      "Writes projector_<k>.warp (the warp mesh files), connectivity.txt and summary.txt into OUT_DIR,\n"
      "each replaced in one step once everything is computed: a failed run leaves earlier outputs.\n"
      "Settings come from the built-in defaults, then the option store (CalibrationBlendGamma,\n"
      "CalibrationWarpStep, CalibrationContentWidth, CalibrationContentHeight), then the calibration\n"
      "folder, then --step and --gamma.");

  auto demo = std::make_shared<DemoArguments>();
  CLI::App* demoCommand = commands.Add(
      commands.GetRoot(), "demo", "Calibrate a made-up wall of 3 x 2 projectors and judge the result.",
      [demo] { return Demo(*demo); });
  demoCommand->add_option("OUT_DIR", demo->OutDir, "Where the demo's files go (default ./vek-demo).");
  demoCommand->add_option("--noise", demo->Noise, "Spot detection noise in camera pixels (default 0.1; 0: exact).")
      ->check(CLI::Range(0.0, 10.0));
  demoCommand->footer(
      "Writes the wall as a calibration folder (OUT_DIR/calibration), runs warp on it into\n"
      "OUT_DIR/warps with pictures, and prints the accuracy against the wall's ground truth.\n"
      "Exit status 1 when a target is missed.");
}

}  // namespace vek::tool
