#include "ErrorPanel.h"

#include <zorPython/ScriptManager.h>

#include <filesystem>
#include <sstream>
#include <vector>

namespace zorOSG {

namespace {

using zorPython::ScriptError;
using zorPython::ScriptManager;

constexpr std::size_t MAX_LINES = 18;
constexpr std::size_t MAX_COLUMNS = 110;

constexpr float MARGIN = 18;
constexpr float GAP = 8;
osg::Vec4 const TITLE(1.0f, 0.55f, 0.42f, 1), TEXT(0.93f, 0.94f, 0.96f, 1);

/** Cuts a line that is too long, between two letters of UTF-8. */
std::string shortened(std::string line) {
  if (line.size() <= MAX_COLUMNS)
    return line;
  std::size_t length = MAX_COLUMNS;
  while (length > 0 && (line[length] & 0xC0) == 0x80)
    --length;
  return line.substr(0, length) + " ...";
}

/** The end of a text is what matters of a traceback. */
std::string lastLines(std::string const& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);)
    lines.push_back(shortened(line));
  std::string result = lines.size() > MAX_LINES ? "...\n" : "";
  for (std::size_t i = lines.size() > MAX_LINES ? lines.size() - MAX_LINES : 0; i < lines.size(); ++i)
    result += lines[i] + "\n";
  return result;
}

std::string placeOf(ScriptError const& error) {
  std::string const file = std::filesystem::path(error.file).filename().string();
  return file.empty() || error.line == 0 ? file : file + ", line " + std::to_string(error.line);
}

std::string bodyOf(ScriptError const& error) {
  if (!error.traceback.empty())
    return error.traceback;
  std::string const place = placeOf(error);
  return (place.empty() ? "" : place + ": ") + error.message;
}

} // namespace

std::optional<ScriptError> ErrorPanel::takeNew() {
  ScriptManager const* const scripts = ScriptManager::instance("", "", "", false);
  std::size_t const count = scripts ? scripts->getNumErrors() : 0;
  bool const more = count > m_numTaken;
  m_numTaken = count;
  return more ? scripts->getLatestError() : std::nullopt;
}

void ErrorPanel::update() {
  auto const error = takeNew();
  if (!error)
    return;
  std::string const place = placeOf(*error);
  show("Error in a script" + (place.empty() ? "" : ": " + place), "", bodyOf(*error));
}

void ErrorPanel::showFailure(std::string const& scene, std::string const& reason) {
  auto const error = takeNew();
  show("The scene '" + scene + "' could not be built",
       "It is tried again when its file changes, or with the key r.", error ? bodyOf(*error) : reason);
}

void ErrorPanel::clear() {
  takeNew();
  m_panel.setVisible(false);
}

void ErrorPanel::show(std::string const& title, std::string const& hint, std::string const& text) {
  m_panel.clear();
  osg::BoundingBox box = m_panel.addText(title, {MARGIN, -MARGIN}, TITLE, 16).getBoundingBox();
  if (!hint.empty())
    box.expandBy(m_panel.addText(hint, {MARGIN, box.yMin() - GAP}, TEXT, 14).getBoundingBox());
  osgText::Text& body = m_panel.addText(lastLines(text), {MARGIN, box.yMin() - 2 * GAP}, TEXT, 14);
  if (auto const font = osgText::readRefFontFile("DejaVu Sans Mono"))
    body.setFont(font); // the interpreter marks what is wrong in the line above
  box.expandBy(body.getBoundingBox());
  m_panel.setSize(box.xMax() + MARGIN, MARGIN - box.yMin());
  m_panel.setVisible(true);
}

} // namespace zorOSG
