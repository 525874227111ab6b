#include "EglDisplay.h"

#include <EGL/eglext.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <functional>
#include <mutex>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace zorOSG {

namespace {

char const* errorName(EGLint error) {
  switch (error) {
  case EGL_SUCCESS:
    return "no reason given";
  case EGL_NOT_INITIALIZED:
    return "EGL_NOT_INITIALIZED";
  case EGL_BAD_ACCESS:
    return "EGL_BAD_ACCESS";
  case EGL_BAD_ALLOC:
    return "EGL_BAD_ALLOC";
  case EGL_BAD_ATTRIBUTE:
    return "EGL_BAD_ATTRIBUTE";
  case EGL_BAD_CONFIG:
    return "EGL_BAD_CONFIG";
  case EGL_BAD_CONTEXT:
    return "EGL_BAD_CONTEXT";
  case EGL_BAD_CURRENT_SURFACE:
    return "EGL_BAD_CURRENT_SURFACE";
  case EGL_BAD_DISPLAY:
    return "EGL_BAD_DISPLAY";
  case EGL_BAD_MATCH:
    return "EGL_BAD_MATCH";
  case EGL_BAD_NATIVE_PIXMAP:
    return "EGL_BAD_NATIVE_PIXMAP";
  case EGL_BAD_NATIVE_WINDOW:
    return "EGL_BAD_NATIVE_WINDOW";
  case EGL_BAD_PARAMETER:
    return "EGL_BAD_PARAMETER";
  case EGL_BAD_SURFACE:
    return "EGL_BAD_SURFACE";
  case EGL_CONTEXT_LOST:
    return "EGL_CONTEXT_LOST";
  default:
    return "an unknown error";
  }
}

bool contains(char const* extensions, std::string_view wanted) {
  if (!extensions)
    return false;
  std::istringstream words{extensions};
  for (std::string word; words >> word;)
    if (word == wanted)
      return true;
  return false;
}

template <typename Function>
Function function(char const* name) {
  return reinterpret_cast<Function>(eglGetProcAddress(name));
}

EGLDisplay platformDisplay(EGLenum platform, void* native) {
  auto const getPlatformDisplay = function<PFNEGLGETPLATFORMDISPLAYEXTPROC>("eglGetPlatformDisplayEXT");
  return getPlatformDisplay ? getPlatformDisplay(platform, native, nullptr) : EGL_NO_DISPLAY;
}

std::vector<EGLDeviceEXT> devices() {
  auto const query = function<PFNEGLQUERYDEVICESEXTPROC>("eglQueryDevicesEXT");
  EGLint count = 0;
  if (!query || !query(0, nullptr, &count) || count <= 0)
    return {};
  std::vector<EGLDeviceEXT> found(static_cast<size_t>(count));
  if (!query(count, found.data(), &count))
    return {};
  found.resize(static_cast<size_t>(count));
  return found;
}

bool isHardware(EGLDeviceEXT device) {
  auto const query = function<PFNEGLQUERYDEVICESTRINGEXTPROC>("eglQueryDeviceStringEXT");
  return query && !contains(query(device, EGL_EXTENSIONS), "EGL_MESA_device_software");
}

/** One way to a connection. */
struct Way {
  std::string name;
  std::function<EGLDisplay()> get;
};

void addDevices(std::vector<Way>& ways, std::vector<EGLDeviceEXT> const& found, bool hardware) {
  for (size_t i = 0; i < found.size(); ++i) {
    if (isHardware(found[i]) != hardware)
      continue;
    ways.push_back({"EGL device " + std::to_string(i) + (hardware ? "" : " (software)"),
                    [device = found[i]] { return platformDisplay(EGL_PLATFORM_DEVICE_EXT, device); }});
  }
}

/**
 * Graphics hardware comes first, because the surfaceless platform may know only a software renderer where
 * several vendors' drivers are installed.
 */
std::vector<Way> waysToADisplay() {
  char const* const extensions = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
  char const* const wanted = std::getenv("ZOR_EGL_PLATFORM");
  auto const allowed = [wanted](std::string_view name) { return !wanted || !*wanted || wanted == name; };
  std::vector<Way> ways;
  std::vector<EGLDeviceEXT> found;
  if (allowed("device") && contains(extensions, "EGL_EXT_platform_device"))
    found = devices();
  addDevices(ways, found, true);
  if (allowed("surfaceless") && contains(extensions, "EGL_MESA_platform_surfaceless"))
    ways.push_back({"EGL surfaceless",
                    [] { return platformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY); }});
  addDevices(ways, found, false);
  if (allowed("default"))
    ways.push_back({"EGL default display", [] { return eglGetDisplay(EGL_DEFAULT_DISPLAY); }});
  return ways;
}

/** \return empty if the display is initialized and has desktop OpenGL, else what EGL answered */
std::string initialize(EGLDisplay display) {
  if (display == EGL_NO_DISPLAY)
    return eglFailure("eglGetPlatformDisplay");
  if (!eglInitialize(display, nullptr, nullptr))
    return eglFailure("eglInitialize");
  if (eglBindAPI(EGL_OPENGL_API))
    return {};
  std::string const failure = eglFailure("eglBindAPI(EGL_OPENGL_API)");
  eglTerminate(display);
  return failure;
}

std::shared_ptr<EglDisplay> connect() {
  std::string answers;
  for (Way const& way : waysToADisplay()) {
    EGLDisplay const display = way.get();
    std::string const failure = initialize(display);
    if (failure.empty())
      return std::make_shared<EglDisplay>(display, way.name);
    answers += "; " + way.name + ": " + failure;
  }
  throw std::runtime_error("No off-screen OpenGL: no EGL platform works" +
                           (answers.empty() ? "; none is installed" : answers));
}

} // namespace

std::string eglFailure(std::string const& call) {
  return call + " failed: " + errorName(eglGetError());
}

std::shared_ptr<EglDisplay> EglDisplay::open() {
  static std::mutex mutex;
  static std::weak_ptr<EglDisplay> current;
  std::lock_guard const lock(mutex);
  std::shared_ptr<EglDisplay> display = current.lock();
  if (!display) {
    display = connect();
    current = display;
  }
  return display;
}

EglDisplay::EglDisplay(EGLDisplay display, std::string path) : m_display(display), m_path(std::move(path)) {}

EglDisplay::~EglDisplay() {
  eglTerminate(m_display);
}

} // namespace zorOSG
