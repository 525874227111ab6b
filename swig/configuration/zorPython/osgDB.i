%module(threads="1", docstring="Reading and writing of image and model files.") osgDB

// Siblings first: a type is known by the module that wraps it.
%pythonbegin %{
import osg
%}

%{
#include "headers/osg.h"
#include "headers/osgDB.h"
%}

%include "shared/common.i"
%include "shared/scene_graph.i"
%import "osg.i"

%{
// A file that can't be read or written is an error with its name, not a silent null.
static void zorCheckFile(bool good, char const* what, std::string const& name) {
  if (!good) throw std::runtime_error(std::string(what) + " '" + name + "'");
}
%}

%feature("ref") osgDB::Options "$this->ref();"
%extend osgDB::Options {
  ~Options() { $self->unref(); }
}

namespace osgDB {

/** Options of readers and writers. */
class Options : public osg::Object {
public:
  Options();
  Options(std::string const& options);
  void setOptionString(std::string const& options);
  std::string const& getOptionString() const;
};

} // namespace osgDB

// Both come back as shared proxies: the pointer only has to outlive the conversion.
%inline %{
/** \param filename - image file; RuntimeError if it can't be read \return a new image */
static osg::Image* readImageFile(std::string const& filename) {
  osg::ref_ptr<osg::Image> image = osgDB::readRefImageFile(filename);
  zorCheckFile(image.valid(), "can't read image file", filename);
  return image.release();
}

/** \param filename - model file; RuntimeError if it can't be read \return a new node */
static osg::Node* readNodeFile(std::string const& filename) {
  osg::ref_ptr<osg::Node> node = osgDB::readRefNodeFile(filename);
  zorCheckFile(node.valid(), "can't read model file", filename);
  return node.release();
}

/**
 * \param image - the image
 * \param filename - its suffix selects the format; RuntimeError if it can't be written
 * \return true
 */
static bool writeImageFile(osg::Image const& image, std::string const& filename) {
  zorCheckFile(image.valid() && osgDB::writeImageFile(image, filename), "can't write image file", filename);
  return true;
}

/**
 * \param node - the node
 * \param filename - its suffix selects the format; RuntimeError if it can't be written
 * \return true
 */
static bool writeNodeFile(osg::Node const& node, std::string const& filename) {
  zorCheckFile(osgDB::writeNodeFile(node, filename), "can't write model file", filename);
  return true;
}
%}
