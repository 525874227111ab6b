#include "ImageFile.h"

#include <osgDB/ReadFile>

#include "ReaderMessages.h"
#include "ResourceFile.h"

namespace zorOSG {

osg::ref_ptr<osg::Image> readImage(std::string const& what, std::string const& filename) {
  std::string const path = findResourceFile(filename);
  if (path.empty()) {
    logMissingFile(what, filename);
    return nullptr;
  }
  ReaderMessages const printed;
  osg::ref_ptr<osg::Image> image = osgDB::readRefImageFile(path);
  if (!image || image->s() <= 0 || image->t() <= 0 || !image->data()) {
    logReadError(what, path, printed.text().empty() ? "no reader understands it" : printed.text());
    return nullptr;
  }
  printed.log(path);
  return image;
}

} // namespace zorOSG
