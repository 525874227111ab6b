#include <zorModel/ReadMesh.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include <zorIO/Environment.h>
#include <zorModel/MeshReader.h>
#include <zorUtil/StringUtil.h>

#include "mesh/Mesh.h"
#include "mesh/MeshFile.h"

namespace zorModel {

namespace {

std::string contents(std::string const& path) {
  std::ifstream in(path, std::ios::binary);
  std::string result((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (!in)
    throw std::runtime_error("the file cannot be opened");
  return result;
}

zor::ref_ptr<zorRender::RenderData> readAs(std::string const& extension, std::string const& path) {
  if (extension == ".obj")
    return readObj(contents(path));
  if (extension == ".stl")
    return readStl(contents(path));
  zor::ref_ptr<MeshReader> const other = MeshReader::installed();
  if (!other)
    throw std::runtime_error("files with extension \"" + extension +
                             "\" are read by the drawing layer, which is not loaded (import zorOSG)");
  return other->read(path);
}

} // namespace

zorRender::RenderData* readMesh(std::string const& filename) {
  std::string const path = zorIO::Environment::instance().getFilePath().require(filename);
  try {
    if (std::filesystem::is_directory(path))
      throw std::runtime_error("it is a folder");
    zor::ref_ptr<zorRender::RenderData> data =
        readAs(zorUtil::toLower(std::filesystem::path(path).extension().string()), path);
    if (data->getIndices().empty())
      throw std::runtime_error("it holds no triangles");
    data->validate();
    return data.release();
  } catch (std::exception const& error) {
    throw std::runtime_error("mesh file \"" + path + "\" cannot be read: " + error.what());
  }
}

zorCollide::Trimesh* readTrimesh(std::string const& filename, zor::Vec3 const& scale,
                                 zor::Real weldDistance) {
  if (!scale.isFinite() || scale.x() * scale.y() * scale.z() == 0)
    throw std::invalid_argument("readTrimesh: the factors of the scale must be finite and not zero");
  if (!std::isfinite(weldDistance))
    throw std::invalid_argument("readTrimesh: the weld distance is not finite");
  zor::ref_ptr<zorRender::RenderData> const mesh = readMesh(filename);
  try {
    return trimeshOf(*scaledMesh(*mesh, scale), weldDistance, filename).release();
  } catch (std::exception const& error) {
    throw std::runtime_error("mesh file \"" + filename + "\" makes no triangle mesh: " + error.what());
  }
}

} // namespace zorModel
