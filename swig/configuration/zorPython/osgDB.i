%module(threads="1", docstring="Reading and writing of image and model files.") osgDB

// Siblings first: a type is known by the module that wraps it.
%pythonbegin %{
import osg
%}

%{
#include <cstring>
#include <sstream>
#include "headers/osg.h"
#include "headers/osgDB.h"
%}

%include "shared/common.i"
%include "shared/scene_graph.i"
%import "osg.i"

%{
// A file that can't be read or written is an error with its name and what the reader says, not a silent null.
template <class Result>
static void zorCheckResult(Result const& result, bool good, char const* what, std::string const& name) {
  if (good) return;
  std::string const& reason = result.message();
  throw std::runtime_error(std::string(what) + " '" + name + "'" + (reason.empty() ? "" : ": " + reason));
}

static osgDB::ReaderWriter& zorReaderFor(std::string const& suffix) {
  osgDB::ReaderWriter* reader = osgDB::Registry::instance()->getReaderWriterForExtension(suffix);
  if (!reader) throw std::invalid_argument("no reader or writer for files named *." + suffix);
  return *reader;
}

static PyObject* zorBytes(std::ostringstream const& stream) {
  std::string const text = stream.str();
  return PyBytes_FromStringAndSize(text.data(), static_cast<Py_ssize_t>(text.size()));
}

static std::string zorTextOfBytes(PyObject* data) {
  Py_buffer view;
  if (PyObject_GetBuffer(data, &view, PyBUF_SIMPLE) != 0) throw std::runtime_error("the Python error says what is wrong");
  std::string text(static_cast<char const*>(view.buf), static_cast<std::size_t>(view.len));
  PyBuffer_Release(&view);
  return text;
}
%}

OSG_OWNED_CLASS(osgDB, Options)
OSG_SHARED_CLASS(osgDB::Options)

namespace osgDB {

/** Options of readers and writers. */
class Options : public osg::Object {
public:
  Options();
  /** \param options - words that the reader of the file's format knows, such as "noRotation" */
  Options(std::string const& options);
  void setOptionString(std::string const& options);
  std::string const& getOptionString() const;
  /** Sets a value that a reader asks for by name. */
  void setPluginStringData(std::string const& name, std::string const& value) const;
};
%extend Options {
  size_t _numPaths() const { return $self->getDatabasePathList().size(); }
  std::string _path(size_t index) const { return $self->getDatabasePathList().at(index); }
  void _clearPaths() { $self->getDatabasePathList().clear(); }
  void _addPath(std::string const& path) { $self->getDatabasePathList().push_back(path); }
  %pythoncode %{
    def getDatabasePathList(self) -> list[str]:
        """Returns the folders in which files are looked for first."""
        return [self._path(i) for i in range(self._numPaths())]

    def setDatabasePathList(self, folders: Iterable[str]) -> None:
        """Sets the folders in which files are looked for first."""
        folders = [*folders]
        self._clearPaths()
        for folder in folders:
            self._addPath(folder)
  %}
}

// The other name of the options.
namespace ReaderWriter {
typedef osgDB::Options Options;
}

} // namespace osgDB

// Names of their own in C++, where the library's functions would be found as well.
%rename(readImageFile) zorReadImageFile;
%rename(readNodeFile) zorReadNodeFile;
%rename(writeImageFile) zorWriteImageFile;
%rename(writeNodeFile) zorWriteNodeFile;

// Nodes and images come back as shared proxies: the pointer only has to outlive the conversion.
%inline %{
/**
 * Reads an image; its first row is the lowest.
 * \param filename - image file, also sought along the data file path; RuntimeError with its name if it can't be read
 * \param options - of the reader; None for none
 * \return a new image
 */
static osg::Image* zorReadImageFile(std::string const& filename, osgDB::Options const* options = nullptr) {
  osgDB::ReaderWriter::ReadResult result = osgDB::Registry::instance()->readImage(filename, options);
  zorCheckResult(result, result.validImage(), "can't read image file", filename);
  return result.takeImage();
}

/**
 * \param filename - model file, also sought along the data file path; RuntimeError with its name if it can't be read
 * \param options - of the reader; None for none
 * \return a new node
 */
static osg::Node* zorReadNodeFile(std::string const& filename, osgDB::Options const* options = nullptr) {
  osgDB::ReaderWriter::ReadResult result = osgDB::Registry::instance()->readNode(filename, options);
  zorCheckResult(result, result.validNode(), "can't read model file", filename);
  return result.takeNode();
}

/**
 * \param image - the image
 * \param filename - its suffix selects the format; RuntimeError with its name if it can't be written
 * \param options - of the writer; None for none
 * \return true
 */
static bool zorWriteImageFile(osg::Image const& image, std::string const& filename, osgDB::Options const* options = nullptr) {
  if (!image.valid()) throw std::runtime_error("can't write image file '" + filename + "': the image has no pixels");
  osgDB::ReaderWriter::WriteResult const result = osgDB::Registry::instance()->writeImage(image, filename, options);
  zorCheckResult(result, result.success(), "can't write image file", filename);
  return true;
}

/**
 * \param node - the node
 * \param filename - its suffix selects the format; RuntimeError with its name if it can't be written
 * \param options - of the writer; None for none
 * \return true
 */
static bool zorWriteNodeFile(osg::Node const& node, std::string const& filename, osgDB::Options const* options = nullptr) {
  osgDB::ReaderWriter::WriteResult const result = osgDB::Registry::instance()->writeNode(node, filename, options);
  zorCheckResult(result, result.success(), "can't write model file", filename);
  return true;
}

static osg::Image* _readImage(PyObject* data, std::string const& suffix, osgDB::Options const* options) {
  std::istringstream stream(zorTextOfBytes(data));
  osgDB::ReaderWriter::ReadResult result = zorReaderFor(suffix).readImage(stream, options);
  zorCheckResult(result, result.validImage(), "can't read image of the format", suffix);
  return result.takeImage();
}

static osg::Node* _readNode(PyObject* data, std::string const& suffix, osgDB::Options const* options) {
  std::istringstream stream(zorTextOfBytes(data));
  osgDB::ReaderWriter::ReadResult result = zorReaderFor(suffix).readNode(stream, options);
  zorCheckResult(result, result.validNode(), "can't read model of the format", suffix);
  return result.takeNode();
}

static PyObject* _writeImage(osg::Image const& image, std::string const& suffix, osgDB::Options const* options) {
  if (!image.valid()) throw std::invalid_argument("the image has no pixels");
  std::ostringstream stream;
  osgDB::ReaderWriter::WriteResult const result = zorReaderFor(suffix).writeImage(image, stream, options);
  zorCheckResult(result, result.success(), "can't write image in the format", suffix);
  return zorBytes(stream);
}

static PyObject* _writeNode(osg::Node const& node, std::string const& suffix, osgDB::Options const* options) {
  std::ostringstream stream;
  osgDB::ReaderWriter::WriteResult const result = zorReaderFor(suffix).writeNode(node, stream, options);
  zorCheckResult(result, result.success(), "can't write model in the format", suffix);
  return zorBytes(stream);
}

/** \return path of a file, sought as it is named and along the data file path; empty if there is none */
static std::string findDataFile(std::string const& filename) { return osgDB::findDataFile(filename); }

static size_t _numDataFilePaths() { return osgDB::getDataFilePathList().size(); }
static std::string _dataFilePath(size_t index) { return osgDB::getDataFilePathList().at(index); }
static void _clearDataFilePaths() { osgDB::getDataFilePathList().clear(); }
static void _addDataFilePath(std::string const& path) { osgDB::getDataFilePathList().push_back(path); }
%}

%pythoncode %{
def readImage(data: Buffer, suffix: str, options: Options | None = None) -> osg.Image:
    """
    Returns a new image from the bytes of a file; its first row is the lowest.

    :param data: content of the file
    :param suffix: of such files, such as "png"; RuntimeError if there is no reader or it can't read them
    """
    return _readImage(data, suffix, options)


def readNode(data: Buffer, suffix: str, options: Options | None = None) -> osg.Node:
    """Returns a new node from the bytes of a model file; see readImage()."""
    return _readNode(data, suffix, options)


def writeImage(image: osg.Image, suffix: str, options: Options | None = None) -> bytes:
    """Returns the content of an image file with a suffix such as "png"; RuntimeError if it can't be written."""
    return _writeImage(image, suffix, options)


def writeNode(node: osg.Node, suffix: str, options: Options | None = None) -> bytes:
    """Returns the content of a model file with a suffix such as "osgt"; RuntimeError if it can't be written."""
    return _writeNode(node, suffix, options)


def getDataFilePathList() -> list[str]:
    """Returns the folders in which files are looked for."""
    return [_dataFilePath(i) for i in range(_numDataFilePaths())]


def setDataFilePathList(folders: Iterable[str]) -> None:
    """Sets the folders in which files are looked for."""
    folders = [*folders]
    _clearDataFilePaths()
    for folder in folders:
        _addDataFilePath(folder)
%}
