import subprocess
import threading
import time

import numpy as np
import pytest

import vek

UNSET = (-5.0, -5.0)


def random_points(count, seed, radius=None):
    """Points over a 4000 x 3000 image (within `radius` of its middle when given), every 97th unset."""
    rng = np.random.default_rng(seed)
    if radius is None:
        points = rng.uniform((0, 0), (4000, 3000), size=(count, 2))
    else:
        angle = rng.uniform(0, 2 * np.pi, count)
        r = radius * np.sqrt(rng.uniform(0, 1, count))
        points = np.stack([1999.5 + r * np.cos(angle), 1499.5 + r * np.sin(angle)], axis=1)
    points = points.astype(np.float32)
    points[::97] = UNSET
    return points


def through_tool(tool, lens_file, direction, points):
    """The points mapped by `vek lens`, which runs the C++ array operations on them."""
    text = "".join(f"{float(x)!r} {float(y)!r}\n" for x, y in points)
    run = subprocess.run([tool, "lens", direction, str(lens_file)], input=text, capture_output=True, text=True,
                         check=True)
    return np.array([line.split() for line in run.stdout.splitlines()], dtype=np.float32)


def same_bits(a, b):
    return a.shape == b.shape and np.array_equal(a.view(np.uint32), b.view(np.uint32))


@pytest.mark.parametrize("make, radius", [
    (lambda: vek.BrownLensWarp(4000, 3000, 3000, 3000, 1999.5, 1499.5,
                               k1=-0.28, k2=0.09, p1=0.001, p2=-0.0005, k3=-0.01), None),
    (lambda: vek.RadialLensWarp(4000, 3000, (0.01, -0.02), -0.1, 0.02), None),
    # Radii of 2 focal lengths and beyond have no inverse.
    (lambda: vek.EqualAreaFishEyeLensWarp(4000, 3000, 1000, 1000, 1999.5, 1499.5), 1900),
    (lambda: vek.FishEyeLensWarp(4000, 3000), None),
], ids=["brown", "radial", "equal-area", "fish-eye"])
def test_array_operations_are_bit_identical_to_cpp(tool, tmp_path, make, radius):
    lens = make()
    lens_file = tmp_path / "camera.lens"
    lens.write(lens_file)
    # Above the library's threshold for spreading an array over threads.
    points = random_points(10000, seed=len(lens.to_string()), radius=radius)
    for direction, operation in (("undistort", lens.undistort), ("distort", lens.distort)):
        ours = operation(points)
        assert ours.dtype == np.float32 and ours.flags.c_contiguous
        assert same_bits(ours, through_tool(tool, lens_file, direction, points)), direction
        assert same_bits(ours[::97], points[::97])  # unset points pass unchanged


def test_brown_undistort_agrees_with_opencv(wall_lens):
    import cv2

    k1, k2, p1, p2, k3 = -0.28, 0.09, 0.001, -0.0005, -0.01
    xs, ys = np.meshgrid(np.linspace(0, 3999, 81), np.linspace(0, 2999, 61))
    points = np.stack([xs.ravel(), ys.ravel()], axis=1)
    camera = np.array([[3000.0, 0, 1999.5], [0, 3000.0, 1499.5], [0, 0, 1]])
    x = (points[:, 0] - 1999.5) / 3000
    y = (points[:, 1] - 1499.5) / 3000

    # The true inverse, by Newton in double precision on the forward formula.
    def forward(u, v):
        r2 = u * u + v * v
        radial = 1 + k1 * r2 + k2 * r2 ** 2 + k3 * r2 ** 3
        return (u * radial + 2 * p1 * u * v + p2 * (r2 + 2 * u * u),
                v * radial + p1 * (r2 + 2 * v * v) + 2 * p2 * u * v)

    u, v = x.copy(), y.copy()
    h = 1e-7
    for _ in range(30):
        fx, fy = forward(u, v)
        ax, ay = forward(u + h, v)
        bx, by = forward(u, v + h)
        j11, j21, j12, j22 = (ax - fx) / h, (ay - fy) / h, (bx - fx) / h, (by - fy) / h
        det = j11 * j22 - j12 * j21
        ex, ey = fx - x, fy - y
        u -= (j22 * ex - j12 * ey) / det
        v -= (j11 * ey - j21 * ex) / det
    fx, fy = forward(u, v)
    assert np.max(np.hypot(fx - x, fy - y)) * 3000 < 1e-9
    truth = np.stack([u * 3000 + 1999.5, v * 3000 + 1499.5], axis=1)

    ours = wall_lens.undistort(points).astype(np.float64)
    criteria = (cv2.TERM_CRITERIA_COUNT | cv2.TERM_CRITERIA_EPS, 20, 0.0)
    theirs = cv2.undistortPointsIter(points.reshape(-1, 1, 2), camera, np.array([k1, k2, p1, p2, k3]), None,
                                     camera, criteria).reshape(-1, 2)

    def worst(a, b):
        return np.max(np.hypot(*(a - b).T))

    assert worst(ours, theirs) <= 2e-3
    assert worst(ours, truth) <= 1e-3
    assert worst(theirs, truth) <= 1e-3


def test_undistort_releases_the_gil(wall_lens):
    points = random_points(400000, seed=3)
    ticks = []
    stop = threading.Event()

    def count():
        while not stop.is_set():
            ticks.append(time.perf_counter())

    counter = threading.Thread(target=count)
    counter.start()
    try:
        while len(ticks) < 10:
            time.sleep(0.001)
        begin = time.perf_counter()
        wall_lens.undistort(points)
        end = time.perf_counter()
    finally:
        stop.set()
        counter.join()
    # With the GIL held for the whole call the counting thread could not run at all meanwhile.
    assert end - begin > 0.02
    assert sum(begin < t < end for t in ticks) > 100


def test_points_of_any_array_like_give_a_new_float32_array(wall_lens):
    source = np.array([[100.0, 200.0], UNSET], dtype=np.float32)
    result = wall_lens.distort(source)
    assert result is not source and not np.shares_memory(result, source)
    assert source.tolist() == [[100.0, 200.0], [-5.0, -5.0]]
    assert same_bits(wall_lens.distort([[100, 200], [-5, -5]]), result)  # ints
    assert same_bits(wall_lens.distort(((100.0, 200.0), (-5.0, -5.0))), result)  # tuples of doubles
    assert wall_lens.undistort([]).shape == (0, 2)
    for bad in ([1.0, 2.0], [[1.0, 2.0, 3.0]], [["1", "2"]], [[True, False]], [[1 + 2j, 0]], "12"):
        with pytest.raises(vek.Error) as failure:
            wall_lens.undistort(bad)
        assert (failure.value.code, failure.value.name) == (34, "VEK_INVALID_PARAMETERS")
        assert failure.value.message.startswith("points: ")


def test_lens_files_round_trip_exactly(tmp_path):
    cases = [
        (vek.BrownLensWarp(4000, 3000, 3000, 3010, 1999.5, 1499.5, k1=-0.28, k2=0.09, p1=0.001, p2=-0.0005, k3=-0.01),
         "3 1.1 4000 3000 3000 3010 1999.5 1499.5 -0.28 0.09 0.001 -0.0005 -0.01 0 0 0 \n"),
        (vek.RadialLensWarp(4000, 3000, (0.01, -0.02), -0.1, 0.02), "7 1.1 4000 3000 0.01 -0.02 -0.1 0.02 \n"),
        (vek.EqualAreaFishEyeLensWarp(1920, 1080, 800, 800, 959.5, 539.5),
         "2 1.1 1920 1080 800 800 959.5 539.5 0 0 0 0 0 0 0 0 \n"),
        (vek.FishEyeLensWarp(640, 480), "1 1 \n"),
    ]
    for lens, text in cases:
        path = tmp_path / f"{type(lens).__name__}.lens"
        lens.write(path)
        assert path.read_bytes() == text.encode()
        back = vek.read_lens(str(path))
        assert type(back) is type(lens)
        assert back.to_string() == text
    brown = vek.read_lens(tmp_path / "BrownLensWarp.lens")
    assert isinstance(brown, vek.GenericLensWarp) and isinstance(brown, vek.LensWarp)
    assert (brown.camera_size, brown.focal_length_y, brown.center_x) == ((4000, 3000), 3010.0, 1999.5)
    assert (brown.k1, brown.p2, brown.k3) == tuple(float(np.float32(v)) for v in (-0.28, -0.0005, -0.01))
    assert brown.distortion_params[:5] == [brown.k1, brown.k2, brown.p1, brown.p2, brown.k3]


def test_model_properties_follow_their_definitions():
    brown = vek.BrownLensWarp(4000, 3000, 3000, 3000, 1999.5, 1499.5)
    brown.k2 = 0.5
    brown.distortion_params = [1, 2, 3, 4, 5, 6, 7, 8]
    assert (brown.k1, brown.k2, brown.p1, brown.p2, brown.k3) == (1, 2, 3, 4, 5)
    assert brown.to_string().endswith(" 1 2 3 4 5 6 7 8 \n")

    # The file form: centre normalised to -1..1, k1 scaled by ((w - 1) / 2)^2, k2 by its square.
    radial = vek.RadialLensWarp(4001, 3001, (0.5, -0.5), 0.2, 0.4)
    assert (radial.center_x, radial.center_y) == (3000.0, 750.0)
    assert radial.k1 == pytest.approx(0.2 / 2000 ** 2, rel=1e-6)
    assert radial.k2 == pytest.approx(0.4 / 2000 ** 4, rel=1e-6)
    assert radial.parameters == pytest.approx([4001, 3001, 0.5, -0.5, 0.2, 0.4], rel=1e-6)
    assert radial.k0 == 1.0
    # A point at the centre has no direction to move in; one off it moves by k0 + k1 r^2 + k2 r^4.
    moved = radial.distort([[3000 + 2000, 750]])[0]
    assert moved[0] == pytest.approx(3000 + 2000 * (1 + 0.2 + 0.4), rel=1e-6) and moved[1] == 750

    fish = vek.FishEyeLensWarp(640, 480)
    assert (fish.center_x, fish.center_y, fish.camera_size) == (319.5, 239.5, (640, 480))
    assert fish.undistort([[1.25, 2.5]]).tolist() == [[1.25, 2.5]]
    assert repr(fish) == "<vek.FishEyeLensWarp 1 1>"


def test_lens_files_that_cannot_be_read_raise_their_codes(tmp_path):
    cases = {
        "missing.lens": (None, 79, "VEK_FILE_NOT_FOUND"),
        "unknown-tag.lens": ("9 1.1 4000 3000\n", 40, "VEK_BAD_PARSE"),
        "wrong-version.lens": ("3 2.5 4000 3000 3000 3000 1999.5 1499.5 0 0 0 0 0 0 0 0\n", 40, "VEK_BAD_PARSE"),
    }
    for name, (text, code, code_name) in cases.items():
        path = tmp_path / name
        if text is not None:
            path.write_text(text)
        with pytest.raises(vek.Error) as failure:
            vek.read_lens(path)
        assert (failure.value.code, failure.value.name) == (code, code_name), name
    with pytest.raises(vek.Error) as failure:
        vek.read_lens(tmp_path / "missing.lens")
    assert str(tmp_path / "missing.lens") in failure.value.message
    with pytest.raises(vek.Error) as failure:
        vek.FishEyeLensWarp(640, 480).write(tmp_path / "no-such-folder" / "x.lens")
    assert failure.value.code == 72  # VEK_UNABLE_TO_OPEN_FILE_FOR_WRITING
