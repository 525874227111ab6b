// Model files, collision meshes from nodes, labels and lines.

#include "SceneProbe.h"
#include "TemporaryFolder.h"

#include <zor/Notify.h>
#include <zorCollide/Sphere.h>
#include <zorIO/Environment.h>
#include <zorModel/ReadMesh.h>
#include <zorOSG/CreateTrimesh.h>
#include <zorOSG/CreateVisual.h>
#include <zorOSG/Primitives.h>
#include <zorOSG/ReadNode.h>
#include <zorOSG/Transform.h>

#include <osg/MatrixTransform>
#include <osgDB/WriteFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

using testing::HasSubstr;
using zor::ref_ptr;
using zor::Vec3;

namespace {

// 1 x 2 x 3, written as quads with a corner of its own each, as exporters do.
char const boxObj[] = "v 0 0 0\nv 1 0 0\nv 1 2 0\nv 0 2 0\nv 0 0 3\nv 1 0 3\nv 1 2 3\nv 0 2 3\n"
                      "f 4 3 2 1\nf 5 6 7 8\nf 1 2 6 5\nf 2 3 7 6\nf 3 4 8 7\nf 4 1 5 8\n";

class SceneFiles : public testing::Test {
protected:
  SceneFiles() {
    zor::Notify::instance().setEnableConsole(false);
    m_target =
        zor::Notify::instance().addTarget([this](zor::NotifyMessage const& message) { log += message.text; });
  }
  ~SceneFiles() override {
    zor::Notify::instance().removeTarget(m_target);
    zor::Notify::instance().setEnableConsole(true);
  }

  std::string write(std::string const& name, std::string const& text) const {
    std::ofstream(folder.file(name)) << text;
    return folder.file(name);
  }

  zorTest::TemporaryFolder folder;
  std::string log;

private:
  int m_target;
};

/** Adds a folder to the resource path for one test. */
struct SearchedFolder {
  explicit SearchedFolder(std::string const& path) : name(path) {
    zorIO::Environment::instance().getFilePath().add(name);
  }
  ~SearchedFolder() { zorIO::Environment::instance().getFilePath().remove(name); }
  std::string name;
};

} // namespace

TEST_F(SceneFiles, ModelsAreFoundAlongTheResourcePathAndKeepTheirAxes) {
  write("box.obj", boxObj);
  SearchedFolder const searched(folder.path());
  osg::ref_ptr<osg::Node> const model = zorOSG::readNodeFile("box.obj");
  ASSERT_TRUE(model) << log;
  EXPECT_EQ(model->referenceCount(), 1); // the caller's
  osg::BoundingBox const box = zorTest::boundsOf(*model);
  EXPECT_LT((box._max - osg::Vec3(1, 2, 3)).length(), 1e-6f);
  EXPECT_TRUE(zorTest::SceneProbe(*model).meshes.at(0)->getUseVertexBufferObjects());

  // The caller's own options are taken as they are: the reader then turns the model.
  osg::ref_ptr<osg::Node> const turned = zorOSG::readNodeFile("box.obj", nullptr, false);
  EXPECT_GT((zorTest::boundsOf(*turned)._max - osg::Vec3(1, 2, 3)).length(), 0.5f);
}

TEST_F(SceneFiles, ABinaryModelNextToItIsPreferredWhenAskedFor) {
  std::string const file = write("box.obj", boxObj);
  osg::ref_ptr<osg::Group> const other = new osg::Group;
  other->setName("binary");
  ASSERT_TRUE(osgDB::writeNodeFile(*other, folder.file("box.ive")));
  osg::ref_ptr<osg::Node> const binary = zorOSG::readNodeFile(file, true);
  ASSERT_TRUE(binary);
  EXPECT_EQ(binary->getName(), "binary");
  osg::ref_ptr<osg::Node> const plain = zorOSG::readNodeFile(file);
  EXPECT_GT(zorTest::SceneProbe(*plain).triangles, 0u);
}

TEST_F(SceneFiles, WhatCannotBeReadIsReportedWithItsPlace) {
  SearchedFolder const searched(folder.path());
  EXPECT_EQ(zorOSG::readNodeFile("no_such_model.obj"), nullptr);
  EXPECT_THAT(log, HasSubstr("no_such_model.obj"));
  EXPECT_THAT(log, HasSubstr(folder.path()));

  log.clear();
  std::string const unknown = write("model.unheardof", "x");
  EXPECT_EQ(zorOSG::readNodeFile(unknown), nullptr);
  EXPECT_THAT(log, HasSubstr(unknown));
  EXPECT_THAT(log, HasSubstr("unheardof\""));

  log.clear();
  EXPECT_EQ(zorOSG::readNodeFile(folder.path()), nullptr);
  EXPECT_THAT(log, HasSubstr("folder"));
  EXPECT_EQ(zorOSG::readNodeFile(""), nullptr);
}

TEST_F(SceneFiles, TrimeshesHoldWorldCoordinatesAndMergedVertices) {
  osg::ref_ptr<osg::Node> const model = zorOSG::readNodeFile(write("box.obj", boxObj));
  ASSERT_TRUE(model);
  ref_ptr<zorCollide::Trimesh> const mesh = zorOSG::createTrimesh(model.get());
  EXPECT_EQ(mesh->getVertices().size(), 8u);
  EXPECT_EQ(mesh->getNumTriangles(), 12u);
  EXPECT_TRUE(mesh->isClosed());
  EXPECT_NEAR(mesh->getVolume(), 6.0, 1e-9);

  // Transforms above and below count; a mirrored model keeps its outside outside.
  osg::ref_ptr<zorOSG::Transform> const above = new zorOSG::Transform, below = new zorOSG::Transform;
  above->setScale(Vec3(2, 2, 2));
  below->setScale(Vec3(-1, 1, 1));
  below->setTranslate(Vec3(0, 0, 10));
  above->addChild(below.get());
  below->addChild(model.get());
  ref_ptr<zorCollide::Trimesh> const scaled = zorOSG::createTrimesh(below.get());
  EXPECT_NEAR(scaled->getVolume(), 48.0, 1e-9);
  zor::Vec3 low, high;
  scaled->getBounds(zor::AffineMatrix4x4(), low, high);
  EXPECT_NEAR(high.z(), 26.0, 1e-6);
  EXPECT_NEAR(low.x(), -2.0, 1e-6);
}

namespace {

/** A unit cube, each side of it another kind of primitive over vertices of the given array type. */
template <class Array>
osg::ref_ptr<osg::Geometry> cubeOfAllPrimitives() {
  osg::ref_ptr<osg::Geometry> mesh = new osg::Geometry;
  osg::ref_ptr<Array> corners = new Array;
  for (unsigned int i = 0; i < 8; ++i) {
    typename Array::ElementDataType v;
    v[0] = i & 1, v[1] = i >> 1 & 1, v[2] = i >> 2;
    corners->push_back(v);
  }
  mesh->setVertexArray(corners);
  auto const add = [&](GLenum mode, std::vector<GLuint> const& indices) {
    mesh->addPrimitiveSet(
        new osg::DrawElementsUInt(mode, static_cast<unsigned int>(indices.size()), indices.data()));
  };
  add(GL_TRIANGLES, {0, 2, 1, 1, 2, 3});
  add(GL_TRIANGLE_STRIP, {4, 5, 6, 7});
  add(GL_TRIANGLE_FAN, {0, 1, 5, 4});
  add(GL_QUADS, {2, 6, 7, 3});
  add(GL_QUAD_STRIP, {0, 4, 2, 6});
  add(GL_POLYGON, {1, 3, 7, 5});
  add(GL_LINES, {0, 7}); // no triangles
  return mesh;
}

} // namespace

TEST_F(SceneFiles, TrimeshesTakeEveryPrimitiveAndVertexType) {
  for (auto const& mesh : {cubeOfAllPrimitives<osg::Vec3Array>(), cubeOfAllPrimitives<osg::Vec3dArray>()}) {
    osg::ref_ptr<osg::Geode> const geode = new osg::Geode;
    geode->addDrawable(mesh);
    ref_ptr<zorCollide::Trimesh> const cube = zorOSG::createTrimesh(geode.get());
    EXPECT_EQ(cube->getNumTriangles(), 12u);
    EXPECT_TRUE(cube->isClosed());
    EXPECT_NEAR(cube->getVolume(), 1.0, 1e-9);
    mesh->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLES, 6, 30)); // more than there are
    EXPECT_EQ(ref_ptr<zorCollide::Trimesh>(zorOSG::createTrimesh(geode.get()))->getNumTriangles(), 12u);
  }
}

TEST_F(SceneFiles, ModelFilesOfEveryFormatBecomeTrimeshes) {
  // Two cubes below transforms.
  osg::ref_ptr<osg::Group> const model = new osg::Group;
  for (double const x : {0.0, 5.0}) {
    osg::ref_ptr<osg::MatrixTransform> const place =
        new osg::MatrixTransform(osg::Matrix::scale(2, 2, 2) * osg::Matrix::translate(x, 0, 0));
    osg::ref_ptr<osg::Geode> const geode = new osg::Geode;
    geode->addDrawable(cubeOfAllPrimitives<osg::Vec3Array>());
    place->addChild(geode);
    model->addChild(place);
  }
  for (std::string const name : {"m.osgt", "m.ive", "m.osgb", "m.obj", "m.stl", "m.3ds"}) {
    ASSERT_TRUE(osgDB::writeNodeFile(*model, folder.file(name))) << name;
    ref_ptr<zorCollide::Trimesh> const mesh = zorModel::readTrimesh(folder.file(name), Vec3(1, 1, 0.5), 1e-6);
    EXPECT_EQ(mesh->getNumTriangles(), 24u) << name;
    EXPECT_EQ(mesh->getVertices().size(), 16u) << name;
    EXPECT_NEAR(mesh->getVolume(), 8.0, 1e-6) << name;
    Vec3 low, high;
    mesh->getBounds(zor::AffineMatrix4x4(), low, high);
    EXPECT_TRUE(high.equals(Vec3(7, 2, 1), 1e-6)) << name << " " << high;
  }
  std::string const ply =
      write("m.ply", "ply\nformat ascii 1.0\nelement vertex 4\nproperty float x\nproperty float y\n"
                     "property float z\nelement face 2\nproperty list uchar int vertex_indices\nend_header\n"
                     "0 0 0\n1 0 0\n1 1 0\n0 1 0\n3 0 1 2\n3 0 2 3\n");
  EXPECT_EQ(ref_ptr<zorCollide::Trimesh>(zorModel::readTrimesh(ply))->getNumTriangles(), 2u);

  for (std::string const name : {"broken.osgt", "model.unheardof"})
    try {
      zorModel::readTrimesh(write(name, "x"));
      ADD_FAILURE() << name;
    } catch (std::runtime_error const& error) {
      EXPECT_THAT(error.what(), HasSubstr(folder.file(name)));
    }
}

TEST_F(SceneFiles, ATrimeshNeedsTriangles) {
  osg::ref_ptr<osg::Group> const empty = new osg::Group;
  empty->setName("nothing here");
  try {
    zorOSG::createTrimesh(empty.get());
    FAIL() << "no error";
  } catch (std::runtime_error const& error) {
    EXPECT_THAT(error.what(), HasSubstr("nothing here"));
  }
  EXPECT_THROW(zorOSG::createTrimesh(nullptr), std::runtime_error);
}

TEST_F(SceneFiles, AScannedModelBecomesACollisionMesh) {
  std::string const bunny = "/usr/share/glmark2/models/bunny.obj";
  if (!std::filesystem::exists(bunny))
    GTEST_SKIP() << bunny << " is not installed";
  osg::ref_ptr<osg::Node> const model = zorOSG::readNodeFile(bunny);
  ASSERT_TRUE(model) << log;
  ref_ptr<zorCollide::Trimesh> const mesh = zorOSG::createTrimesh(model.get());
  EXPECT_GT(mesh->getNumTriangles(), 20000u);
  EXPECT_LT(mesh->getVertices().size(), mesh->getNumTriangles()); // merged
  ref_ptr<zorCollide::Geometry> const geometry = new zorCollide::Geometry(mesh.get());
  osg::ref_ptr<osg::Group> const root = new osg::Group;
  ASSERT_TRUE(zorOSG::createVisual(geometry.get(), root.get()));
  EXPECT_EQ(zorTest::SceneProbe(*root).triangles, mesh->getNumTriangles());
}

TEST_F(SceneFiles, LabelsBelongToTheGeometriesTheyWereAddedTo) {
  ref_ptr<zorCollide::Geometry> const ball = new zorCollide::Geometry(new zorCollide::Sphere(1));
  osg::ref_ptr<osg::Group> const root = new osg::Group;
  EXPECT_FALSE(zorOSG::addText(ball.get(), root.get(), "too early"));
  zorOSG::GeometryNode* const node = zorOSG::createVisual(ball.get(), root.get());
  EXPECT_EQ(zorOSG::findText(ball.get(), root.get()), nullptr);
  EXPECT_TRUE(zorOSG::addText(ball.get(), root.get(), "first", Vec3(0, 0, 1)));
  EXPECT_TRUE(zorOSG::addText(ball.get(), root.get(), "zw\xC3\xB6lf"));
  osgText::Text* const second = zorOSG::findText(ball.get(), root.get(), 1);
  ASSERT_TRUE(second);
  EXPECT_EQ(second->getText().createUTF8EncodedString(), "zw\xC3\xB6lf");
  EXPECT_EQ(second->getColor(), osg::Vec4(1, 1, 0, 1));
  EXPECT_TRUE(zorOSG::removeText(ball.get(), root.get(), 0));
  EXPECT_EQ(zorOSG::findText(ball.get(), root.get(), 0), second);
  EXPECT_FALSE(zorOSG::removeText(ball.get(), root.get(), 1));
  EXPECT_EQ(node->getNumChildren(), 2u);
  EXPECT_THROW(zorOSG::addText(ball.get(), root.get(), "x", Vec3(), zor::Vec4f(), 0.2, 17),
               std::invalid_argument);
}

TEST_F(SceneFiles, LinesAndGrids) {
  osg::ref_ptr<osg::Group> const root = new osg::Group;
  osg::Geode* const grid =
      zorOSG::createGrid(4, 2, Vec3(-2, -1, 0), Vec3(4, 0, 0), Vec3(0, 2, 0), root.get());
  EXPECT_EQ(grid->getDrawable(0)->asGeometry()->getVertexArray()->getNumElements(), 2u * (5u + 3u));
  EXPECT_LT((zorTest::boundsOf(*grid)._max - osg::Vec3(2, 1, 0)).length(), 1e-6f);
  osg::ref_ptr<osg::Geode> const cube = zorOSG::createCubeLines(Vec3(1, 1, 1), Vec3(1, 2, 3));
  EXPECT_EQ(cube->getDrawable(0)->asGeometry()->getVertexArray()->getNumElements(), 24u);
  EXPECT_LT((zorTest::boundsOf(*cube)._min - osg::Vec3(0, -1, -2)).length(), 1e-6f);
  osg::ref_ptr<osg::MatrixTransform> const pole =
      zorOSG::createCylinder(zor::AffineMatrix4x4::translate(0, 0, 5), zor::Vec4(1, 0, 0, 1), 0.5f, 2.0f);
  EXPECT_NEAR(zorTest::SceneProbe(*pole).volume, 1.57, 0.02);
  EXPECT_THROW(zorOSG::createPolyline({Vec3(0, 0, 0)}, zor::Vec4(1, 1, 1, 1), 1.0f), std::invalid_argument);
  EXPECT_THROW(zorOSG::createGrid(0, 2, osg::Vec3(), osg::Vec3(1, 0, 0), osg::Vec3(0, 1, 0)),
               std::invalid_argument);
}
