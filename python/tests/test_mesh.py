import numpy as np
import pytest

import vek

XY = [[0, 0], [100, 100], [100, 0], [50.5, 25.25]]
UV = [[0, 0], [1, 1], [1, 0], [0.5, 0.25]]
ALPHA = [1, 0.5, 0.25, 0]
TRIANGLES = [[0, 1, 2], [0, 2, 3]]
# Each vertex line is "x y' alpha u v " with y' = y - 46.996, in six significant digits.
TEXT = ("VERTICES 4\nFACES 2\nMAPPING NORMALIZED\nSAMPLING LINEAR\n"
        "0 -46.996 1 0 0 \n100 53.004 0.5 1 1 \n100 -46.996 0.25 1 0 \n50.5 -21.746 0 0.5 0.25 \n"
        "[ 0 1 2 ]\n[ 0 2 3 ]\n")


def test_a_mesh_from_arrays_writes_the_warp_file_and_reads_back(tmp_path):
    mesh = vek.TextureMesh.from_arrays(np.array(XY), UV, ALPHA, np.array(TRIANGLES, dtype=np.uint8))
    assert (mesh.num_points, mesh.num_triangles) == (4, 2)
    assert mesh.to_string() == TEXT
    path = tmp_path / "projector_0.warp"
    mesh.write(path)
    assert path.read_bytes() == TEXT.encode()

    xy, uv, alpha, triangles = vek.read_warp_mesh(path)
    assert (xy.dtype, uv.dtype, alpha.dtype, triangles.dtype) == (np.float32, np.float32, np.float32, np.intc)
    assert (xy.tolist(), uv.tolist(), alpha.tolist(), triangles.tolist()) == (XY, UV, ALPHA, TRIANGLES)
    arrays = vek.read_warp_mesh(str(path))
    assert arrays.triangles.shape == (2, 3) and arrays.alpha.shape == (4,)
    assert vek.TextureMesh.read(path).to_string() == TEXT


def test_mapping_and_sampling_are_written_and_read():
    mesh = vek.TextureMesh.from_arrays(XY[:3], UV[:3], ALPHA[:3], TRIANGLES[:1])
    mesh.mapping = "PIXELS"
    mesh.sampling = "ANISOTROPIC"
    mesh.anisotropy = 4
    header = mesh.to_string().splitlines()[:4]
    assert header == ["VERTICES 3", "FACES 1", "MAPPING PIXELS", "SAMPLING ANISOTROPIC 4"]
    for attribute, value in (("mapping", "pixels"), ("sampling", "TRILINEAR")):
        with pytest.raises(vek.Error) as failure:
            setattr(mesh, attribute, value)
        assert failure.value.code == 34


def test_arrays_are_copies():
    mesh = vek.TextureMesh.from_arrays(XY, UV, ALPHA, TRIANGLES)
    xy = mesh.xy
    xy[0] = (7, 7)
    assert mesh.xy.tolist() == XY and mesh.uv.tolist() == UV and mesh.alpha.tolist() == ALPHA
    assert mesh.triangles.tolist() == TRIANGLES
    empty = vek.TextureMesh.from_arrays([], [], [], [])
    assert empty.to_string() == "VERTICES 0\nFACES 0\nMAPPING NORMALIZED\nSAMPLING LINEAR\n"


@pytest.mark.parametrize("xy, uv, alpha, triangles", [
    (XY, UV[:3], ALPHA, TRIANGLES),                   # counts disagree
    (XY, UV, ALPHA, [[0, 1, 4]]),                     # vertex 4 of 0..3
    (XY, UV, ALPHA, [[-1, 1, 2]]),
    (XY, UV, ALPHA, [[2 ** 32, 1, 2]]),               # would wrap to vertex 0 as a 32-bit int
    (XY, UV, ALPHA, [[0.5, 1, 2]]),                   # not an integer
    (XY, UV, ALPHA, [0, 1, 2]),                       # not (M, 3)
    (XY, UV, [1, 0.5, float("nan"), 0], TRIANGLES),   # no warp file holds it
    (XY, [[0, float("inf")]] * 4, ALPHA, TRIANGLES),
], ids=["counts", "index-n", "index-negative", "index-wraps", "index-fraction", "shape", "nan", "inf"])
def test_bad_arrays_are_refused(xy, uv, alpha, triangles):
    with pytest.raises(vek.Error) as failure:
        vek.TextureMesh.from_arrays(xy, uv, alpha, triangles)
    assert (failure.value.code, failure.value.name) == (34, "VEK_INVALID_PARAMETERS")


def test_warp_files_that_cannot_be_read_raise_their_codes(tmp_path):
    lines = TEXT.splitlines(keepends=True)
    cases = {
        "missing.warp": (None, 79),
        "cut-short.warp": ("".join(lines[:6]), 73),                        # VEK_FILE_NOT_FORMATTED_PROPERLY
        "bad-number.warp": ("".join(lines[:5] + ["100 53.004 x 1 1 \n"] + lines[6:]), 40),  # VEK_BAD_PARSE
        "bad-index.warp": ("".join(lines[:9] + ["[ 0 2 4 ]\n"]), 40),
    }
    for name, (text, code) in cases.items():
        path = tmp_path / name
        if text is not None:
            path.write_text(text)
        with pytest.raises(vek.Error) as failure:
            vek.read_warp_mesh(path)
        assert failure.value.code == code, name
        assert str(path) in failure.value.message, name
    with pytest.raises(vek.Error) as failure:
        vek.read_warp_mesh(tmp_path / "bad-number.warp")
    assert ", line 6: " in failure.value.message
