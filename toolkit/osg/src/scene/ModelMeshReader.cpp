#include <zorModel/MeshReader.h>

#include "ModelFile.h"
#include "TriangleCollector.h"

namespace zorOSG {

namespace {

/** Gives the toolkit below the mesh files that the scene-graph library reads. */
class ModelMeshReader : public zorModel::MeshReader {
public:
  zor::ref_ptr<zorRender::RenderData> read(std::string const& path) override {
    osg::ref_ptr<osgDB::Options> const options = new osgDB::Options("noRotation");
    osg::ref_ptr<osg::Node> const node = readModelFile(path, options.get());
    Triangles const triangles = collectTriangles(*node);
    zor::ref_ptr<zorRender::RenderData> data = new zorRender::RenderData;
    data->setVertices(triangles.vertices);
    data->setIndices(triangles.indices);
    return data;
  }

protected:
  ~ModelMeshReader() override = default;
};

/** Installed as long as this library is loaded. */
struct Installation {
  Installation() { zorModel::MeshReader::install(new ModelMeshReader); }
  ~Installation() { zorModel::MeshReader::install(nullptr); }
  Installation(Installation const&) = delete;
  Installation& operator=(Installation const&) = delete;
};

Installation const installation;

} // namespace

} // namespace zorOSG
