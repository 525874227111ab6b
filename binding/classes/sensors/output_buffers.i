// Python's buffer protocol for output values and their vectors: shape (channels,) and (count, channels).

%{
#include "runtime/BufferView.h"
#include "runtime/PixelBuffer.h"
#include <unordered_map>

// How the memory of one wrapped class is described.
typedef void (*ZorPixelLayout)(void* object, zorBinding::PixelMemory& memory);

static std::unordered_map<swig_type_info*, ZorPixelLayout> zorPixelLayouts;

template <class T, int N>
static void zorValueLayout(void* object, zorBinding::PixelMemory& memory) {
  memory.data = object;
  memory.channels = N;
  memory.itemSize = sizeof(T);
  memory.format = zorBinding::formatOf<T>();
}

template <class T, int N>
static void zorVectorLayout(void* object, zorBinding::PixelMemory& memory) {
  auto& vector = *static_cast<std::vector<zorOSG::NeoCameraOutputValue<T, N>>*>(object);
  zorValueLayout<T, N>(vector.data(), memory);
  memory.isRow = true;
  memory.count = static_cast<Py_ssize_t>(vector.size());
  memory.owner = &vector;
}

template <class T, int N>
static void zorOfferBuffers() {
  zorPixelLayouts[zorTypeOf<zorOSG::NeoCameraOutputValue<T, N>>] = zorValueLayout<T, N>;
  zorPixelLayouts[zorTypeOf<std::vector<zorOSG::NeoCameraOutputValue<T, N>>>] = zorVectorLayout<T, N>;
}

static bool zorReadPixels(PyObject* object, zorBinding::PixelMemory& memory) {
  SwigPyObject* const wrapped = SWIG_Python_GetSwigThis(object);
  auto const layout = wrapped && wrapped->ptr ? zorPixelLayouts.find(wrapped->ty) : zorPixelLayouts.end();
  if (layout == zorPixelLayouts.end()) {
    PyErr_SetString(PyExc_BufferError, "the object holds no pixels");
    return false;
  }
  layout->second(wrapped->ptr, memory);
  if (!memory.isRow && !(wrapped->own & SWIG_POINTER_OWN)) {
    memory.owner = zorBinding::vectorOfElement(reinterpret_cast<PyObject*>(wrapped));
  }
  return true;
}

// A Python class is tied to its type: where that has pixels, the class gets the buffer protocol.
static void zorTypeRegistered(swig_type_info* type, void* data) {
  SWIG_TypeNewClientData(type, data);
  if (!data || !zorPixelLayouts.contains(type)) return;
  PyObject* const pythonClass = static_cast<SwigPyClientData*>(data)->klass;
  if (!PyType_Check(pythonClass)) return;
  if (!zorBinding::offerPixelBuffer(reinterpret_cast<PyTypeObject*>(pythonClass), zorReadPixels)) {
    PyErr_WriteUnraisable(pythonClass);
  }
}
#define SWIG_TypeNewClientData zorTypeRegistered
%}

%define ZOR_OUTPUT_BUFFER(SUFFIX, CHANNELS, ELEMENT)
%init %{
  zorOfferBuffers<ELEMENT, CHANNELS>();
%}
%enddef
ZOR_FOR_OUTPUT_VALUES(ZOR_OUTPUT_BUFFER)
