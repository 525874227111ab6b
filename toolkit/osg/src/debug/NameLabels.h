#pragma once

#include <osg/Geode>
#include <osg/Matrixd>
#include <osg/ref_ptr>
#include <osgText/Text>
#include <zorSDK/Simulation.h>

#include <string>
#include <vector>

namespace zorOSG {

/** Names of bodies at their centres of mass and of constraints at their attachments, as large from any
 * distance. */
class NameLabels {
public:
  NameLabels();

  osg::Node* node() const { return m_geode.get(); }

  void update(zorSDK::Simulation const& simulation, osg::Matrixd const& toDrawn);

private:
  struct Label {
    osg::ref_ptr<osgText::Text> drawable;
    std::string text;
    bool ofBody = true;
  };

  void write(std::string const& text, osg::Vec3d const& at, bool ofBody);
  static void paint(Label& label, bool ofBody);

  osg::ref_ptr<osg::Geode> m_geode;
  std::vector<Label> m_labels;
  std::size_t m_used = 0;
};

} // namespace zorOSG
