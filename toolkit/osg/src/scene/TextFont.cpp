#include "TextFont.h"

#include <osgDB/FileNameUtils>
#include <osgDB/FileUtils>

namespace zorOSG {

namespace {

/** Folder of the default font where distributions put it, which is on no search path. */
std::string const FONT_FOLDER = "/usr/share/fonts/truetype/dejavu/";

} // namespace

osg::ref_ptr<osgText::Font> readTextFont(std::string const& name) {
  if (name.empty())
    return nullptr;
  std::string file = osgText::findFontFile(name);
  bool const isFile = !osgDB::getFileExtension(name).empty();
  if (isFile && osgDB::getSimpleFileName(file) != osgDB::getSimpleFileName(name))
    file = osgDB::fileExists(FONT_FOLDER + name) ? FONT_FOLDER + name : std::string();
  return file.empty() ? nullptr : osgText::readRefFontFile(file);
}

osgText::Font* defaultTextFont() {
  static osg::ref_ptr<osgText::Font> const font = readTextFont("DejaVuSans.ttf");
  return font.get();
}

} // namespace zorOSG
