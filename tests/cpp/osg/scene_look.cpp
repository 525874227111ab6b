// Colours, materials, textures, wire frames: on the node that was meant and on no other.

#include "Offscreen.h"
#include "SceneProbe.h"
#include "TemporaryFolder.h"

#include <zor/Notify.h>
#include <zorCollide/Box.h>
#include <zorCollide/Plane.h>
#include <zorOSG/CreateVisual.h>
#include <zorOSG/Lookup.h>
#include <zorOSG/RenderState.h>
#include <zorOSG/SharedState.h>

#include <osg/PolygonMode>
#include <osgDB/WriteFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <vector>

using zor::ref_ptr;
using zor::Vec3;
using zor::Vec4f;
using zorTest::ownDiffuse;

namespace {

Vec4f const red(0.9f, 0.1f, 0.1f, 1.0f);
Vec4f const blue(0.1f, 0.1f, 0.9f, 1.0f);

/** A body of two equal boxes, four metres apart along x. */
class SceneLook : public testing::Test {
protected:
  SceneLook() {
    body->add(left.get(), zor::AffineMatrix4x4::translate(-2, 0, 0));
    body->add(right.get(), zor::AffineMatrix4x4::translate(2, 0, 0));
    group = zorOSG::createVisual(body.get(), root.get());
    leftNode = zorOSG::findGeometryNode(left.get(), root.get());
    rightNode = zorOSG::findGeometryNode(right.get(), root.get());
  }

  ref_ptr<zorCollide::Geometry> left = new zorCollide::Geometry(new zorCollide::Box(0.5, 0.5, 0.5));
  ref_ptr<zorCollide::Geometry> right = new zorCollide::Geometry(new zorCollide::Box(0.5, 0.5, 0.5));
  ref_ptr<zor::RigidBody> body = new zor::RigidBody;
  osg::ref_ptr<osg::Group> root = new osg::Group;
  osg::Group* group = nullptr;
  zorOSG::GeometryNode* leftNode = nullptr;
  zorOSG::GeometryNode* rightNode = nullptr;
};

/** The messages of the log while it lives, kept off the console. */
class LogCatcher {
public:
  LogCatcher() : m_console(zor::Notify::instance().getEnableConsole()) {
    zor::Notify::instance().setEnableConsole(false);
    m_id = zor::Notify::instance().addTarget(
        [this](zor::NotifyMessage const& message) { text += message.text; });
  }
  ~LogCatcher() {
    zor::Notify::instance().removeTarget(m_id);
    zor::Notify::instance().setEnableConsole(m_console);
  }
  std::string text;

private:
  bool m_console;
  int m_id;
};

osg::ref_ptr<osg::Image> onePixelImage(unsigned char r, unsigned char g, unsigned char b) {
  osg::ref_ptr<osg::Image> image = new osg::Image;
  image->allocateImage(1, 1, 1, GL_RGB, GL_UNSIGNED_BYTE);
  image->setColor(osg::Vec4(r / 255.0f, g / 255.0f, b / 255.0f, 1.0f), 0u, 0u);
  return image;
}

bool isTextured(osg::Node const& node) {
  return node.getStateSet() &&
         node.getStateSet()->getTextureAttribute(0, osg::StateAttribute::TEXTURE) != nullptr;
}

} // namespace

TEST_F(SceneLook, ColoursSitOnNodesThatShareAMesh) {
  osg::Vec4 const before = ownDiffuse(*rightNode);
  EXPECT_EQ(before, osg::Vec4()); // the default look is no state of the node
  zorOSG::setDiffuseColor(leftNode, red);
  EXPECT_EQ(ownDiffuse(*leftNode), osg::Vec4(0.9f, 0.1f, 0.1f, 1.0f));
  EXPECT_EQ(ownDiffuse(*rightNode), before);

  zorOSG::setDiffuseColor(body.get(), blue, root.get());
  EXPECT_FLOAT_EQ(ownDiffuse(*leftNode).b(), 0.9f);
  EXPECT_FLOAT_EQ(ownDiffuse(*rightNode).b(), 0.9f);
  zorOSG::setDiffuseColor(right.get(), red, root.get());
  EXPECT_FLOAT_EQ(ownDiffuse(*rightNode).r(), 0.9f);
  EXPECT_FLOAT_EQ(ownDiffuse(*leftNode).r(), 0.1f);

  ref_ptr<zorCollide::Geometry> const unseen = new zorCollide::Geometry;
  zorOSG::setDiffuseColor(unseen.get(), red, root.get()); // ignored
  EXPECT_THROW(zorOSG::setDiffuseColor(static_cast<osg::Node*>(nullptr), red), std::invalid_argument);
}

TEST_F(SceneLook, AColourFurtherUpReplacesDefaultLooksButNoColours) {
  zorOSG::setDiffuseColor(leftNode, red);
  zorOSG::setDiffuseColor(group, blue);
  EXPECT_EQ(ownDiffuse(*rightNode), osg::Vec4()); // takes the group's
  EXPECT_FLOAT_EQ(ownDiffuse(*leftNode).r(), 0.9f);
  zorOSG::createVisual(body.get(), group);
  auto const nodes = zorOSG::findGeometryNodes(right.get(), root.get());
  ASSERT_EQ(nodes.size(), 2u);
  EXPECT_EQ(ownDiffuse(*nodes[1]), osg::Vec4()); // made below a coloured group

  zorOSG::setDiffuseColor(root.get(), red, true);
  EXPECT_TRUE(root->getStateSet()->getAttributePair(osg::StateAttribute::MATERIAL)->second &
              osg::StateAttribute::OVERRIDE);
}

TEST_F(SceneLook, MaterialValuesKeepEachOther) {
  zorOSG::setSpecularColor(leftNode, Vec4f(0.5f, 0.5f, 0.5f, 1.0f));
  zorOSG::setDiffuseColor(leftNode, red);
  zorOSG::setShininess(leftNode, 500.0f);
  auto const material = [this] {
    return static_cast<osg::Material const*>(
        leftNode->getStateSet()->getAttribute(osg::StateAttribute::MATERIAL));
  };
  constexpr osg::Material::Face face = osg::Material::FRONT;
  EXPECT_FLOAT_EQ(material()->getSpecular(face).r(), 0.5f);
  EXPECT_FLOAT_EQ(material()->getShininess(face), 128.0f);
  EXPECT_FLOAT_EQ(material()->getAmbient(face).r(), 0.9f); // goes along with the diffuse colour …
  zorOSG::setAmbientColor(leftNode, Vec4f(0.2f, 0.2f, 0.2f, 1.0f));
  zorOSG::setDiffuseColor(leftNode, blue);
  EXPECT_FLOAT_EQ(material()->getAmbient(face).r(), 0.2f); // … until it has one of its own
  zorOSG::setAlpha(leftNode, 0.4f);
  EXPECT_FLOAT_EQ(material()->getDiffuse(face).a(), 0.4f);
  EXPECT_EQ(leftNode->getStateSet()->getRenderingHint(), osg::StateSet::TRANSPARENT_BIN);
  zorOSG::setAlpha(leftNode, 1.0f);
  EXPECT_EQ(leftNode->getStateSet()->getRenderingHint(), osg::StateSet::DEFAULT_BIN);
  EXPECT_THROW(zorOSG::setAlpha(leftNode, NAN), std::invalid_argument);
}

TEST_F(SceneLook, VisualsOfOneColourShareItsStateUntilOneChanges) {
  auto const flags = [](osg::Node& node) {
    return node.getStateSet()->getAttributePair(osg::StateAttribute::MATERIAL)->second;
  };
  zorOSG::setDiffuseColor(leftNode, red, true);
  EXPECT_NE(flags(*leftNode) & osg::StateAttribute::OVERRIDE, 0u);
  zorOSG::setDiffuseColor(leftNode, red); // the same values, but another state
  EXPECT_EQ(flags(*leftNode) & osg::StateAttribute::OVERRIDE, 0u);
  zorOSG::setDiffuseColor(rightNode, red);
  EXPECT_EQ(leftNode->getStateSet(), rightNode->getStateSet());

  zorOSG::setShininess(leftNode, 3.0f, true); // another look, shared by nobody yet
  EXPECT_NE(leftNode->getStateSet(), rightNode->getStateSet());
  zorOSG::setMetallic(leftNode, 0.3f); // no longer a plain look
  EXPECT_NE(flags(*leftNode) & osg::StateAttribute::OVERRIDE, 0u);
  zorOSG::setRoughness(leftNode, 0.3f, true);
  zorOSG::setDiffuseColor(leftNode, blue);
  EXPECT_NE(leftNode->getStateSet()->getUniform("zor_roughness"), nullptr);
  EXPECT_EQ(ownDiffuse(*rightNode), osg::Vec4(0.9f, 0.1f, 0.1f, 1.0f));

  zorOSG::setDiffuseColor(leftNode, blue);
  osg::StateSet* const shared = rightNode->getStateSet();
  osg::StateSet* const own = zorOSG::unsharedStateSet(*rightNode);
  EXPECT_NE(own, shared);
  EXPECT_EQ(ownDiffuse(*rightNode), osg::Vec4(0.9f, 0.1f, 0.1f, 1.0f));
  zorOSG::setAlpha(rightNode, 0.5f);
  EXPECT_EQ(rightNode->getStateSet(), own); // what was put into it stays
}

TEST_F(SceneLook, ManyVisualsOfOneColourKeepIt) {
  constexpr int COUNT = 2500; // more than one state set serves
  std::vector<zorOSG::GeometryNode*> nodes;
  for (int i = 0; i < COUNT; ++i) {
    nodes.push_back(zorOSG::createVisual(left.get(), root.get()));
    zorOSG::setDiffuseColor(nodes.back(), i % 2 ? red : blue);
  }
  std::set<osg::StateSet const*> states;
  for (int i = 0; i < COUNT; ++i) {
    ASSERT_FLOAT_EQ(ownDiffuse(*nodes[i]).r(), i % 2 ? 0.9f : 0.1f);
    states.insert(nodes[i]->getStateSet());
  }
  EXPECT_LE(states.size(), 6u);
  for (int i = 0; i < 1000; ++i) // shades that nobody wears for long
    zorOSG::setDiffuseColor(nodes[0], Vec4f(0.001f * static_cast<float>(i), 0, 0, 1));
  EXPECT_FLOAT_EQ(ownDiffuse(*nodes[0]).r(), 0.999f);
  EXPECT_FLOAT_EQ(ownDiffuse(*nodes[1]).r(), 0.9f);
}

TEST_F(SceneLook, ARedBoxIsWhereTheCameraProjectsIt) {
  body->setPosition(Vec3(0, 3, 1));
  zorOSG::setDiffuseColor(body.get(), blue, root.get());
  zorOSG::setDiffuseColor(right.get(), red, root.get());
  ref_ptr<zorCollide::Geometry> const floor =
      new zorCollide::Geometry(new zorCollide::Plane(Vec3(0, 0, 1), Vec3(0, 0, 0)));
  zorOSG::createVisual(floor.get(), root.get());
  zorTest::Offscreen offscreen(320, 240);
  offscreen.lookAt({0, -8, 4}, {0, 3, 1});
  osg::ref_ptr<osg::Image> const image = offscreen.render(root.get());
  zorTest::keepImage(*image, "scene_red_box");
  auto const colorAt = [&](osg::Vec3d const& point) {
    osg::Vec2d const at = offscreen.project(point);
    return image->getColor(static_cast<unsigned int>(at.x()), static_cast<unsigned int>(at.y()));
  };
  osg::Vec4 const onRed = colorAt({2, 2.5, 1}), onBlue = colorAt({-2, 2.5, 1}),
                  between = colorAt({0, 2.5, 1});
  EXPECT_GT(onRed.r(), 3.0f * onRed.b());
  EXPECT_GT(onBlue.b(), 3.0f * onBlue.r());
  EXPECT_LT(std::abs(between.r() - between.b()), 0.15f); // the floor
  for (double const x : {1.6, 2.4})                      // just inside and outside its edges
    EXPECT_GT(colorAt({x, 2.5, 1}).r(), 3.0f * colorAt({x, 2.5, 1}).b());
  for (double const x : {1.3, 2.7})
    EXPECT_LT(colorAt({x, 2.5, 1}).r(), 2.0f * colorAt({x, 2.5, 1}).b());
}

TEST_F(SceneLook, TexturesComeFromFilesAndData) {
  zorTest::TemporaryFolder const folder;
  std::string const file = folder.file("green.png");
  ASSERT_TRUE(osgDB::writeImageFile(*onePixelImage(0, 255, 0), file));
  EXPECT_TRUE(zorOSG::setTexture(body.get(), root.get(), file, true));
  ASSERT_TRUE(isTextured(*leftNode));
  auto const textureOf = [](osg::Node& node) {
    return static_cast<osg::Texture2D*>(
        node.getStateSet()->getTextureAttribute(0, osg::StateAttribute::TEXTURE));
  };
  EXPECT_EQ(textureOf(*leftNode), textureOf(*rightNode)); // read once
  EXPECT_EQ(textureOf(*leftNode)->getWrap(osg::Texture::WRAP_S), osg::Texture::REPEAT);
  zorTest::Offscreen offscreen;
  zorOSG::setDiffuseColor(body.get(), Vec4f(1, 1, 1, 1), root.get());
  offscreen.lookAt({2, -5, 0.2}, {2, 0, 0});
  osg::Vec4 const center = offscreen.render(root.get())->getColor(80u, 60u);
  EXPECT_GT(center.g(), 0.15f);
  EXPECT_LT(center.r() + center.b(), 0.5f * center.g());

  zorCollide::TextureDataRef const data =
      new zorCollide::TextureData(1, 1, zorCollide::TextureData::RGB,
                                  zor::Vector<zor::UInt8>{zor::UInt8{255}, zor::UInt8{0}, zor::UInt8{0}});
  EXPECT_TRUE(zorOSG::setTexture(group, data, false, zorOSG::DIFFUSE_TEXTURE, 2.0f, 3.0f));
  EXPECT_TRUE(group->getStateSet()->getTextureAttribute(0, osg::StateAttribute::TEXMAT));
  EXPECT_FALSE(zorOSG::setTexture(group, static_cast<osg::Texture2D*>(nullptr)));
  EXPECT_THROW(zorOSG::setTexture(group, data, false, static_cast<zorOSG::TextureMode>(99)),
               std::invalid_argument);
}

TEST_F(SceneLook, AMissingOrBrokenImageIsReportedAndChangesNothing) {
  zorTest::TemporaryFolder const folder;
  LogCatcher log;
  EXPECT_FALSE(zorOSG::setTexture(left.get(), root.get(), "no_such_image.png"));
  EXPECT_THAT(log.text, testing::HasSubstr("no_such_image.png"));
  log.text.clear();
  std::string const broken = folder.file("broken.png");
  FILE* const out = std::fopen(broken.c_str(), "w");
  std::fputs("not an image", out);
  std::fclose(out);
  EXPECT_FALSE(zorOSG::setTexture(leftNode, broken));
  EXPECT_THAT(log.text, testing::HasSubstr(broken));
  EXPECT_FALSE(isTextured(*leftNode));
  EXPECT_EQ(zorOSG::createTexture("no_such_image.png"), nullptr);
}

TEST_F(SceneLook, WireFrames) {
  EXPECT_TRUE(zorOSG::toggleWireFrameMode(leftNode));
  EXPECT_FALSE(zorOSG::toggleWireFrameMode(leftNode));
  EXPECT_FALSE(leftNode->getStateSet()->getAttribute(osg::StateAttribute::POLYGONMODE));
  EXPECT_TRUE(zorOSG::setEnableWireFrameMode(leftNode, true));
  EXPECT_FALSE(zorOSG::setEnableWireFrameMode(leftNode, false));
  EXPECT_TRUE(zorOSG::forceWireFrameModeOn(root.get()));
  EXPECT_TRUE(root->getStateSet()->getAttributePair(osg::StateAttribute::POLYGONMODE)->second &
              osg::StateAttribute::OVERRIDE);
  EXPECT_FALSE(zorOSG::toggleWireFrameMode(nullptr));
}
