import shutil

import pytest

import vek


def read_data_file(path):
    """The variables of a DataFile ("Type###Name###value###" lines) as text, by name."""
    values = {}
    for line in path.read_text().splitlines():
        parts = line.split("###")
        if len(parts) == 4:
            values[parts[1]] = parts[2]
    return values


@pytest.fixture(scope="module")
def demo(tmp_path_factory):
    out = tmp_path_factory.mktemp("demo")
    return out, vek.demo(out)


def test_demo_reports_its_accuracy_and_what_its_files_hold(demo):
    out, report = demo
    assert report["passed"] and report["content_passed"] and report["blend_passed"] and report["coverage_passed"]
    assert report["content_target"] == 0.5  # a wall with detection noise
    assert 0 < report["content_error_rms"] <= report["content_error_max"] <= 0.5
    assert report["blend_error_max"] <= report["blend_max_target"] == 0.02
    assert (report["samples"], report["uncovered_samples"]) == (100000, 0)
    assert report["report"].startswith("Content error: max ")
    assert report["calibration_dir"] == str(out / "calibration")

    summary = report["summary"]
    assert summary["out_dir"] == str(out / "warps")
    assert summary["settings"] == {"blend_gamma": 2.2, "warp_step": 32, "content_width": 1920,
                                   "content_height": 1080}
    file = read_data_file(out / "warps" / "summary.txt")
    assert int(file["NumberOfProjectors"]) == len(summary["projectors"]) == 6
    vertices = 0
    for k, projector in enumerate(summary["projectors"]):
        prefix = f"Projector{k}"
        assert projector["coverage"] == float(file[prefix + "Coverage"])
        assert projector["neighbours"] == [int(n) for n in file[prefix + "Neighbors"].split()]
        assert projector["layer"] == int(file[prefix + "Layer"])
        assert projector["spots_found"] == int(file[prefix + "SpotsFound"])
        assert projector["spots_filled"] == int(file[prefix + "SpotsFilled"])
        assert projector["residual_max"] == float(file[prefix + "ResidualMax"])
        assert projector["residual_rms"] == float(file[prefix + "ResidualRMS"])
        assert projector["warp_file"] == str(out / "warps" / f"projector_{k}.warp")
        assert vek.read_warp_mesh(projector["warp_file"]).xy.shape == (projector["vertices"], 2)
        vertices += projector["vertices"]
    assert vertices == report["content_vertices"]  # every vertex of the wall's warps is judged


def test_a_wall_without_noise_is_judged_by_the_tighter_target(tmp_path):
    report = vek.demo(tmp_path, noise=0)
    assert report["content_target"] == 0.1 and report["passed"]


def test_build_warps_settles_settings_as_the_tool_does(demo, tmp_path):
    # Built-in defaults, then the option store, then the folder, then the arguments.
    folder = tmp_path / "calibration"
    shutil.copytree(demo[0] / "calibration", folder)
    options = vek.Options()
    assert "CalibrationWarpStep" not in options
    try:
        assert vek.build_warps(folder, tmp_path / "a")["settings"]["warp_step"] == 32
        options.set("CalibrationWarpStep", 24, type="Int")
        assert vek.build_warps(folder, tmp_path / "b")["settings"]["warp_step"] == 24
        with open(folder / "calibration.txt", "a") as calibration:
            calibration.write("Int###WarpStep###40###\n")
        assert vek.build_warps(folder, tmp_path / "c")["settings"]["warp_step"] == 40
        settings = vek.build_warps(str(folder), str(tmp_path / "d"), step=16, gamma=1.8)["settings"]
        assert (settings["warp_step"], settings["blend_gamma"]) == (16, 1.8)
    finally:
        del options["CalibrationWarpStep"]
    file = read_data_file(tmp_path / "d" / "summary.txt")
    assert (file["WarpStep"], file["BlendGamma"]) == ("16", "1.8")


def test_build_warps_failures_name_their_cause(demo, tmp_path):
    with pytest.raises(vek.Error) as failure:
        vek.build_warps(tmp_path / "nothing-here", tmp_path / "out")
    assert failure.value.code == 79 and "calibration.txt" in failure.value.message
    for arguments in ({"step": 0}, {"gamma": 0.0}, {"gamma": 10.5}):
        with pytest.raises(vek.Error) as failure:
            vek.build_warps(demo[0] / "calibration", tmp_path / "out", **arguments)
        assert failure.value.code == 34, arguments
    assert not (tmp_path / "out" / "summary.txt").exists()
