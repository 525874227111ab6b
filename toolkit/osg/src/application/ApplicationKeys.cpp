#include "ExampleApplicationImpl.h"

#include <zor/Notify.h>

#include <osgGA/GUIEventAdapter>

#include <cctype>
#include <cstdio>
#include <sstream>

namespace zorOSG {

namespace {

using Keys = osgGA::GUIEventAdapter;

std::string keyLabel(int key) {
  if (key > 32 && key < 127)
    return std::string(1, static_cast<char>(key));
  char label[16];
  if (key >= Keys::KEY_F1 && key <= Keys::KEY_F12)
    std::snprintf(label, sizeof label, "F%d", key - Keys::KEY_F1 + 1);
  else
    std::snprintf(label, sizeof label, "key %d", key);
  return label;
}

void addLine(std::ostream& out, std::string const& label, std::string const& text) {
  out << "  " << label << std::string(label.size() < 10 ? 10 - label.size() : 1, ' ') << text << "\n";
}

} // namespace

void ExampleApplication::Impl::bindKeys() {
  auto const later = [this](std::function<void()> action) {
    // Not at once: a scene must not be taken apart while its listeners get events.
    return [this, action] { pendingAction = action; };
  };
  keys = {
      {'e', "e", "pause or play", [this] { app.setAutoStepping(!autoStepping); }},
      {'s', "s", "take one step and pause",
       [this] {
         app.setAutoStepping(false);
         stepOnce = true;
       }},
      {'r', "r", "reset: build the scene anew", later([this] { app.reloadScene(); })},
      {'n', "n", "next scene", later([this] { app.createNextScene(); })},
      {'p', "p", "previous scene", later([this] { app.createPreviousScene(); })},
      {'f', "f", "fit the scene into the view", [this] { app.fitSceneIntoView(); }},
      {'g', "g", "grid", [this] { app.setEnableGrid(!app.getEnableGrid()); }},
      {'i', "i", "statistics", [this] { statistics.setVisible(!statistics.isVisible()); }},
      {'c', "c", "screen shot", [this] { app.takeScreenShot(); }},
      {'h', "h", "this help",
       [this] {
         help.setVisible(!help.isVisible());
         help.setText(helpText());
       }},
      {Keys::KEY_Space, "space", "camera home", [this] { camera.goHome(graph.bound()); }},
      {Keys::KEY_Escape, "Esc", "quit",
       [this] {
         if (quitEventSetsDone)
           host->viewer().setDone(true);
       }},
  };
}

bool ExampleApplication::Impl::keyDown(int key) {
  if (auto const index = scenes.findKey(key)) {
    pendingAction = [this, index] { app.createSceneFromIndex(static_cast<int>(*index)); };
    return true;
  }
  for (KeyBinding const& binding : keys) {
    if (binding.key != key)
      continue;
    try {
      binding.action();
    } catch (std::exception const& error) { // what one key cannot do must not end the run
      zor::notify(zor::Notify::NOTIFY_ERROR) << binding.text << ": " << error.what() << zor::endMessage;
    }
    return true;
  }
  return false;
}

std::string ExampleApplication::Impl::helpText() const {
  std::ostringstream out;
  out << "Keys\n";
  for (KeyBinding const& binding : keys)
    if (!scenes.findKey(binding.key))
      addLine(out, binding.label, binding.text);
  out << "Mouse\n";
  addLine(out, "left", "turn the camera");
  addLine(out, "Shift+left", "drag a body");
  addLine(out, "middle", "move the camera");
  addLine(out, "right", "nearer, farther (or wheel)");
  for (std::size_t i = 0; i < scenes.size(); ++i) {
    auto const& entry = scenes.at(i);
    out << (i == 0 ? "Scenes\n" : "");
    addLine(out, entry.key ? keyLabel(*entry.key) : "", SceneList::describe(entry.description));
  }
  bool first = true;
  for (auto const& listener : simulation ? simulation->getListeners() : zorSDK::EventListenerRefVector()) {
    if (listener->getName().empty() || !dynamic_cast<zorSDK::GuiEventListener*>(listener.get()))
      continue;
    out << (first ? "This scene\n" : "") << "  " << listener->getName() << "\n";
    first = false;
  }
  return out.str();
}

} // namespace zorOSG
