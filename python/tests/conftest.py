"""Runs the module's tests in a base folder of their own, so that nothing lands in the home folder.

The module must be importable (PYTHONPATH=<build>/python); VEK_TOOL names the built vek tool,
whose results the tests compare with the module's (else the one on PATH).
"""
import os
import shutil
import tempfile

import pytest

# The library settles its base folder when it loads, so this must come before any import of vek.
if "VEK_BASE_DIR" not in os.environ:
    os.environ["VEK_BASE_DIR"] = tempfile.mkdtemp(prefix="vek-python-tests-")


@pytest.fixture(scope="session")
def tool():
    path = os.environ.get("VEK_TOOL") or shutil.which("vek")
    if not path:
        pytest.fail("the vek tool is needed: set VEK_TOOL to the built tool")
    return path


@pytest.fixture
def wall_lens():
    """The lens of the made-up wall of `vek demo`: a 4000 x 3000 camera with strong barrel distortion."""
    import vek

    return vek.BrownLensWarp(4000, 3000, 3000, 3000, 1999.5, 1499.5,
                             k1=-0.28, k2=0.09, p1=0.001, p2=-0.0005, k3=-0.01)
