// Methods whose errors go to the toolkit's log: the wrapper returns null and sets no error of its own, so that a
// pending Python error of an override is what the caller sees. One table for all of them; a row has an effect in the
// module that wraps the class.

%{
#include "runtime/ErrorLog.h"
%}

%define ZOR_LOGGING_GUARD(METHOD, FILE, LINE)
%exception zorOSG::METHOD {
  try {
    $action
  } catch (std::exception const& error) {
    zorBinding::logError("$wrapname", "swig/configuration/zorPython/" FILE ".i", LINE, error);
    SWIG_fail;
  } catch (...) {
    zorBinding::setToolkitError();
    SWIG_fail;
  }
  if (zorBinding::errorPending()) SWIG_fail;
}
%enddef

ZOR_LOGGING_GUARD(PressureFieldRenderer::addTriangle, "zorModel", 111)
ZOR_LOGGING_GUARD(PressureFieldRenderer::clear, "zorModel", 112)
ZOR_LOGGING_GUARD(PressureFieldRenderer::done, "zorModel", 113)
ZOR_LOGGING_GUARD(PressureFieldRenderer::updateTransform, "zorModel", 114)
ZOR_LOGGING_GUARD(RigidBodyColorRenderer::addNotification, "zorSDK", 74)
ZOR_LOGGING_GUARD(RigidBodyColorRenderer::removeNotification, "zorSDK", 75)
ZOR_LOGGING_GUARD(SplineRenderer::removeNotification, "zorSDK", 75)
ZOR_LOGGING_GUARD(SplineRendererOld::removeNotification, "zorSDK", 75)
ZOR_LOGGING_GUARD(PickHandler::update, "zorSDK", 78)
ZOR_LOGGING_GUARD(DeformableMeshUpdater::update, "zorSDK", 78)
ZOR_LOGGING_GUARD(PickHandler::keyboard, "zorSDK", 79)
ZOR_LOGGING_GUARD(PickHandler::mouse, "zorSDK", 80)
ZOR_LOGGING_GUARD(PickHandler::mouseDragged, "zorSDK", 82)
ZOR_LOGGING_GUARD(RigidBodyColorRenderer::post, "zorSDK", 87)
ZOR_LOGGING_GUARD(DeformableHeightFieldRenderer::last, "zorSDK", 88)
ZOR_LOGGING_GUARD(CableDamageRenderer::last, "zorSDK", 88)
ZOR_LOGGING_GUARD(ExampleApplicationListener::preFrame, "zorOSG", 720)
ZOR_LOGGING_GUARD(ExampleApplicationListener::postFrame, "zorOSG", 721)
