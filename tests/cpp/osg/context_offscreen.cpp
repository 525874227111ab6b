#include "EdgeScene.h"

#include <gtest/gtest.h>

#include <osg/GL>
#include <osg/Geometry>
#include <osg/ShapeDrawable>

#include <array>
#include <stdexcept>
#include <thread>

namespace {

using zorOSG::createOffscreenContext;

std::array<unsigned char, 4> clearedPixel(osg::GraphicsContext& context, float red) {
  EXPECT_TRUE(context.makeCurrent());
  glClearColor(red, 0.0f, 0.0f, 1.0f);
  glClear(GL_COLOR_BUFFER_BIT);
  std::array<unsigned char, 4> pixel{};
  glReadPixels(context.getTraits()->width - 1, context.getTraits()->height - 1, 1, 1, GL_RGBA,
               GL_UNSIGNED_BYTE, pixel.data());
  EXPECT_EQ(static_cast<GLenum>(GL_NO_ERROR), glGetError());
  return pixel;
}

TEST(OffscreenContext, hasTheCompatibilityProfileAndTheSizeAskedFor) {
  auto const context = createOffscreenContext(37, 21);
  ASSERT_TRUE(context->isRealized());
  EXPECT_EQ(255, clearedPixel(*context, 1.0f)[0]);
  glBegin(GL_POINTS);
  glEnd();
  EXPECT_EQ(static_cast<GLenum>(GL_NO_ERROR), glGetError()) << "immediate mode needs the profile";
  EXPECT_TRUE(context->releaseContext());
}

TEST(OffscreenContext, drawsInTheNewSizeAfterAResize) {
  auto const context = createOffscreenContext(8, 8);
  clearedPixel(*context, 0.0f);
  context->resized(0, 0, 64, 48);
  EXPECT_EQ(64, context->getTraits()->width);
  EXPECT_EQ(255, clearedPixel(*context, 1.0f)[0]) << "the corner of the larger buffer";
  EXPECT_THROW(context->resized(0, 0, 0, 48), std::invalid_argument);
  EXPECT_EQ(255, clearedPixel(*context, 1.0f)[0]) << "a refused resize changes nothing";
}

TEST(OffscreenContext, severalContextsKeepTheirPixelsApart) {
  auto const first = createOffscreenContext(8, 8);
  auto const second = createOffscreenContext(8, 8);
  EXPECT_NE(first->getState()->getContextID(), second->getState()->getContextID());
  clearedPixel(*first, 1.0f);
  clearedPixel(*second, 0.0f);
  first->makeCurrent();
  std::array<unsigned char, 4> pixel{};
  glReadPixels(0, 0, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel.data());
  EXPECT_EQ(255, pixel[0]);
}

TEST(OffscreenContext, aSharingContextSeesTheOthersTextures) {
  auto const first = createOffscreenContext(8, 8);
  first->makeCurrent();
  GLuint texture = 0;
  glGenTextures(1, &texture);
  glBindTexture(GL_TEXTURE_2D, texture);
  first->releaseContext();

  osg::ref_ptr<osg::GraphicsContext::Traits> const traits =
      new osg::GraphicsContext::Traits(*first->getTraits());
  traits->sharedContext = first.get();
  auto const second = createOffscreenContext(traits.get());
  EXPECT_EQ(first->getState()->getContextID(), second->getState()->getContextID());
  second->makeCurrent();
  EXPECT_EQ(GL_TRUE, glIsTexture(texture));
}

TEST(OffscreenContext, movesBetweenThreads) {
  auto const context = createOffscreenContext(8, 8);
  clearedPixel(*context, 1.0f);
  context->releaseContext();
  std::thread([&context] {
    EXPECT_EQ(255, clearedPixel(*context, 1.0f)[0]);
    context->releaseContext();
  }).join();
  EXPECT_EQ(255, clearedPixel(*context, 1.0f)[0]);
}

TEST(OffscreenContext, refusesWhatCannotBe) {
  EXPECT_THROW(createOffscreenContext(0, 10), std::invalid_argument);
  EXPECT_THROW(createOffscreenContext(10, 100000), std::invalid_argument);
  EXPECT_THROW(createOffscreenContext(nullptr), std::invalid_argument);
  auto const closed = createOffscreenContext(8, 8);
  closed->close();
  EXPECT_FALSE(closed->valid());
  EXPECT_FALSE(closed->makeCurrent()) << "a closed context says no, it does not crash";
  osg::ref_ptr<osg::GraphicsContext::Traits> const traits =
      new osg::GraphicsContext::Traits(*closed->getTraits());
  traits->sharedContext = closed.get();
  EXPECT_THROW(createOffscreenContext(traits.get()), std::invalid_argument);
}

TEST(OffscreenContext, describesItselfWithoutDisturbingTheCurrentContext) {
  auto const context = createOffscreenContext(8, 8);
  clearedPixel(*context, 1.0f);
  std::string const line = zorOSG::describeGraphics();
  EXPECT_NE(std::string::npos, line.find("off screen, EGL")) << line;
  EXPECT_NE(std::string::npos, line.find("OpenGL ")) << line;
  std::array<unsigned char, 4> pixel{};
  glReadPixels(0, 0, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel.data());
  EXPECT_EQ(255, pixel[0]) << "still current after " << line;
  EXPECT_EQ(line, zorOSG::describeGraphics(context.get()));
}

/** Cached meshes and programs live longer than a context, as when one application follows another. */
TEST(OffscreenContext, nodesKeptBeyondAContextAreDrawnInTheNext) {
  osg::ref_ptr<osg::ShapeDrawable> const ball = new osg::ShapeDrawable(new osg::Sphere({}, 1.0f));
  ball->setUseDisplayList(false);
  ball->setUseVertexBufferObjects(true);
  osg::ref_ptr<osg::Program> const program = new osg::Program;
  program->addShader(new osg::Shader(osg::Shader::FRAGMENT, "void main() { gl_FragColor = vec4(1.0); }"));
  ball->getOrCreateStateSet()->setAttribute(program);
  for (int i = 0; i < 3; ++i) {
    zorTest::Offscreen view(20, 20);
    view.lookAt({0.0, -3.0, 0.0}, {});
    // What another run put into the context takes the handles that the kept nodes remember.
    osg::ref_ptr<osg::Group> const scene = new osg::Group;
    for (int k = 0; k < i; ++k)
      scene->addChild(new osg::ShapeDrawable(new osg::Box({0.0f, 90.0f, 0.0f}, 1.0f)));
    scene->addChild(ball);
    EXPECT_DOUBLE_EQ(1.0, zorTest::brightness(*view.render(scene), {10.0, 10.0})) << "context " << i;
    view.viewer().setSceneData(nullptr);
  }
}

/** Where the driver's multisampled buffers cannot be read the context has none and says so in its traits. */
TEST(OffscreenContext, multiSamplingSmoothsEdgesOrIsNotClaimed) {
  osg::ref_ptr<osg::Geometry> const triangle =
      zorTest::whiteTriangle({-1.0f, 0.0f, -1.0f}, {1.0f, 0.0f, -0.9f}, {-1.0f, 0.0f, 1.0f});
  for (unsigned int const asked : {0u, 4u}) {
    zorTest::Offscreen view(40, 40, asked);
    view.camera().setClearColor({0.0f, 0.0f, 0.0f, 1.0f});
    view.lookAt({0.0, -5.0, 0.0}, {});
    auto const image = view.render(triangle);
    EXPECT_DOUBLE_EQ(1.0, zorTest::brightness(*image, view.project({-0.5, 0.0, -0.5})));
    bool const smooth = view.context().getTraits()->samples > 0;
    EXPECT_EQ(smooth, zorTest::countShades(*image, 0.1, 0.9) > 5) << asked << " samples asked for";
  }
}

} // namespace
