// What particles look like, whatever they are made of.

#include "DecoratorScene.h"

#include <zor/ParticleSystem.h>
#include <zorOSG/CreateVisual.h>

#include <gtest/gtest.h>

using zor::Vec3;
using Drawable = zorOSG::ParticleSystemDrawable;

namespace {

class ParticleLooks : public testing::TestWithParam<Drawable::ParticleRenderingMode> {
protected:
  /** One particle before a white wall, its axis upright unless it is turned. */
  osg::ref_ptr<osg::Image> look(Drawable::ParticleShaderMode mode, zor::Quat const& turn = {}) {
    zor::ref_ptr<zor::ParticleSystem> const particles = new zor::ParticleSystem;
    particles->setDefaultColor(zor::Vec4f(0.5f, 0.5f, 0.5f, 1));
    particles->addParticle(Vec3(), 1);
    particles->setRotation(0, turn);
    scene.decorator->setBackgroundColor(Vec3(1, 1, 1));
    scene.view.lookAt({0, -6, 0}, {});
    scene.decorator->getLightSource(zorOSG::SceneDecorator::LIGHT0).setPosition(zor::Vec4(0, -1, 0, 0));
    osg::ref_ptr<osg::Group> const root = new osg::Group;
    zorOSG::createVisual(particles.get(), root, GetParam(), mode);
    scene.decorator->addChild(root);
    osg::ref_ptr<osg::Image> const image = scene.render(2);
    scene.decorator->removeChild(root);
    zorTest::keepImage(*image, "particle_look_" + std::to_string(GetParam()) + std::to_string(mode));
    return image;
  }

  double at(osg::Image const& image, double x, double z) { return scene.at(image, {x, -1, z}); }

  zorTest::DecoratorScene scene;
};

TEST_P(ParticleLooks, PlainBandedAndSoft) {
  osg::ref_ptr<osg::Image> const plain = look(Drawable::SIMPLE_SPRITES);
  double const middle = at(*plain, 0, 0), beside = at(*plain, 0.5, 0), edge = at(*plain, 0.72, 0);
  EXPECT_NEAR(at(*plain, 0, 0.5), beside, 0.03);
  EXPECT_LT(edge, middle);

  osg::ref_ptr<osg::Image> const banded = look(Drawable::ROTATION_SPRITES);
  EXPECT_LT(at(*banded, 0, 0), 0.75 * middle);
  EXPECT_LT(at(*banded, 0.5, 0), 0.75 * beside) << "the band runs around the axis";
  EXPECT_NEAR(at(*banded, 0, 0.5), beside, 0.03);
  osg::ref_ptr<osg::Image> const turned =
      look(Drawable::ROTATION_SPRITES, zor::Quat(1.5707963, Vec3(0, 1, 0)));
  EXPECT_NEAR(at(*turned, 0.5, 0), beside, 0.03);
  EXPECT_LT(at(*turned, 0, 0.5), 0.75 * beside) << "and turns with the particle";

  osg::ref_ptr<osg::Image> const soft = look(Drawable::ALPHA_SPRITES);
  EXPECT_NEAR(at(*soft, 0, 0), middle, 0.03);
  EXPECT_GT(at(*soft, 0.72, 0), edge + 0.15) << "the wall shines through the edge";
}

INSTANTIATE_TEST_SUITE_P(AllModes, ParticleLooks,
                         testing::Values(Drawable::SPRITES, Drawable::QUAD_SPRITES, Drawable::TRIANGLES));

} // namespace
