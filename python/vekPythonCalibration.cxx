// The calibration path: a calibration folder to every projector's warp and blend, and the
// demonstration on a made-up wall. Both are one library call each; this file only passes the
// arguments and turns the results into dicts.
#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

#include <filesystem>
#include <optional>
#include <sstream>
#include <string>

#include "vekCalibrationAccuracy.h"
#include "vekCalibrationDemo.h"
#include "vekCalibrationOptions.h"
#include "vekConfigurationDatabase.h"
#include "vekPython.h"
#include "vekSmartPointer.h"
#include "vekSyntheticWall.h"
#include "vekWarpCalibration.h"

namespace vek::python {

namespace {

py::dict SettingsDict(const CalibrationSettings& settings) {
  py::dict result;
  result["blend_gamma"] = settings.BlendGamma;
  result["warp_step"] = settings.WarpStep;
  result["content_width"] = settings.ContentWidth;
  result["content_height"] = settings.ContentHeight;
  return result;
}

// What summary.txt holds, plus where each warp went.
py::dict Summary(const WarpCalibration& run, const std::filesystem::path& outDir) {
  py::list projectors;
  for (int p = 0; p < run.GetNumberOfProjectors(); ++p) {
    const ProjectorFootprint& footprint = *run.GetFootprint(p);
    py::dict projector;
    projector["coverage"] = run.GetCoverage(p);
    projector["neighbours"] = run.GetNeighbors(p);
    projector["layer"] = run.GetConnectivity()->GetProjectorLayer(p);
    projector["spots_found"] = footprint.GetNumberOfFoundSpots();
    projector["spots_filled"] = footprint.GetNumberOfFilledSpots();
    projector["residual_max"] = footprint.GetResidualMax();
    projector["residual_rms"] = footprint.GetResidualRMS();
    projector["vertices"] = run.GetWarp(p)->GetNumPoints();
    projector["warp_file"] = (outDir / WarpCalibration::WarpFileName(p)).string();
    projectors.append(projector);
  }
  py::dict summary;
  summary["projectors"] = projectors;
  summary["settings"] = SettingsDict(run.GetSettings());
  summary["out_dir"] = outDir.string();
  return summary;
}

py::dict BuildWarps(const std::filesystem::path& calibrationDir, const std::filesystem::path& outDir,
                    std::optional<int> step, std::optional<double> gamma) {
  HeldObject::CheckRunning();
  auto store = SmartPointer<ConfigurationDatabase>::New();
  CalibrationSettings defaults;
  Check(store->LoadOptionsDatabase());
  Check(CalibrationOptions::Load(*store, defaults));
  CalibrationSettingOverrides overrides;
  overrides.WarpStep = step;
  overrides.BlendGamma = gamma;
  SmartPointer<WarpCalibration> run;
  int status;
  {
    py::gil_scoped_release unlocked;
    status = WarpCalibration::Run(calibrationDir.string(), outDir.string(), defaults, overrides, &run);
  }
  Check(status);
  return Summary(*run, outDir);
}

py::dict Demo(const std::filesystem::path& outDir, double noise) {
  HeldObject::CheckRunning();
  SyntheticWall::Parameters wall;
  wall.NoiseSigma = noise;
  CalibrationAccuracy::Result accuracy;
  SmartPointer<WarpCalibration> run;
  int status;
  {
    py::gil_scoped_release unlocked;
    status = CalibrationDemo::Run(outDir.string(), wall, CalibrationSettings(), accuracy, &run);
  }
  Check(status);
  py::dict result;
  result["content_error_max"] = accuracy.ContentErrorMax;
  result["content_error_rms"] = accuracy.ContentErrorRMS;
  result["content_vertices"] = accuracy.ContentVertices;
  result["content_target"] = accuracy.ContentTarget;
  result["blend_error_max"] = accuracy.BlendErrorMax;
  result["blend_error_rms"] = accuracy.BlendErrorRMS;
  result["blend_max_target"] = CalibrationAccuracy::kBlendMaxTarget;
  result["blend_rms_target"] = CalibrationAccuracy::kBlendRMSTarget;
  result["samples"] = accuracy.Samples;
  result["uncovered_samples"] = accuracy.UncoveredSamples;
  result["border_samples"] = accuracy.BorderSamples;
  result["content_passed"] = accuracy.ContentPassed();
  result["blend_passed"] = accuracy.BlendPassed();
  result["coverage_passed"] = accuracy.CoveragePassed();
  result["passed"] = accuracy.Passed();
  std::ostringstream report;
  CalibrationAccuracy::PrintReport(report, accuracy);
  result["report"] = report.str();
  result["calibration_dir"] = (outDir / CalibrationDemo::kCalibrationFolder).string();
  result["summary"] = Summary(*run, outDir / CalibrationDemo::kWarpFolder);
  return result;
}

}  // namespace

void AddCalibrationBindings(py::module_& m) {
  m.def("build_warps", &BuildWarps, py::arg("calibration_dir"), py::arg("out_dir"), py::arg("step") = py::none(),
        py::arg("gamma") = py::none(),
        R"(Computes every projector's warp and blend from a calibration folder, as `vek warp` does.

Args:
    calibration_dir: the calibration folder (calibration.txt, the lens file, the spot grids).
    out_dir: where projector_<k>.warp, connectivity.txt and summary.txt go (created when
        missing); each is replaced in one step once everything is computed.
    step: the warp grid step in projector pixels; None keeps the folder's, else the option
        store's (CalibrationWarpStep), else 32.
    gamma: the blend gamma; None keeps the folder's, else the option store's
        (CalibrationBlendGamma), else 2.2.

Returns the summary as a dict: "projectors", one dict per projector with "coverage" (the part
of the fill region it lights, 0..1), "neighbours" (projector numbers), "layer",
"spots_found", "spots_filled", "residual_max" and "residual_rms" (found spots against the
best-fitting homography, camera pixels), "vertices" and "warp_file"; "settings" (blend_gamma,
warp_step, content_width, content_height: the settings used); and "out_dir".

Raises vek.Error naming the file at fault, e.g. VEK_FILE_NOT_FOUND for a folder without
calibration.txt, VEK_TOO_FEW_SPOTS_FOUND, VEK_INVALID_PARAMETERS for settings out of range.
The GIL is released while it runs.)");
  m.def("demo", &Demo, py::arg("out_dir"), py::arg("noise") = SyntheticWall::Parameters().NoiseSigma,
        R"(Calibrates a made-up wall of 3 x 2 projectors and judges the result against its ground truth,
as `vek demo` does.

Args:
    out_dir: where the wall's calibration folder (calibration/), the warps (warps/) and the
        pictures go.
    noise: spot detection noise in camera pixels (0: exact spots).

Returns the accuracy report as a dict: "content_error_max", "content_error_rms" (projector
pixels) over "content_vertices" warp vertices against "content_target"; "blend_error_max",
"blend_error_rms" (|sum of alpha^gamma - 1|) against "blend_max_target", "blend_rms_target";
"samples", "uncovered_samples", "border_samples"; "content_passed", "blend_passed",
"coverage_passed" and "passed"; "report" (the printed report); "calibration_dir"; and
"summary", what build_warps returns for the wall. A missed target is no error: "passed" is
False.)");
}

}  // namespace vek::python
