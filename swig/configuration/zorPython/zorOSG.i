%module(directors="1", threads="1") zorOSG

// Siblings first: a type is known by the module that wraps it.
%pythonbegin %{
import osg
import osgDB
import osgText
import osgGA
import osgSim
import osgViewer
import zorPython
import zor
import zorStream
import zorIO
import zorRender
import zorCollide
import zorSDK
%}

%constant int SWIG_MODULE_zorOSG = 1;

%{
#include "headers/osg.h"
#include "headers/osgDB.h"
#include "headers/osgText.h"
#include "headers/osgGA.h"
#include "headers/osgSim.h"
#include "headers/osgViewer.h"
#include "headers/zor.h"
#include "headers/zorStream.h"
#include "headers/zorIO.h"
#include "headers/zorRender.h"
#include "headers/zorCollide.h"
#include "headers/zorSDK.h"
#include "headers/zorOSG.h"
%}

// What this module returns is borrowed: the scene graph, the application or the simulation owns it.
%define ZOR_BORROWED_RESULTS %enddef

// The input callbacks of the simulation's listener are reported under this module's own listener.
%define ZOR_GUI_LISTENER "zorOSG::GuiEventListener" %enddef
%define ZOR_GUI_FILE "zorOSG.i" %enddef
%define ZOR_GUI_LINES 681 %enddef

%include "shared/toolkit.i"
%include "shared/standard_vectors.i"

%import "osg.i"
%import "osgDB.i"
%import "osgText.i"
%import "osgGA.i"
%import "osgSim.i"
%import "osgViewer.i"
%import "zor.i"
%import "zorStream.i"
%import "zorIO.i"
%import "zorRender.i"
%import "zorCollide.i"
%import "zorSDK.i"

%include "shared/lent.i"
ZOR_LENT(osg::Object)
ZOR_LENT(osg::Node)
ZOR_LENT(osg::Group)
ZOR_LENT(osg::Geode)
ZOR_LENT(osg::MatrixTransform)
ZOR_LENT(osg::Camera)
ZOR_LENT(osg::Geometry)
ZOR_LENT(osg::Image)
ZOR_LENT(osg::LightSource)
ZOR_LENT(osg::Material)
ZOR_LENT(osg::StateSet)
ZOR_LENT(osg::Texture2D)
ZOR_LENT(osg::TextureCubeMap)
ZOR_LENT(osgGA::EventQueue)
ZOR_LENT(osgGA::MatrixManipulator)
ZOR_LENT(osgText::Text)
ZOR_LENT(osgViewer::Viewer)
ZOR_LENT(zor::ParticleSystem)
ZOR_LENT(zorCollide::Geometry)
ZOR_LENT_NEW(zorCollide::Trimesh)
ZOR_LENT_NEW(zorSDK::EventListener)
ZOR_LENT(zorIO::ArgumentParser)
ZOR_LENT(zorSDK::Simulation)
ZOR_LENT(zorOSG::ExampleApplication)
ZOR_LENT(zorOSG::GeometryNode)
ZOR_LENT(zorOSG::ImageCapture)
ZOR_LENT(zorOSG::ImageCaptureBase)
ZOR_LENT(zorOSG::Panel)
ZOR_LENT(zorOSG::PickHandler)
ZOR_LENT(zorOSG::ParticleSystemDrawable)
ZOR_LENT(zorOSG::SceneDecorator)
ZOR_LENT(zorOSG::Texture2D)
ZOR_LENT(zorOSG::VideoFFMPEGPipeCapture)

// A node class whose proxies hold a reference through functions that the visualisation library exports.
%define ZOR_OSG_COUNTED(CLASS, FUNCTIONS)
%feature("ref") zorOSG::CLASS #FUNCTIONS "_reference($this);"
%extend zorOSG::CLASS {
  ~CLASS() { FUNCTIONS ## _unreference($self); }
}
%enddef

%include "scene/text.i"
%include "scene/geometry_node.i"
%include "scene/transform.i"
%include "scene/references.i"
%include "scene/lookup.i"
%include "application/scene_decorator.i"
%include "sensors/render_target.i"
%include "sensors/capture.i"
%include "renderers/scalar_color_map.i"
%include "renderers/particle_system_drawable.i"
%include "scene/create_visual.i"
%include "scene/read.i"
%include "scene/render_state.i"
%include "scene/panel.i"
%include "scene/light_source.i"
%include "scene/clip_plane.i"
%include "scene/sky_box.i"
%include "scene/texture.i"
%include "scene/primitives.i"
%include "sensors/lidar.i"
%include "application/camera_data.i"
%include "application/embedded_gl_window.i"
%include "application/pick_handler.i"
%include "application/camera_functions.i"
%include "application/gui_event_listener.i"
%include "application/example_application_listener.i"
%include "application/scene_description.i"
%include "application/example_application.i"
%include "scene/geometry_node_vector.i"
%include "sensors/output_values.i"
%include "sensors/output_vectors.i"
%include "sensors/output_buffers.i"
%include "sensors/recording.i"

// Errors of callbacks need a script manager from the first frame on.
%{
#include <zorPython/ScriptManager.h>
%}
%init %{
  zorPython::ScriptManager::getOrCreate();
  // An interpreter that Ctrl-C has ended raises the signal anew in the end, which skips what exit() would do.
  Py_AtExit(zorOSG::VideoFFMPEGPipeCapture::finishAll);
%}

%pythoncode %{
from zorPython import createPanel, getCurrentApplication
%}
