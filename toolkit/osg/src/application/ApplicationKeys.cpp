#include "ExampleApplicationImpl.h"

#include <zor/Notify.h>
#include <zorOSG/CameraFunctions.h>
#include <zorOSG/Lookup.h>

#include <osgGA/GUIEventAdapter>
#include <osgGA/NodeTrackerManipulator>

#include <array>
#include <sstream>

namespace zorOSG {

namespace {

using Keys = osgGA::GUIEventAdapter;

/** Every method once, in the order in which a key goes through them. */
constexpr std::array<std::pair<SceneDecorator::ShadowMethod, char const*>, 7> SHADOWS = {
    {{SceneDecorator::SOFT_SHADOWMAP, "soft shadow map"},
     {SceneDecorator::SHADOWMAP, "shadow map"},
     {SceneDecorator::SHADOWVOLUME, "shadow volumes"},
     {SceneDecorator::PARALLELLSPLIT_SHADOWMAP, "split shadow map"},
     {SceneDecorator::LIGHTSPACEPERSPECTIVE_SHADOWMAP, "perspective shadow map"},
     {SceneDecorator::SHADOWTEXTURE, "shadow texture"},
     {SceneDecorator::NO_SHADOWS, "no shadows"}}};

void say(std::string const& message) {
  zor::notify(zor::Notify::NOTIFY_INFO) << message << zor::endMessage;
}

} // namespace

// --- The table

std::function<void()> ExampleApplication::Impl::later(std::function<void()> action) {
  // Not at once: a scene must not be taken apart while its listeners get events.
  return [this, action] { pendingAction = action; };
}

void ExampleApplication::Impl::bindKeys() {
  keys = KeyMap({simulationKeys(), viewKeys(), drawingKeys(), debugKeys(), windowKeys()});
}

KeyMap::Group ExampleApplication::Impl::simulationKeys() {
  return {"Simulation",
          {{'e', "pause or play", [this] { app.setAutoStepping(!autoStepping); }},
           {'s', "take one step and pause",
            [this] {
              app.setAutoStepping(false);
              stepOnce = true;
            }},
           {'r', "reset: build the scene anew", later([this] { app.reloadScene(); })},
           {'n', "next scene", later([this] { app.createNextScene(); })},
           {'p', "previous scene", later([this] { app.createPreviousScene(); })}}};
}

KeyMap::Group ExampleApplication::Impl::viewKeys() {
  return {"View",
          {{Keys::KEY_Space, "camera home", [this] { camera.goHome(graph.bound()); }},
           {'f', "fit the scene into the view", [this] { app.fitSceneIntoView(); }},
           {'x', "turn to the middle of the scene", [this] { app.centerScene(); }},
           {'m', "turn about the scene, or fly: arrows, Page Up and Down",
            [this] { camera.switchMode(graph.bound()); }},
           {'t', "follow the body under the mouse, or let go", [this] { followBodyUnderMouse(); }},
           {'V', "keep this view", [this] { keepView(); }},
           {'v', "next kept view", [this] { showNextView(); }}}};
}

KeyMap::Group ExampleApplication::Impl::drawingKeys() {
  return {"Drawing",
          {{'g', "grid", [this] { app.setEnableGrid(!app.getEnableGrid()); }},
           {'a', "coordinate system",
            [this] { app.setEnableCoordinateSystem(!app.getEnableCoordinateSystem()); }},
           {'l', "next kind of shadows", [this] { showNextShadows(); }},
           {'o', "scene on or off", [this] { app.setEnableOSGRenderer(!app.getEnableOSGRenderer()); }}}};
}

KeyMap::Group ExampleApplication::Impl::debugKeys() {
  KeyMap::Group group{"Debug rendering", {{'d', "on or off", [this] {
                                             app.setEnableDebugRenderer(!app.getEnableDebugRenderer());
                                           }}}};
  constexpr std::array<std::pair<RenderProxyFactory::Kind, char const*>, 5> kinds = {
      {{RenderProxyFactory::CONTACTS, "contacts"},
       {RenderProxyFactory::CONSTRAINT_AXES, "axes of constraints"},
       {RenderProxyFactory::BOUNDING_BOXES, "bounding boxes"},
       {RenderProxyFactory::CENTERS_OF_MASS, "centres of mass, velocities"},
       {RenderProxyFactory::COLLISION_SHAPES, "collision shapes"}}};
  int key = Keys::KEY_F5;
  for (auto const& [kind, text] : kinds)
    group.bindings.push_back({key++, text, [this, kind] { switchDebugKind(kind); }});
  group.bindings.push_back(
      {key, "names", [this] { app.setEnableTextDebugRendering(!app.getEnableTextDebugRendering()); }});
  return group;
}

KeyMap::Group ExampleApplication::Impl::windowKeys() {
  return {"Window",
          {{'i', "statistics",
            [this] {
              statistics.setVisible(!statistics.isVisible());
              measureFrames(statistics.isVisible());
            }},
           {'h', "this help",
            [this] {
              help.setVisible(!help.isVisible());
              updateHelp();
            }},
           {'c', "screen shot", [this] { app.takeScreenShot(); }},
           {Keys::KEY_Escape, "quit", [this] {
              if (quitEventSetsDone)
                host->viewer().setDone(true);
            }}}};
}

// --- What keys do

void ExampleApplication::Impl::switchDebugKind(RenderProxyFactory::Kind kind) {
  bool const isOn = app.getEnableDebugRenderer();
  proxies.setKindShown(kind, !isOn || !proxies.isKindShown(kind));
  app.setEnableDebugRenderer(true);
}

void ExampleApplication::Impl::showNextShadows() {
  std::size_t next = 0;
  for (std::size_t i = 0; i < SHADOWS.size(); ++i)
    if (SHADOWS[i].first == graph.decorator()->getShadowMethod())
      next = (i + 1) % SHADOWS.size();
  graph.decorator()->setShadowMethod(SHADOWS[next].first);
  say(std::string("shadows: ") + SHADOWS[next].second);
}

void ExampleApplication::Impl::keepView() {
  CameraControl::Pose const pose = camera.current();
  views.save(pose);
  std::ostringstream text;
  text << "view " << views.size() << ": eye " << pose.eye << ", center " << pose.center << ", up " << pose.up;
  say(text.str());
}

void ExampleApplication::Impl::showNextView() {
  if (CameraControl::Pose const* const pose = views.next())
    camera.show(*pose);
}

void ExampleApplication::Impl::followBodyUnderMouse() {
  if (camera.isTracking()) {
    camera.letGo();
    return;
  }
  if (!simulation)
    return;
  auto const [x, y] = input->mousePosition();
  auto const contact = getHoveredGeometryContact(app.getCamera(), simulation->getSpace(), x, y);
  zorCollide::Geometry* const geometry = contact.getGeometry1();
  GeometryNode* const node = geometry ? findGeometryNode(geometry, graph.sceneRoot()) : nullptr;
  if (!node || !geometry->getRigidBody())
    return;
  CameraControl::Pose pose = camera.current();
  pose.center = geometry->getPosition();
  camera.track(*node, pose, osgGA::NodeTrackerManipulator::NODE_CENTER);
}

bool ExampleApplication::Impl::keyDown(int key) {
  if (auto const index = scenes.findKey(key)) {
    pendingAction = [this, index] { app.createSceneFromIndex(static_cast<int>(*index)); };
    return true;
  }
  KeyMap::Binding const* const binding = keys.find(key);
  if (!binding)
    return false;
  try {
    binding->action();
  } catch (std::exception const& error) { // what one key cannot do must not end the run
    zor::notify(zor::Notify::NOTIFY_ERROR) << binding->text << ": " << error.what() << zor::endMessage;
  }
  return true;
}

// --- Help

void ExampleApplication::Impl::updateHelp() {
  if (help.isVisible())
    help.show(helpSections());
}

std::vector<HelpSection> ExampleApplication::Impl::helpSections() const {
  auto sections = keys.describe([this](int key) { return scenes.findKey(key).has_value(); });
  sections.push_back({"Mouse",
                      {{"left", "turn the camera"},
                       {"Shift+left", "drag a body"},
                       {"middle", "move the camera"},
                       {"right, wheel", "nearer, farther"}}});
  HelpSection sceneList{"Scenes", {}};
  for (std::size_t i = 0; i < scenes.size(); ++i) {
    auto const& entry = scenes.at(i);
    sceneList.lines.emplace_back(entry.key ? KeyMap::labelOf(*entry.key) : "",
                                 SceneList::describe(entry.description));
  }
  HelpSection ofScene{"This scene", {}};
  for (auto const& listener : simulation ? simulation->getListeners() : zorSDK::EventListenerRefVector())
    if (!listener->getName().empty() && dynamic_cast<zorSDK::GuiEventListener*>(listener.get()))
      ofScene.lines.emplace_back("", listener->getName());
  for (HelpSection& section : std::array{sceneList, ofScene})
    if (!section.lines.empty())
      sections.push_back(std::move(section));
  return sections;
}

} // namespace zorOSG
