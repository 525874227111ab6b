// Meshes from files: OBJ and STL as they come, welding, scale, and errors with the file and the line.

#include <cmath>
#include <cstring>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <zorModel/MeshReader.h>
#include <zorModel/ReadMesh.h>

#include "../osg/TemporaryFolder.h"

using testing::AllOf;
using testing::HasSubstr;
using zor::ref_ptr;
using zor::Vec3;

namespace {

// A unit cube of quads with texture coordinates, numbers counted from the end, and a group.
char const CUBE[] =
    "# cube\nmtllib none.mtl\nv 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\r\nv 0 0 1\nv 1 0 1\nv 1 1 1\nv 0 +1 1e0\n"
    "vt 0 0\nvt 1 0\nvt 1 1\ng sides\nf 4/1 3/2 2/3 1/1\nf 5/1 6/2 7/3 8/1\nf -8/1 -7/2 -3/3 -4/1\n"
    "f 2/1 3/2 7/3 6/1\nf 3/1 4/2 8/3 7/1\nf 4/1 1/2 5/3 8/1\n";

class MeshFiles : public testing::Test {
protected:
  std::string write(std::string const& name, std::string const& bytes) const {
    std::ofstream(folder.file(name), std::ios::binary) << bytes;
    return folder.file(name);
  }

  std::string errorOf(std::string const& name, std::string const& bytes) const {
    try {
      ref_ptr<zorRender::RenderData> const mesh = zorModel::readMesh(write(name, bytes));
    } catch (std::runtime_error const& error) {
      return error.what();
    }
    return "no error";
  }

  zorTest::TemporaryFolder folder;
};

std::string binaryStl(std::vector<float> const& corners) {
  std::string bytes(80, ' ');
  bytes.replace(0, 5, "solid"); // as some programs begin binary files
  auto const count = static_cast<std::uint32_t>(corners.size() / 9);
  bytes.append(reinterpret_cast<char const*>(&count), 4);
  for (std::size_t i = 0; i < corners.size(); i += 9) {
    bytes.append(12, '\0');
    bytes.append(reinterpret_cast<char const*>(&corners[i]), 36);
    bytes.append(2, '\0');
  }
  return bytes;
}

} // namespace

TEST_F(MeshFiles, AnObjIsReadAsItIs) {
  std::string const file = write("cube.obj", CUBE);
  ref_ptr<zorRender::RenderData> const mesh = zorModel::readMesh(file);
  EXPECT_EQ(mesh->getIndices().size(), 36u);
  EXPECT_EQ(mesh->getTexCoords().size(), mesh->getVertices().size());
  EXPECT_GT(mesh->getVertices().size(), 8u); // corners with other texture coordinates stay apart
  EXPECT_TRUE(mesh->getNormals().empty());

  ref_ptr<zorCollide::Trimesh> const cube = zorModel::readTrimesh(file, Vec3(1, -2, 3));
  EXPECT_EQ(cube->getVertices().size(), 8u);
  EXPECT_TRUE(cube->isClosed());
  EXPECT_NEAR(cube->getVolume(), 6, 1e-9); // mirrored, and still not inside out
  EXPECT_THROW(zorModel::readTrimesh(file, Vec3(1, 0, 1)), std::invalid_argument);
}

TEST_F(MeshFiles, StlVerticesAreWeldedAsFarAsWanted) {
  float const gap = 1e-4f;
  std::vector<float> const corners{0, 0, 0, 1, 0, 0, 0, 1, 0, 1 + gap, 0, 0, 1, 1, 0, 0, 1, gap};
  std::string const binary = write("b.stl", binaryStl(corners));
  auto const vertices = [](std::string const& file, double distance) {
    ref_ptr<zorCollide::Trimesh> const mesh = zorModel::readTrimesh(file, Vec3(1, 1, 1), distance);
    EXPECT_EQ(mesh->getNumTriangles(), 2u);
    return mesh->getVertices().size();
  };
  EXPECT_EQ(vertices(binary, -1), 6u);
  EXPECT_EQ(vertices(binary, 0), 6u);
  EXPECT_EQ(vertices(binary, 1e-3), 4u);

  std::string text = "solid s\n";
  for (std::size_t i = 0; i < corners.size(); i += 9) {
    text += " facet normal 0 0 1\n  outer loop\n";
    for (std::size_t j = i; j < i + 9; j += 3)
      text += "   vertex " + std::to_string(corners[j]) + " " + std::to_string(corners[j + 1]) + " " +
              std::to_string(corners[j + 2]) + "\n";
    text += "  endloop\n endfacet\n";
  }
  EXPECT_EQ(vertices(write("a.STL", text + "endsolid s\n"), 1e-3), 4u);
}

TEST_F(MeshFiles, WhatIsWrongIsToldWithFileAndLine) {
  struct {
    std::string name, bytes, reason;
  } const cases[] = {
      {"number.obj", "v 0 0 0\nv 1 x 0\n", "line 2: \"x\""},
      {"index.obj", "v 0 0 0\nf 1 1 2\n", "line 2: \"2\""},
      {"zero.obj", "v 0 0 0\nf 0 1 1\n", "line 2"},
      {"two.obj", "v 0 0 0\nf 1 1\n", "three corners"},
      {"nan.obj", "v nan 0 0\n", "line 1"},
      {"empty.obj", "", "no triangles"},
      {"cut.stl", binaryStl({0, 0, 0, 1, 0, 0, 0, 1, 0}).substr(0, 100).replace(0, 5, "xxxxx"), "too early"},
      {"inf.stl", binaryStl({0, 0, 0, INFINITY, 0, 0, 0, 1, 0}), "finite"},
      {"text.stl", "solid\nvertex 1 2 3\nendloop\n", "line 3"},
      {"short.stl", "soli", "solid"},
      {"model.ply", "ply", "zorOSG"}, // no reader is installed in this process
  };
  for (auto const& each : cases)
    EXPECT_THAT(errorOf(each.name, each.bytes),
                AllOf(HasSubstr(folder.file(each.name)), HasSubstr(each.reason)));
  EXPECT_THROW(zorModel::readMesh(folder.file("missing.obj")), std::runtime_error);
  EXPECT_THROW(zorModel::readTrimesh(write("flat.obj", "v 0 0 0\nv 1 0 0\nv 2 0 0\nf 1 2 3\n")),
               std::runtime_error);
}
