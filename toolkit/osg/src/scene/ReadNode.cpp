#include <zorOSG/ReadNode.h>

#include <filesystem>
#include <stdexcept>

#include <osg/Geometry>
#include <osg/NodeVisitor>
#include <osgDB/FileNameUtils>
#include <osgDB/Options>
#include <osgDB/Registry>

#include "MeshBuilder.h"
#include "ModelFile.h"
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

osg::ref_ptr<osg::Node> readModelFile(std::string const& path, osgDB::Options const* options) {
  if (std::filesystem::is_directory(path))
    throw std::runtime_error("it is a folder");
  ReaderMessages const printed;
  osgDB::ReaderWriter::ReadResult result = osgDB::Registry::instance()->readNode(path, options);
  osg::ref_ptr<osg::Node> node = result.getNode();
  if (!node)
    throw std::runtime_error(reasonFor(result, path, printed.text()));
  printed.log(path);
  VertexBufferEnabler enabler;
  node->accept(enabler);
  return node;
}

osg::Node* readNodeFile(std::string const& filename, osgDB::ReaderWriter::Options const* options,
                        bool searchForIve) {
  std::string const path = findModel(filename, searchForIve);
  if (path.empty()) {
    logMissingFile("Model file", filename);
    return nullptr;
  }
  try {
    return readModelFile(path, options).release();
  } catch (std::runtime_error const& error) {
    logReadError("Model file", path, error.what());
    return nullptr;
  }
}

} // namespace zorOSG
