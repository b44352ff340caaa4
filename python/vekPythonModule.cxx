// The Python module `vek`: the library for calibration engineers who script in Python with numpy.
// Each group of bindings adds itself; this file holds the module's own documentation and its exit.
#include "vekPython.h"
#include "vekVersion.h"

namespace {

constexpr const char* kModuleDoc = R"(vek: the common library of a calibration suite for multi-projector displays.

Several projectors light one screen, a camera watches it, and the suite computes for each
projector a warp mesh and a blend so that together they show one seamless image.

Lens models (camera pixels):
    read_lens(path) -> BrownLensWarp | RadialLensWarp | FishEyeLensWarp | EqualAreaFishEyeLensWarp
    lens.undistort(points), lens.distort(points): (N, 2) array-likes -> new float32 (N, 2) arrays
    lens.write(path); every model has a constructor and its parameters as properties.
Warp meshes:
    TextureMesh.from_arrays(xy, uv, alpha, triangles), TextureMesh.read(path), mesh.write(path),
    mesh.to_string(); read_warp_mesh(path) -> (xy, uv, alpha, triangles).
The calibration path:
    build_warps(calibration_dir, out_dir, step=None, gamma=None) -> summary dict
    demo(out_dir) -> accuracy report dict
Options:
    Options() -> a mapping over the option store: opts["Gain"], opts["Gain"] = 0.75.
Errors:
    Every failure raises vek.Error, with .code, .name and .message (in the language in force:
    set_language, language); error_message(code, language=None), error_name(code).

The library works in one base folder: the environment variable VEK_BASE_DIR when it is set at
import, else $XDG_DATA_HOME/VeltraDisplay (or ~/.local/share/VeltraDisplay). Its Config/ holds the
option store, its Temp/DebugLog.txt the library's log.

Each Python object holds its library object once. When the interpreter exits, the module lets
every object still held go, and an object used after that (from a later exit handler, say)
raises vek.Error instead of touching freed memory.

Long operations (undistort, distort, build_warps, demo) release the GIL.

Example:
    import numpy as np, vek
    lens = vek.read_lens("camera.lens")
    pinhole = lens.undistort([[100.0, 200.0], [3900.0, 2900.0]])
)";

}  // namespace

PYBIND11_MODULE(vek, m) {
  namespace py = pybind11;
  using namespace vek::python;
  m.doc() = kModuleDoc;
  m.attr("__version__") = VEK_VERSION_STRING;
  AddErrorBindings(m);
  AddLensBindings(m);
  AddMeshBindings(m);
  AddCalibrationBindings(m);
  AddOptionBindings(m);
  // Python's exit handlers run while the interpreter still works: the objects let go here are not
  // reported as leaks when the library unloads, after the interpreter is gone.
  py::module_::import("atexit").attr("register")(py::cpp_function([] { HeldObject::ReleaseAll(); }));
}
