import os
import subprocess
import sys
import textwrap

import vek

# An exit handler registered before the import runs after the module's own: by then the module has
# let its objects go. The lens kept alive by a stray reference outlives the interpreter, so only the
# module's exit handler can let it go before the library's leak registry reports.
SCRIPT = textwrap.dedent("""
    import atexit, ctypes

    def late():
        for name, call in (("lens", lambda: kept.undistort([[1.0, 2.0]])),
                           ("property", lambda: kept.camera_size),
                           ("mesh", lambda: mesh.to_string()),
                           ("options", lambda: vek.Options()),
                           ("read_lens", lambda: vek.read_lens("camera.lens"))):
            try:
                call()
                print(name, "worked")
            except vek.Error as error:
                print(name, error.code)

    atexit.register(late)
    import vek

    kept = vek.FishEyeLensWarp(640, 480)
    stray = vek.BrownLensWarp(4000, 3000, 3000, 3000, 1999.5, 1499.5)
    ctypes.pythonapi.Py_IncRef(ctypes.py_object(stray))
    mesh = vek.TextureMesh.from_arrays([[0, 0]], [[0, 0]], [1], [])
    cycle = [vek.Options()]
    cycle.append(cycle)
    for _ in range(100):
        vek.FishEyeLensWarp(640, 480).undistort([[1.0, 2.0]])
    print("done")
""")


def test_objects_outliving_the_interpreter_are_let_go_and_refuse_use(tmp_path):
    base = tmp_path / "base"
    run = subprocess.run([sys.executable, "-c", SCRIPT], capture_output=True, text=True, cwd=tmp_path,
                         env=dict(os.environ, VEK_BASE_DIR=str(base),
                                  PYTHONPATH=os.path.dirname(os.path.abspath(vek.__file__))))
    assert run.returncode == 0, run.stderr
    assert run.stdout.splitlines() == ["done", "lens 45", "property 45", "mesh 45", "options 45", "read_lens 45"]
    log = (base / "Temp" / "DebugLog.txt").read_text()
    # The registry's last words: how many objects were still listed when the library unloaded.
    assert log.rstrip().endswith("Found 0 Leaks"), log[-500:]
