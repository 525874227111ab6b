#include "HelpOverlay.h"

#include <algorithm>

namespace zorOSG {

namespace {

constexpr float MARGIN = 18;
constexpr float LINE = 21;
constexpr float HEADING = 24;
constexpr float BETWEEN = 10;
constexpr float GAP = 14;
constexpr float COLUMN_GAP = 36;

osg::Vec4 const TITLE(1.0f, 0.78f, 0.35f, 1), KEY(0.62f, 0.82f, 1.0f, 1), TEXT(0.93f, 0.94f, 0.96f, 1);

float heightOf(HelpSection const& section) {
  return HEADING + LINE * static_cast<float>(section.lines.size()) + BETWEEN;
}

/** \return number of sections in the first of two columns, so that the longer one is as short as it can be */
std::size_t balance(std::vector<HelpSection> const& sections) {
  float total = 0;
  for (HelpSection const& section : sections)
    total += heightOf(section);
  float left = 0, best = total;
  std::size_t split = sections.size();
  for (std::size_t i = 0; i < sections.size(); ++i) {
    left += heightOf(sections[i]);
    float const longer = std::max(left, total - left);
    if (longer < best) {
      best = longer;
      split = i + 1;
    }
  }
  return split;
}

float rightOf(osgText::Text const& text) {
  osg::BoundingBox const& box = text.getBoundingBox();
  return box.valid() ? box.xMax() : 0;
}

} // namespace

osg::Vec2 HelpOverlay::writeColumn(std::vector<HelpSection> const& sections, std::size_t first,
                                   std::size_t last, float left) {
  float widestKey = 0, right = left, y = -MARGIN;
  std::vector<osgText::Text*> texts;
  for (std::size_t i = first; i < last; ++i) {
    right = std::max(right, rightOf(addText(sections[i].title, {left, y}, TITLE, 16)));
    y -= HEADING;
    for (auto const& [key, text] : sections[i].lines) {
      widestKey = std::max(widestKey, rightOf(addText(key, {left, y}, KEY)));
      texts.push_back(&addText(text, {left, y}, TEXT));
      y -= LINE;
    }
    y -= BETWEEN;
  }
  for (osgText::Text* const text : texts) {
    osg::Vec3 const at = text->getPosition();
    text->setPosition({widestKey + GAP, at.y(), 0});
    right = std::max(right, rightOf(*text));
  }
  return {right, y + BETWEEN};
}

void HelpOverlay::show(std::vector<HelpSection> const& sections) {
  clear();
  std::size_t const split = balance(sections);
  osg::Vec2 const first = writeColumn(sections, 0, split, MARGIN);
  osg::Vec2 const second =
      split < sections.size() ? writeColumn(sections, split, sections.size(), first.x() + COLUMN_GAP) : first;
  setSize(second.x() + MARGIN, MARGIN - std::min(first.y(), second.y()));
}

} // namespace zorOSG
