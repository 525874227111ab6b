#include "TextFont.h"

#include <string>

#include <osgDB/FileUtils>

namespace zorOSG {

namespace {

osg::ref_ptr<osgText::Font> readDefaultFont() {
  // Distributions put it into a folder of its own, which is on no search path.
  for (std::string const name : {"/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf", "DejaVuSans.ttf"})
    if (!osgText::findFontFile(name).empty())
      if (osg::ref_ptr<osgText::Font> font = osgText::readRefFontFile(name))
        return font;
  return nullptr;
}

} // namespace

osgText::Font* defaultTextFont() {
  static osg::ref_ptr<osgText::Font> const font = readDefaultFont();
  return font.get();
}

} // namespace zorOSG
