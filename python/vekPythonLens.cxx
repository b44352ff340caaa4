// The lens models: read from and written to lens files, their parameters as properties, and point
// arrays mapped through the library's own array operations.
#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

#include <array>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>
#include <utility>

#include "vekBrownLensWarp.h"
#include "vekEqualAreaFishEyeLensWarp.h"
#include "vekErrorCodes.h"
#include "vekFishEyeLensWarp.h"
#include "vekLensWarpIO.h"
#include "vekPython.h"
#include "vekRadialLensWarp.h"
#include "vekSmartPointer.h"
#include "vekVec2.h"

namespace vek::python {

namespace {

static_assert(sizeof(vec2<float>) == 2 * sizeof(float), "numpy rows of two float32 are read as vec2<float>");

class PyLensWarp {
 public:
  explicit PyLensWarp(LensWarp* fresh) : Model(fresh) {}
  virtual ~PyLensWarp() = default;
  LensWarp* Get() const { return Model.Get(); }

 private:
  Held<LensWarp> Model;
};

// One Python class per model; each knows its model's class.
template <class Model, class Base = PyLensWarp>
class PyModel : public Base {
 public:
  PyModel() : Base(Model::New()) {}
  explicit PyModel(Model* fresh) : Base(fresh) {}
  Model* Get() const { return static_cast<Model*>(PyLensWarp::Get()); }
};

using PyGenericLensWarp = PyModel<GenericLensWarp>;
using PyBrownLensWarp = PyModel<BrownLensWarp, PyGenericLensWarp>;
using PyEqualAreaFishEyeLensWarp = PyModel<EqualAreaFishEyeLensWarp, PyGenericLensWarp>;
using PyRadialLensWarp = PyModel<RadialLensWarp>;
using PyFishEyeLensWarp = PyModel<FishEyeLensWarp>;

// The Python object of the model's own class, holding one more reference to `model`.
std::unique_ptr<PyLensWarp> Wrap(const SmartPointer<LensWarp>& model) {
  LensWarp* object = model.GetPointer();
  object->Register();
  if (auto* brown = dynamic_cast<BrownLensWarp*>(object)) return std::make_unique<PyBrownLensWarp>(brown);
  if (auto* equalArea = dynamic_cast<EqualAreaFishEyeLensWarp*>(object))
    return std::make_unique<PyEqualAreaFishEyeLensWarp>(equalArea);
  if (auto* radial = dynamic_cast<RadialLensWarp*>(object)) return std::make_unique<PyRadialLensWarp>(radial);
  if (auto* fishEye = dynamic_cast<FishEyeLensWarp*>(object)) return std::make_unique<PyFishEyeLensWarp>(fishEye);
  object->UnRegister();
  Fail(VEK_NOT_SUPPOSED_TO_REACH_CODE, std::string("no Python class for lens model ") + model->GetClassName());
}

py::array_t<float> MapPoints(const PyLensWarp& lens, const py::handle& points, bool undistort) {
  py::array_t<float> result = PointArray(points, "points");
  // The extra reference keeps the model alive if the module shuts down while the GIL is released;
  // it is taken and given back with the GIL held, as reference counts are not atomic.
  SmartPointer<LensWarp> model(lens.Get());
  auto* data = reinterpret_cast<vec2<float>*>(result.mutable_data());
  const auto count = static_cast<unsigned int>(result.shape(0));
  {
    py::gil_scoped_release unlocked;
    if (undistort)
      model->InplaceInvertArray(data, count);
    else
      model->InplaceForwardArray(data, count);
  }
  return result;
}

std::string ToString(const PyLensWarp& lens) {
  std::ostringstream text;
  Check(LensWarpIO::WriteToStream(&text, lens.Get()));
  return text.str();
}

std::string Repr(const py::object& self) {
  std::string text = ToString(self.cast<const PyLensWarp&>());
  while (!text.empty() && (text.back() == '\n' || text.back() == ' ')) text.pop_back();
  return "<vek." + std::string(py::str(self.get_type().attr("__name__"))) + " " + text + ">";
}

template <class Wrapper>
void SetCameraSize(Wrapper& lens, const std::array<int, 2>& size) {
  if (size[0] < 1 || size[1] < 1)
    Fail(VEK_INVALID_PARAMETERS, "camera_size: expected two positive pixel counts, found " +
                                     std::to_string(size[0]) + " x " + std::to_string(size[1]));
  lens.Get()->SetCameraDimensions(size[0], size[1]);
}

// A float property of a model, through its getter and setter.
template <class Class, class Model>
void AddFloat(Class& cls, const char* name, float const& (Model::*get)() const, void (Model::*set)(float const&),
              const char* doc) {
  using Wrapper = typename Class::type;
  cls.def_property(
      name, [get](const Wrapper& lens) { return (lens.Get()->*get)(); },
      [set](Wrapper& lens, float value) { (lens.Get()->*set)(value); }, doc);
}

constexpr const char* kUndistortDoc = R"(Distorted camera pixels to undistorted (pinhole) ones.

Args:
    points: an array-like of shape (N, 2) of real numbers, x then y, in camera pixels.

Returns a new float32 array of shape (N, 2): the library's array operation on the points as
float32, bit for bit what a C++ caller gets. The point (-5, -5) marks a missing point and passes
unchanged. The GIL is released while the points are mapped, and large arrays use every core.)";

constexpr const char* kDistortDoc = R"(Undistorted (pinhole) camera pixels to distorted ones, as the camera delivers them.

Args:
    points: an array-like of shape (N, 2) of real numbers, x then y, in camera pixels.

Returns a new float32 array of shape (N, 2), as undistort does.)";

void AddLensWarp(py::module_& m) {
  py::class_<PyLensWarp>(m, "LensWarp", R"(A camera lens model (the base of every model).

forward maps undistorted (ideal pinhole) camera pixels to the distorted ones the camera delivers:
distort(points); undistort(points) maps back. Models come from vek.read_lens or from the
constructor of a model's class: BrownLensWarp, RadialLensWarp, FishEyeLensWarp,
EqualAreaFishEyeLensWarp.)")
      .def("undistort", [](const PyLensWarp& lens, const py::object& points) { return MapPoints(lens, points, true); },
           py::arg("points"), kUndistortDoc)
      .def("distort", [](const PyLensWarp& lens, const py::object& points) { return MapPoints(lens, points, false); },
           py::arg("points"), kDistortDoc)
      .def(
          "write",
          [](const PyLensWarp& lens, const std::filesystem::path& path) {
            Check(LensWarpIO::WriteToFile(path.string().c_str(), lens.Get()));
          },
          py::arg("path"),
          "Writes the model as a lens file (its type tag and its parameters), replacing the file in one "
          "step: a failure leaves an earlier file whole.")
      .def("to_string", &ToString, "The model's lens file text.")
      .def_property_readonly(
          "is_initialized", [](const PyLensWarp& lens) { return lens.Get()->IsInitialized(); },
          "Whether every parameter the model needs is set.")
      .def("__repr__", &Repr);

  m.def(
      "read_lens",
      [](const std::filesystem::path& path) {
        HeldObject::CheckRunning();
        SmartPointer<LensWarp> model;
        Check(LensWarpIO::ReadFromFile(path.string().c_str(), model));
        return Wrap(model);
      },
      py::arg("path"),
      R"(Reads a lens file into a new object of the model it holds (BrownLensWarp, RadialLensWarp,
FishEyeLensWarp or EqualAreaFishEyeLensWarp).

Raises vek.Error: VEK_FILE_NOT_FOUND for a missing file, VEK_BAD_PARSE for an unknown model or a
damaged body.)");
}

void AddGenericLensWarp(py::module_& m) {
  py::class_<PyGenericLensWarp, PyLensWarp> cls(m, "GenericLensWarp", R"(The base of the pinhole-based models (BrownLensWarp, EqualAreaFishEyeLensWarp): camera size,
focal lengths and image centre in pixels, and eight distortion parameters whose meaning each
model defines.)");
  AddFloat(cls, "focal_length_x", &GenericLensWarp::GetFocalLengthX,
                              &GenericLensWarp::SetFocalLengthX, "Focal length along x, pixels.");
  AddFloat(cls, "focal_length_y", &GenericLensWarp::GetFocalLengthY,
                              &GenericLensWarp::SetFocalLengthY, "Focal length along y, pixels.");
  AddFloat(cls, "center_x", &GenericLensWarp::GetCenterX, &GenericLensWarp::SetCenterX,
                              "Image centre x, pixels.");
  AddFloat(cls, "center_y", &GenericLensWarp::GetCenterY, &GenericLensWarp::SetCenterY,
                              "Image centre y, pixels.");
  cls.def_property(
      "camera_size",
      [](const PyGenericLensWarp& lens) {
        return std::pair<int, int>(static_cast<int>(lens.Get()->GetWidth()), static_cast<int>(lens.Get()->GetHeight()));
      },
      &SetCameraSize<PyGenericLensWarp>, "(width, height) of the camera image in pixels; setting it changes nothing else.");
  cls.def_property(
      "distortion_params",
      [](const PyGenericLensWarp& lens) {
        std::array<float, GenericLensWarp::kNumDistortionParameters> values;
        lens.Get()->GetDistortionParams(values.data());
        return values;
      },
      [](PyGenericLensWarp& lens, const std::array<float, GenericLensWarp::kNumDistortionParameters>& values) {
        lens.Get()->SetDistortionParams(values.data());
      },
      "The eight distortion parameters, as the lens file holds them.");
}

void SetPinhole(GenericLensWarp* model, int width, int height, float focalX, float focalY, float centerX,
                float centerY) {
  if (width < 1 || height < 1)
    Fail(VEK_INVALID_PARAMETERS, "expected a positive camera size, found " + std::to_string(width) + " x " +
                                     std::to_string(height));
  model->SetCameraDimensions(width, height);
  model->SetFocalLengthX(focalX);
  model->SetFocalLengthY(focalY);
  model->SetCenterX(centerX);
  model->SetCenterY(centerY);
}

void AddBrownLensWarp(py::module_& m) {
  py::class_<PyBrownLensWarp, PyGenericLensWarp> cls(m, "BrownLensWarp", R"(The Brown-Conrady lens: radial k1, k2, k3 and tangential p1, p2 on normalised coordinates
u = (x - center_x) / focal_length_x, v = (y - center_y) / focal_length_y. distort is closed-form;
undistort solves it by Gauss-Newton (at most 100 steps).

BrownLensWarp(width, height, focal_length_x, focal_length_y, center_x, center_y,
              k1=0, k2=0, p1=0, p2=0, k3=0))");
  cls.def(py::init([](int width, int height, float focalX, float focalY, float centerX, float centerY, float k1,
                      float k2, float p1, float p2, float k3) {
            auto lens = std::make_unique<PyBrownLensWarp>();
            BrownLensWarp* model = lens->Get();
            SetPinhole(model, width, height, focalX, focalY, centerX, centerY);
            model->Setk1(k1);
            model->Setk2(k2);
            model->Setp1(p1);
            model->Setp2(p2);
            model->Setk3(k3);
            return lens;
          }),
          py::arg("width"), py::arg("height"), py::arg("focal_length_x"), py::arg("focal_length_y"),
          py::arg("center_x"), py::arg("center_y"), py::arg("k1") = 0.0f, py::arg("k2") = 0.0f, py::arg("p1") = 0.0f,
          py::arg("p2") = 0.0f, py::arg("k3") = 0.0f);
  AddFloat(cls, "k1", &BrownLensWarp::Getk1, &BrownLensWarp::Setk1, "Radial coefficient of r^2.");
  AddFloat(cls, "k2", &BrownLensWarp::Getk2, &BrownLensWarp::Setk2, "Radial coefficient of r^4.");
  AddFloat(cls, "k3", &BrownLensWarp::Getk3, &BrownLensWarp::Setk3, "Radial coefficient of r^6.");
  AddFloat(cls, "p1", &BrownLensWarp::Getp1, &BrownLensWarp::Setp1, "First tangential coefficient.");
  AddFloat(cls, "p2", &BrownLensWarp::Getp2, &BrownLensWarp::Setp2,
                            "Second tangential coefficient.");
}

void AddEqualAreaFishEyeLensWarp(py::module_& m) {
  py::class_<PyEqualAreaFishEyeLensWarp, PyGenericLensWarp>(m, "EqualAreaFishEyeLensWarp", R"(An equal-area fish-eye lens against a pinhole: a pinhole point at normalised radius rho lands at
radius 2 sin(atan(rho) / 2). Radii of 2 and beyond have no inverse (undistort gives NaN). The
distortion parameters are not used.

EqualAreaFishEyeLensWarp(width, height, focal_length_x, focal_length_y, center_x, center_y))")
      .def(py::init([](int width, int height, float focalX, float focalY, float centerX, float centerY) {
             auto lens = std::make_unique<PyEqualAreaFishEyeLensWarp>();
             SetPinhole(lens->Get(), width, height, focalX, focalY, centerX, centerY);
             return lens;
           }),
           py::arg("width"), py::arg("height"), py::arg("focal_length_x"), py::arg("focal_length_y"),
           py::arg("center_x"), py::arg("center_y"));
}

using RadialParameters = std::array<double, RadialLensWarp::kNumParameters>;

RadialParameters GetRadialParameters(const PyRadialLensWarp& lens) {
  RadialParameters values;
  lens.Get()->GetParameters(values.data());
  return values;
}

void AddRadialLensWarp(py::module_& m) {
  py::class_<PyRadialLensWarp, PyLensWarp> cls(m, "RadialLensWarp", R"(Radial distortion about a centre: a point at distance r from the centre moves along its ray by the
factor k0 + k1 r^2 + k2 r^4.

The lens file holds six parameters, `parameters`: width, height, the centre normalised to -1..1
on each axis (0 the image middle), and k1, k2 scaled by half of (width - 1) pixels. center_x,
center_y, k1 and k2 are the same numbers in pixels, read-only: set them through `parameters`,
which is what write() stores. undistort takes k0 as 1.

RadialLensWarp(width, height, center=(0, 0), k1=0, k2=0), all in the file's form.)");
  cls.def(py::init([](int width, int height, const std::array<double, 2>& center, double k1, double k2) {
            if (width < 2 || height < 2)
              Fail(VEK_INVALID_PARAMETERS, "expected a camera size of at least 2 x 2, found " +
                                               std::to_string(width) + " x " + std::to_string(height));
            auto lens = std::make_unique<PyRadialLensWarp>();
            const RadialParameters values{double(width), double(height), center[0], center[1], k1, k2};
            lens->Get()->SetParameters(values.data());
            return lens;
          }),
          py::arg("width"), py::arg("height"), py::arg("center") = std::array<double, 2>{0, 0},
          py::arg("k1") = 0.0, py::arg("k2") = 0.0)
      .def_property(
          "parameters", &GetRadialParameters,
          [](PyRadialLensWarp& lens, const RadialParameters& values) { lens.Get()->SetParameters(values.data()); },
          "(width, height, centre x, centre y, k1, k2) in the lens file's form (computed back from the pixel "
          "numbers).")
      .def_property(
          "k0", [](const PyRadialLensWarp& lens) { return lens.Get()->Getk0(); },
          [](PyRadialLensWarp& lens, float value) { lens.Get()->Setk0(value); },
          "The constant factor (1 unless set); not part of the lens file.")
      .def_property_readonly(
          "k1", [](const PyRadialLensWarp& lens) { return lens.Get()->Getk1(); }, "k1 per pixel squared.")
      .def_property_readonly(
          "k2", [](const PyRadialLensWarp& lens) { return lens.Get()->Getk2(); }, "k2 per pixel to the fourth.")
      .def_property_readonly(
          "center_x", [](const PyRadialLensWarp& lens) { return lens.Get()->GetCenterX(); }, "Centre x, pixels.")
      .def_property_readonly(
          "center_y", [](const PyRadialLensWarp& lens) { return lens.Get()->GetCenterY(); }, "Centre y, pixels.")
      .def_property(
          "camera_size",
          [](const PyRadialLensWarp& lens) {
            return std::pair<int, int>(lens.Get()->GetWidth(), lens.Get()->GetHeight());
          },
          &SetCameraSize<PyRadialLensWarp>,
          "(width, height) in pixels; setting another size rebuilds the pixel numbers from the file form.");
}

void AddFishEyeLensWarp(py::module_& m) {
  py::class_<PyFishEyeLensWarp, PyLensWarp>(m, "FishEyeLensWarp", R"(The identity lens: both directions copy the points. It keeps the camera size and the image
centre, so that calibration treats every camera alike.

FishEyeLensWarp(width, height) puts the centre in the image middle, ((w - 1) / 2, (h - 1) / 2).)")
      .def(py::init([](int width, int height) {
             auto lens = std::make_unique<PyFishEyeLensWarp>();
             SetCameraSize(*lens, {width, height});
             return lens;
           }),
           py::arg("width"), py::arg("height"))
      .def_property(
          "center_x", [](const PyFishEyeLensWarp& lens) { return lens.Get()->GetCenterX(); },
          [](PyFishEyeLensWarp& lens, float value) { lens.Get()->SetCenterX(value); }, "Image centre x, pixels.")
      .def_property(
          "center_y", [](const PyFishEyeLensWarp& lens) { return lens.Get()->GetCenterY(); },
          [](PyFishEyeLensWarp& lens, float value) { lens.Get()->SetCenterY(value); }, "Image centre y, pixels.")
      .def_property(
          "camera_size",
          [](const PyFishEyeLensWarp& lens) {
            return std::pair<int, int>(lens.Get()->GetWidth(), lens.Get()->GetHeight());
          },
          &SetCameraSize<PyFishEyeLensWarp>, "(width, height) in pixels; setting it also centres the image centre.");
}

}  // namespace

void AddLensBindings(py::module_& m) {
  AddLensWarp(m);
  AddGenericLensWarp(m);
  AddBrownLensWarp(m);
  AddEqualAreaFishEyeLensWarp(m);
  AddRadialLensWarp(m);
  AddFishEyeLensWarp(m);
}

}  // namespace vek::python
