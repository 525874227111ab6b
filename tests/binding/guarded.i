%module(directors="1", threads="1") guarded

// A module of the tests: classes by the names that the table of logged methods knows, whose methods fail as they are
// told. Not to be imported beside the module that wraps the real ones.
%include "shared/common.i"

%{
#include <stdexcept>

enum Failure { NONE, STANDARD, DIRECTOR, NUMBER };
static Failure failure = NONE;

static void act() {
  if (failure == STANDARD) throw std::runtime_error("broken");
  if (failure == NUMBER) throw 5;
  if (failure == DIRECTOR) {
    PyErr_SetString(PyExc_KeyError, "from the override");
    Swig::DirectorMethodException::raise("Error detected when calling 'Some.method'");
  }
}
%}

%inline %{
static void setFailure(int kind) { failure = static_cast<Failure>(kind); }

namespace zorOSG {
class PressureFieldRenderer {
public:
  void addTriangle() { act(); }
  void clear() { act(); }
  void done() { act(); }
  void updateTransform() { act(); }
  void other() { act(); }
};
class RigidBodyColorRenderer {
public:
  void addNotification() { act(); }
  void removeNotification() { act(); }
  void post(double) { act(); }
};
class SplineRenderer {
public:
  void removeNotification() { act(); }
};
class SplineRendererOld {
public:
  void removeNotification() { act(); }
};
class PickHandler {
public:
  void update(float, float) { act(); }
  bool keyboard(int) { act(); return true; }
  bool mouse(int) { act(); return true; }
  bool mouseDragged(int) { act(); return true; }
};
class DeformableMeshUpdater {
public:
  void update(float, float) { act(); }
  void update() { act(); }
};
class DeformableHeightFieldRenderer {
public:
  void last(double) { act(); }
};
class CableDamageRenderer {
public:
  void last(double) { act(); }
};
class ExampleApplicationListener {
public:
  void preFrame(void*) { act(); }
  void postFrame(void*) { act(); }
};
}
%}
