#include <nanobind/nanobind.h>
#include <nanobind/stl/bind_vector.h>
#include <nanobind/stl/string.h>
#include <nanobind/trampoline.h>

#include "Probe.h"

namespace nb = nanobind;
using namespace callcost;

namespace {

class PyListener : public Listener {
public:
  NB_TRAMPOLINE(Listener, 1);
  void frame(int number) override { NB_OVERRIDE(frame, number); }
};

/** The prototypes of paint() for one kind of target and texture, each default dropped in turn as in the
 * header. */
template <class Target, class Texture, bool withRepeat = true>
void definePaint(nb::class_<Probe>& probe) {
  if constexpr (withRepeat) {
    probe.def("paint", [](Probe& self, Target target, Texture texture, int unit, float scale, bool repeat) {
      return self.paint(target, texture, unit, scale, repeat);
    });
  }
  probe.def("paint", [](Probe& self, Target target, Texture texture, int unit, float scale) {
    return self.paint(target, texture, unit, scale);
  });
  probe.def("paint", [](Probe& self, Target target, Texture texture, int unit) {
    return self.paint(target, texture, unit);
  });
  probe.def("paint", [](Probe& self, Target target, Texture texture) { return self.paint(target, texture); });
}

} // namespace

NB_MODULE(callcost_nanobind, module) {
  nb::class_<Value>(module, "Value")
      .def(nb::init<double, double, double>(), nb::arg() = 0, nb::arg() = 0, nb::arg() = 0)
      .def_ro("x", &Value::x);
  nb::class_<Link>(module, "Link").def(nb::init<>());
  nb::class_<Other>(module, "Other").def(nb::init<>());

  nb::class_<Probe> probe(module, "Probe");
  probe.def(nb::init<>())
      .def("getFloat", &Probe::getFloat)
      .def("setFloat", &Probe::setFloat)
      .def("attach", &Probe::attach)
      .def("getValue", &Probe::getValue)
      .def("setName", &Probe::setName)
      .def("pick", nb::overload_cast<int>(&Probe::pick))
      .def("pick", nb::overload_cast<double>(&Probe::pick))
      .def("paintOne", &Probe::paintOne);
  definePaint<Probe*, std::string const&>(probe);
  definePaint<Probe*, Link*>(probe);
  definePaint<Other*, std::string const&>(probe);
  definePaint<Other*, Link*>(probe);
  definePaint<Link*, std::string const&>(probe);
  definePaint<Link*, Link*>(probe);
  definePaint<Value const&, Link*, false>(probe);
  definePaint<Value const&, std::string const&>(probe);

  nb::bind_vector<std::vector<Value>>(module, "Series");
  nb::class_<Listener, PyListener>(module, "Listener").def(nb::init<>()).def("frame", &Listener::frame);
  module.def("fire", &fire);
}
