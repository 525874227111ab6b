#include <zorOSG/ReadNode.h>

#include <filesystem>

#include <osg/Geometry>
#include <osg/NodeVisitor>
#include <osgDB/FileNameUtils>
#include <osgDB/Options>
#include <osgDB/Registry>

#include "MeshBuilder.h"
#include "ReaderMessages.h"
#include "ResourceFile.h"

namespace zorOSG {

namespace {

class VertexBufferEnabler : public osg::NodeVisitor {
public:
  VertexBufferEnabler() : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN) { setNodeMaskOverride(~0u); }
  void apply(osg::Geometry& mesh) override { useVertexBuffers(mesh); }
};

std::string findModel(std::string const& filename, bool searchForIve) {
  if (searchForIve) {
    std::string const binary = findResourceFile(osgDB::getNameLessExtension(filename) + ".ive");
    if (!binary.empty())
      return binary;
  }
  return findResourceFile(filename);
}

std::string reasonFor(osgDB::ReaderWriter::ReadResult const& result, std::string const& path,
                      std::string const& printed) {
  if (!result.message().empty())
    return result.message();
  if (result.notHandled() || result.notFound()) // the file is there, so its reader is not
    return "no reader for files with extension \"" + osgDB::getFileExtension(path) + "\"";
  return printed.empty() ? "the file holds no model that the reader understands" : printed;
}

} // namespace

osg::Node* readNodeFile(std::string const& filename, bool searchForIve) {
  osg::ref_ptr<osgDB::Options> const options = new osgDB::Options("noRotation");
  return readNodeFile(filename, options.get(), searchForIve);
}

osg::Node* readNodeFile(std::string const& filename, osgDB::ReaderWriter::Options const* options,
                        bool searchForIve) {
  std::string const path = findModel(filename, searchForIve);
  if (path.empty() || std::filesystem::is_directory(path)) {
    if (path.empty())
      logMissingFile("Model file", filename);
    else
      logReadError("Model file", path, "it is a folder");
    return nullptr;
  }
  ReaderMessages const printed;
  osgDB::ReaderWriter::ReadResult result = osgDB::Registry::instance()->readNode(path, options);
  osg::ref_ptr<osg::Node> node = result.getNode();
  if (!node) {
    logReadError("Model file", path, reasonFor(result, path, printed.text()));
    return nullptr;
  }
  printed.log(path);
  VertexBufferEnabler enabler;
  node->accept(enabler);
  result = osgDB::ReaderWriter::ReadResult(); // its reference goes first: the caller gets the last one
  return node.release();
}

} // namespace zorOSG
