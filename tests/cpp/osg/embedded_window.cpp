#include "ApplicationFixture.h"
#include "Offscreen.h"

#include <zorOSG/EmbeddedGLWindow.h>
#include <zorOSG/GeometryNode.h>
#include <zorOSG/GuiEventListener.h>
#include <zorOSG/Lookup.h>
#include <zorOSG/PickHandler.h>
#include <zorOSG/RenderToImage.h>
#include <zorOSG/SceneDecorator.h>

#include <osg/GLExtensions>

#include <array>
#include <memory>

using namespace zorTest;

namespace {

constexpr int WIDTH = 160, HEIGHT = 120;

/// A host as window toolkits are: a context of its own, in which a framebuffer object stands for the widget.
class Host {
public:
  Host() : m_context(zorOSG::createOffscreenContext(16, 16)) {
    makeCurrent();
    auto const& gl = functions();
    gl.glGenFramebuffers(1, &m_framebuffer);
    gl.glGenRenderbuffers(2, m_buffers.data());
    gl.glBindFramebuffer(GL_FRAMEBUFFER_EXT, m_framebuffer);
    attach(0, GL_RGBA8, GL_COLOR_ATTACHMENT0_EXT);
    attach(1, GL_DEPTH_COMPONENT24, GL_DEPTH_ATTACHMENT_EXT);
  }
  ~Host() { m_context->releaseContext(); }

  void makeCurrent() { m_context->makeCurrent(); }
  void release() { m_context->releaseContext(); }
  unsigned framebuffer() const { return m_framebuffer; }
  osg::GLExtensions const& functions() const { return *m_context->getState()->get<osg::GLExtensions>(); }

  /** \return the framebuffer's picture */
  osg::ref_ptr<osg::Image> picture() {
    functions().glBindFramebuffer(GL_FRAMEBUFFER_EXT, m_framebuffer);
    osg::ref_ptr<osg::Image> image = new osg::Image;
    image->readPixels(0, 0, WIDTH, HEIGHT, GL_RGBA, GL_UNSIGNED_BYTE);
    return image;
  }

private:
  void attach(std::size_t index, GLenum format, GLenum point) {
    auto const& gl = functions();
    gl.glBindRenderbuffer(GL_RENDERBUFFER_EXT, m_buffers[index]);
    gl.glRenderbufferStorage(GL_RENDERBUFFER_EXT, format, WIDTH, HEIGHT);
    gl.glFramebufferRenderbuffer(GL_FRAMEBUFFER_EXT, point, GL_RENDERBUFFER_EXT, m_buffers[index]);
  }

  osg::ref_ptr<osg::GraphicsContext> m_context;
  GLuint m_framebuffer = 0;
  std::array<GLuint, 2> m_buffers{};
};

bool isRed(osg::Image const& picture, int x, int y) {
  osg::Vec4 const color = picture.getColor(static_cast<unsigned>(x), static_cast<unsigned>(y));
  return color.r() > 0.3f && color.r() > 2 * color.g();
}

int state(GLenum name) {
  GLint value = 0;
  glGetIntegerv(name, &value);
  return value;
}

/// Notes keys and where the mouse is.
class Notes : public zorOSG::GuiEventListener {
public:
  bool keyboard(int key, unsigned int modKeyMask, float, float, bool keydown) override {
    text += std::string(1, static_cast<char>(key)) + (keydown ? "+" : "-") + std::to_string(modKeyMask);
    if (onKey)
      onKey();
    return true;
  }
  bool mouseMoved(float x, float y) override {
    at = zor::Vec2(x, y);
    return false;
  }
  std::function<void()> onKey;
  std::string text;
  zor::Vec2 at;
};

} // namespace

class EmbeddedWindow : public testing::Test {
protected:
  void SetUp() override { open(); }

  void open() {
    ASSERT_TRUE(window.init(0, 0, WIDTH, HEIGHT));
    simulation = new zorSDK::Simulation;
    window.setSimulation(simulation.get());
    body = new zor::RigidBody(new zorCollide::Geometry(new zorCollide::Box(zor::Vec3(0.5, 0.5, 0.5))));
    simulation->add(body.get());
    simulation->setUniformGravity(zor::Vec3());
    zorOSG::setDiffuseColor(zorOSG::createVisual(body.get(), window.getRoot()), zor::Vec4f(1, 0, 0, 1));
    window.fitSceneIntoView();
  }

  void frames(int count) {
    for (int i = 0; i < count; ++i)
      window.frame();
  }

  osg::Matrixd view() { return window.getCamera()->getViewMatrix(); }

  Host host; // goes last
  zorOSG::EmbeddedGLWindow window;
  zor::ref_ptr<zorSDK::Simulation> simulation;
  zor::ref_ptr<zor::RigidBody> body;
};

TEST_F(EmbeddedWindow, targets_are_read_although_the_context_is_the_hosts) {
  using zorOSG::RenderTarget, zorOSG::RenderToImage;
  zor::ref_ptr<RenderToImage> const colors(new RenderToImage(60, 40)),
      depths(new RenderToImage(30, 20, RenderTarget::DEPTH_BUFFER));
  for (auto const& target : {colors, depths}) {
    target->setReferenceCamera(window.getCamera());
    target->getCamera()->addChild(window.getSceneDecorator());
    window.getCamera()->addChild(target->getCamera());
  }
  frames(2);
  host.release();
  EXPECT_TRUE(isRed(*colors->getImage(), 30, 20));
  EXPECT_LT(*reinterpret_cast<float const*>(depths->getImage()->data(15, 10)), 1.0f);
  EXPECT_EQ(*reinterpret_cast<float const*>(depths->getImage()->data(0, 0)), 1.0f);
  host.makeCurrent();
  colors->setSize(20, 80);
  frames(1);
  host.release();
  EXPECT_TRUE(isRed(*colors->getImage(), 10, 40));
  EXPECT_EQ(colors->getImage()->t(), 80);
  host.makeCurrent();
  EXPECT_EQ(state(GL_DRAW_FRAMEBUFFER_BINDING_EXT), static_cast<int>(host.framebuffer()));
}

TEST_F(EmbeddedWindow, draws_into_the_hosts_framebuffer_and_leaves_its_state_alone) {
  window.initGL();
  glDisable(GL_DEPTH_TEST);
  glEnable(GL_BLEND);
  glViewport(3, 4, 5, 6);
  glMatrixMode(GL_MODELVIEW);
  glLoadIdentity();
  glTranslatef(7, 8, 9);
  glMatrixMode(GL_PROJECTION);
  frames(2);
  EXPECT_EQ(state(GL_DRAW_FRAMEBUFFER_BINDING_EXT), static_cast<int>(host.framebuffer()));
  EXPECT_EQ(state(GL_CURRENT_PROGRAM), 0);
  EXPECT_EQ(state(GL_MATRIX_MODE), GL_PROJECTION);
  EXPECT_FALSE(glIsEnabled(GL_DEPTH_TEST));
  EXPECT_TRUE(glIsEnabled(GL_BLEND));
  std::array<GLint, 4> viewport{};
  glGetIntegerv(GL_VIEWPORT, viewport.data());
  EXPECT_EQ(viewport, (std::array<GLint, 4>{3, 4, 5, 6}));
  std::array<GLfloat, 16> matrix{};
  glGetFloatv(GL_MODELVIEW_MATRIX, matrix.data());
  EXPECT_EQ(matrix[12], 7);
  EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));

  auto picture = host.picture();
  keepImage(*picture, "embedded_window");
  EXPECT_TRUE(isRed(*picture, WIDTH / 2, HEIGHT / 2));
  EXPECT_FALSE(isRed(*picture, 2, 2));

  // A host that leaves other things behind, and draws into the upper half only.
  glEnable(GL_CULL_FACE);
  glCullFace(GL_FRONT_AND_BACK);
  glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
  glClearColor(0, 0, 1, 1);
  window.resize(0, HEIGHT / 2, WIDTH, HEIGHT / 2);
  window.fitSceneIntoView();
  glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
  frames(1);
  picture = host.picture();
  keepImage(*picture, "embedded_window_half");
  EXPECT_TRUE(isRed(*picture, WIDTH / 2, 3 * HEIGHT / 4));
  EXPECT_EQ(window.getHeight(), HEIGHT / 2);

  window.resize(0, 0, WIDTH, HEIGHT);
  window.fitSceneIntoView();
  window.setPolygonMode(GL_LINE);
  frames(1);
  EXPECT_FALSE(isRed(*host.picture(), WIDTH / 2, HEIGHT / 2)) << "only edges are drawn";
  EXPECT_THROW(window.setPolygonMode(3), std::invalid_argument);
  window.resize(0, 0, 0, 0);
  frames(1);
  EXPECT_THROW(window.resize(0, 0, -1, 5), std::invalid_argument);
}

TEST_F(EmbeddedWindow, shadows_fall_whatever_the_host_switches) {
  zor::ref_ptr<zor::RigidBody> const plate =
      new zor::RigidBody(new zorCollide::Geometry(new zorCollide::Box(zor::Vec3(3, 3, 0.1))));
  plate->setMotionControl(zor::RigidBody::STATIC);
  plate->setPosition(zor::Vec3(0, 0, -1.5));
  simulation->add(plate.get());
  zorOSG::setDiffuseColor(zorOSG::createVisual(plate.get(), window.getRoot()), zor::Vec4f(1, 1, 1, 1));
  window.fitSceneIntoView();
  auto const brightness = [&](bool shadows, bool hostTests) {
    window.getSceneDecorator()->setEnableShadows(shadows);
    (hostTests ? glEnable : glDisable)(GL_DEPTH_TEST);
    (hostTests ? glEnable : glDisable)(GL_CULL_FACE);
    frames(2); // the second finds what the first has left
    auto const picture = host.picture();
    keepImage(*picture, shadows ? "embedded_window_shadows" : "embedded_window_light");
    double sum = 0;
    for (int y = 0; y < HEIGHT; ++y)
      for (int x = 0; x < WIDTH; ++x)
        sum += picture->getColor(static_cast<unsigned>(x), static_cast<unsigned>(y)).b();
    return sum;
  };
  for (bool const hostTests : {false, true})
    EXPECT_LT(brightness(true, hostTests), brightness(false, hostTests) - 30);
}

TEST_F(EmbeddedWindow, events_move_the_camera_and_reach_listeners) {
  zor::ref_ptr<Notes> const notes = new Notes;
  simulation->add(notes.get());
  frames(1);
  osg::Matrixd const start = view();
  auto const drag = [this](int button) {
    osg::Matrixd const before = view();
    window.mousePressEvent(80, 60, button);
    frames(1);
    for (int i = 1; i < 5; ++i) {
      window.mouseMoveEvent(80 + 6 * i, 60 + 3 * i);
      frames(1);
    }
    window.mouseReleaseEvent(104, 72, button);
    frames(1);
    return view() != before;
  };
  EXPECT_TRUE(drag(0));
  EXPECT_TRUE(drag(1));
  EXPECT_TRUE(drag(2));
  osg::Matrixd const before = view();
  window.wheelEvent(0);
  frames(1);
  EXPECT_NE(view(), before);
  window.setTrackBallManipulator();
  EXPECT_TRUE(drag(0));
  EXPECT_NE(view(), start);
  EXPECT_THROW(window.mousePressEvent(1, 1, 3), std::invalid_argument);
  EXPECT_THROW(window.wheelEvent(2), std::invalid_argument);

  window.keyPressEvent('k', 4);
  window.keyReleaseEvent('k', 0);
  window.mouseMoveEvent(10, 20);
  frames(1);
  EXPECT_EQ(notes->text, "k+4k-0");
  EXPECT_TRUE(notes->at.equals(zor::Vec2(10, HEIGHT - 20), 1)) << notes->at;

  notes->onKey = [this] { window.clear(); };
  window.keyPressEvent('c', 0);
  EXPECT_THROW(frames(1), std::runtime_error) << "a listener must not take the window apart";
  frames(1);
}

TEST_F(EmbeddedWindow, bodies_are_dragged_and_followed) {
  zor::ref_ptr<zorOSG::PickHandler> const handler = new zorOSG::PickHandler(nullptr, window.getRoot());
  handler->setCamera(window.getCamera());
  handler->setActivateModKeyMask(0);
  simulation->add(handler.get());
  frames(1);
  zor::Vec3 const before = body->getPosition();
  window.mousePressEvent(80, 60, 0);
  frames(1);
  EXPECT_EQ(handler->getPickedBody(), body.get());
  window.mouseMoveEvent(120, 60);
  for (int i = 0; i < 60; ++i) {
    simulation->stepForward();
    frames(1);
  }
  window.mouseReleaseEvent(120, 60, 0);
  frames(1);
  EXPECT_EQ(handler->getPickedBody(), nullptr);
  EXPECT_GT(body->getPosition().distance(before), 0.2);
  EXPECT_GT(window.getSceneRadius(nullptr), 0.5);

  body->setVelocity(zor::Vec3());
  auto* const node = zorOSG::findGeometryNode(body->getGeometries()[0].get(), window.getRoot());
  window.setOrbitCamera(node, body->getPosition() + zor::Vec3(0, -6, 1));
  frames(1);
  body->setPosition(body->getPosition() + zor::Vec3(40, 0, 0));
  frames(3);
  EXPECT_TRUE(isRed(*host.picture(), WIDTH / 2, HEIGHT / 2)) << "the camera has to follow";
  EXPECT_THROW(window.setOrbitCamera(nullptr, zor::Vec3()), std::invalid_argument);
}

TEST_F(EmbeddedWindow, contexts_that_are_missing_or_others_are_told) {
  frames(1);
  EXPECT_FALSE(window.init(0, 0, 10, 10)) << "it is initialised already";
  host.release();
  EXPECT_THROW(window.frame(), std::runtime_error);
  zorOSG::EmbeddedGLWindow second;
  EXPECT_FALSE(second.init(0, 0, 10, 10));
  EXPECT_THROW(second.frame(), std::runtime_error);
  EXPECT_EQ(second.getRoot(), nullptr);
  second.keyPressEvent('x', 0);
  {
    Host other;
    LogRecorder log;
    try {
      window.frame();
      FAIL() << "it draws into another context";
    } catch (std::runtime_error const& error) {
      EXPECT_NE(std::string(error.what()).find("another OpenGL context"), std::string::npos) << error.what();
    }
    // Anew in the other context; nothing of the first one may be used there.
    osg::ref_ptr<osg::Camera> const kept = window.getCamera();
    window.clear();
    EXPECT_EQ(window.getSimulation(), nullptr);
    EXPECT_EQ(window.getCamera(), nullptr);
    EXPECT_THROW(window.fitSceneIntoView(), std::runtime_error);
    EXPECT_EQ(kept->getGraphicsContext(), nullptr);
    open();
    frames(2);
    EXPECT_TRUE(isRed(*other.picture(), WIDTH / 2, HEIGHT / 2));
    window.clear();
  }
  // Back in the first; two windows in one context, one of which goes without it.
  host.makeCurrent();
  open();
  EXPECT_TRUE(second.init(0, 0, WIDTH, HEIGHT));
  second.frame();
  frames(1);
  EXPECT_TRUE(isRed(*host.picture(), WIDTH / 2, HEIGHT / 2));
  host.release();
  second.clear();
  host.makeCurrent();
  frames(1);
  EXPECT_TRUE(isRed(*host.picture(), WIDTH / 2, HEIGHT / 2));
}

TEST_F(EmbeddedWindow, debug_rendering_shows_the_simulation_to_a_camera_that_asks_for_it) {
  auto const differsFrom = [&](osg::Image const& before) {
    frames(1);
    osg::ref_ptr<osg::Image> const now = host.picture();
    int count = 0;
    for (int y = 0; y < HEIGHT; ++y)
      for (int x = 0; x < WIDTH; ++x)
        count +=
            (now->getColor(unsigned(x), unsigned(y)) - before.getColor(unsigned(x), unsigned(y))).length() >
            0.1f;
    return count;
  };
  frames(2);
  osg::ref_ptr<osg::Image> const plain = host.picture();
  EXPECT_EQ(differsFrom(*plain), 0);
  window.getCamera()->setCullMask(~0u);
  EXPECT_GT(differsFrom(*plain), 30);
  window.removeSimulation();
  EXPECT_EQ(differsFrom(*plain), 0);
}
