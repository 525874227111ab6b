#include "Turns.h"
#include "bench_visuals_scene.h"

#include <zorCollide/Trimesh.h>
#include <zorOSG/CreateVisual.h>
#include <zorOSG/Lookup.h>
#include <zorOSG/RenderState.h>
#include <zorSDK/Assembly.h>

#include <benchmark/benchmark.h>
#include <malloc.h>
#include <osg/Image>
#include <osg/NodeVisitor>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <numeric>
#include <random>

// Visuals of this toolkit beside the same scene written on the scene-graph library (bench_visuals_scene.h).
// Both take turns; processor times are compared, since the renderer has threads of its own: overhead_percent
// is what ours takes more.

namespace {

using scene::Bodies;
using scene::HandWritten;

scene::Meshes const& meshes() {
  static scene::Meshes const all;
  return all;
}

/** Waits until a frame is drawn, by reading a pixel of it, so that it is not counted with the next; keeps all
 * pixels of one that is asked for. */
class Finish : public osg::Camera::DrawCallback {
public:
  void operator()(osg::RenderInfo&) const override {
    m_pixel->readPixels(0, 0, m_whole ? scene::WIDTH : 1, m_whole ? scene::HEIGHT : 1, GL_RGB,
                        GL_UNSIGNED_BYTE);
  }
  void readWhole(bool whole) { m_whole = whole; }
  osg::Image const& image() const { return *m_pixel; }

private:
  osg::ref_ptr<osg::Image> m_pixel = new osg::Image;
  bool m_whole = false;
};

/** One of the two ways to draw the bodies, each with bodies of its own. */
struct View {
  explicit View(int count) : bodies(count) {}

  void open(osg::Node& top) {
    viewer = scene::makeViewer(top, bodies);
    viewer->getCamera()->addFinalDrawCallback(finish.get());
  }
  osg::ref_ptr<osg::Image> picture() {
    finish->readWhole(true);
    viewer->frame();
    finish->readWhole(false);
    return new osg::Image(finish->image());
  }

  Bodies bodies;
  osg::ref_ptr<osgViewer::Viewer> viewer;
  osg::ref_ptr<Finish> finish = new Finish;
};

/** Part of the pixels that differ visibly; where it is not small the two do not draw the same. */
double differingPart(osg::Image const& a, osg::Image const& b) {
  unsigned int differing = 0, lit = 0;
  for (int y = 0; y < a.t(); ++y)
    for (int x = 0; x < a.s(); ++x) {
      bool const differs = std::abs(int{*a.data(x, y)} - int{*b.data(x, y)}) > 8;
      differing += differs ? 1 : 0;
      lit += *a.data(x, y) != *a.data(0, 0) ? 1 : 0;
    }
  return lit > 0 ? static_cast<double>(differing) / (a.s() * a.t()) : 1.0;
}

enum class By { SIMULATION, BODY };

void createOurs(Bodies& bodies, osg::Group& root, By by, bool colored) {
  if (by == By::SIMULATION) {
    zorOSG::createVisual(&bodies.simulation(), &root);
    for (size_t i = 0; colored && i < bodies.geometries().size(); ++i)
      zorOSG::setDiffuseColor(bodies.geometries()[i].get(), scene::colorOf(static_cast<int>(i)), &root);
    return;
  }
  auto const& all = bodies.simulation().getRigidBodies();
  for (size_t i = 0; i < all.size(); ++i) {
    zorOSG::createVisual(all[i].get(), &root);
    if (colored)
      zorOSG::setDiffuseColor(all[i].get(), scene::colorOf(static_cast<int>(i)), &root);
  }
}

void drawFrames(benchmark::State& state) {
  auto const count = static_cast<int>(state.range(0));
  bool const moving = state.range(1) != 0, colored = state.range(2) != 0;
  View ours(count), theirs(count);
  osg::ref_ptr<zorOSG::SceneDecorator> const decorator =
      new zorOSG::SceneDecorator(scene::WIDTH, scene::HEIGHT, zorOSG::SceneDecorator::ALL);
  decorator->setEnableShadows(false);
  decorator->setEnableLogo(false);
  decorator->setBackgroundColor(zor::Vec3(0.2, 0.2, 0.4)); // the viewers' own
  createOurs(ours.bodies, *decorator, By::SIMULATION, colored);
  ours.open(*decorator);
  ours.viewer->frame();
  HandWritten handWritten(theirs.bodies, meshes(), colored);
  osg::ref_ptr<osg::Group> const top = scene::litLike(*decorator, handWritten.root());
  theirs.open(*top);

  int frame = 0;
  auto const drawOurs = [&] {
    if (moving)
      ours.bodies.move(frame);
    ours.viewer->frame();
  };
  auto const drawTheirs = [&] {
    if (moving) {
      theirs.bodies.move(frame);
      handWritten.follow();
    }
    theirs.viewer->frame();
  };
  for (; frame < 3; ++frame) { // compiles shaders, fills buffers
    drawOurs();
    drawTheirs();
  }
  if (differingPart(*ours.picture(), *theirs.picture()) > 0.005) {
    state.SkipWithError("the two pictures differ");
    return;
  }
  Turns turns;
  for ([[maybe_unused]] auto _ : state) {
    double const before = turns.ours.wall;
    turns.take(drawOurs, drawTheirs);
    ++frame;
    state.SetIterationTime(turns.ours.wall - before);
  }
  auto const frames = static_cast<double>(state.iterations());
  state.counters["frames_per_second"] = frames / turns.ours.wall;
  state.counters["written_frames_per_second"] = frames / turns.theirs.wall;
  state.counters["overhead_percent"] = turns.overheadPercent();
}

double heapBytes() {
  struct mallinfo2 const info = mallinfo2();
  return static_cast<double>(info.uordblks + info.hblkhd);
}

void createVisuals(benchmark::State& state) {
  auto const count = static_cast<int>(state.range(0));
  By const by = state.range(1) == 0 ? By::SIMULATION : By::BODY;
  bool const colored = state.range(2) != 0;
  Bodies ours(count), theirs(count);
  meshes();
  Turns turns;
  double ourBytes = 0, theirBytes = 0;
  for ([[maybe_unused]] auto _ : state) {
    osg::ref_ptr<osg::Group> const root = new osg::Group;
    std::unique_ptr<HandWritten> handWritten;
    double const before = turns.ours.wall;
    turns.take(
        [&] {
          double const bytes = heapBytes();
          createOurs(ours, *root, by, colored);
          ourBytes = heapBytes() - bytes;
        },
        [&] {
          double const bytes = heapBytes();
          handWritten = std::make_unique<HandWritten>(theirs, meshes(), colored, by == By::BODY);
          theirBytes = heapBytes() - bytes;
        });
    state.SetIterationTime(turns.ours.wall - before);
  }
  state.counters["bytes_per_body"] = ourBytes / count;
  state.counters["written_bytes_per_body"] = theirBytes / count;
  state.counters["more_bytes_percent"] = 100 * (ourBytes / theirBytes - 1);
  state.counters["overhead_percent"] = turns.overheadPercent();
}

/** How the scene-graph library searches: every node is asked. */
class Searcher : public osg::NodeVisitor {
public:
  explicit Searcher(osg::Node const* wanted) : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN), m_wanted(wanted) {}
  void apply(osg::Node& node) override {
    if (&node == m_wanted)
      found = true;
    if (!found)
      traverse(node);
  }
  bool found = false;

private:
  osg::Node const* m_wanted;
};

void findNodes(benchmark::State& state) {
  auto const count = static_cast<size_t>(state.range(0));
  Bodies ours(static_cast<int>(count)), theirs(static_cast<int>(count));
  osg::ref_ptr<osg::Group> const root = new osg::Group;
  createOurs(ours, *root, By::SIMULATION, false);
  HandWritten handWritten(theirs, meshes(), false);
  osg::ref_ptr<osg::Group> const above = new osg::Group; // ours has a group below the root, too
  above->addChild(&handWritten.root());
  std::vector<size_t> order(count);
  std::iota(order.begin(), order.end(), size_t{0});
  std::shuffle(order.begin(), order.end(), std::mt19937(1));
  constexpr size_t calls = 1000;
  size_t next = 0, found = 0;
  Turns turns;
  for ([[maybe_unused]] auto _ : state) {
    double const before = turns.ours.wall;
    turns.take(
        [&] {
          for (size_t i = next; i < next + calls; ++i)
            found += zorOSG::findGeometryNode(ours.geometries()[order[i % count]].get(), root) ? 1 : 0;
        },
        [&] {
          for (size_t i = next; i < next + calls; ++i)
            found += handWritten.find(theirs.geometries()[order[i % count]].get(), *above) ? 1 : 0;
        });
    next += calls;
    state.SetIterationTime(turns.ours.wall - before);
  }
  auto const total = static_cast<double>(state.iterations()) * calls;
  if (static_cast<double>(found) != 2 * total)
    state.SkipWithError("not all were found");
  Used walk;
  walk.take([&] {
    for (size_t i = 0; i < 10; ++i) {
      Searcher searcher(handWritten.find(theirs.geometries()[order[i]].get(), *above));
      handWritten.root().accept(searcher);
    }
  });
  state.counters["ns_per_call"] = 1e9 * turns.ours.processor / total;
  state.counters["map_ns_per_call"] = 1e9 * turns.theirs.processor / total;
  state.counters["visitor_ns_per_call"] = 1e9 * walk.processor / 10;
}

/** A ball of triangles with render data, as robots and machines from files have them. */
zor::ref_ptr<zorCollide::Shape> makeMeshShape(unsigned int rings) {
  zor::Vec3Vector vertices;
  zor::UInt32Vector indices;
  unsigned int const around = 2 * rings;
  for (unsigned int i = 0; i <= rings; ++i)
    for (unsigned int j = 0; j < around; ++j) {
      double const up = M_PI * i / rings, turn = 2 * M_PI * j / around;
      vertices.push_back(
          zor::Vec3(std::sin(up) * std::cos(turn), std::sin(up) * std::sin(turn), std::cos(up)));
    }
  for (unsigned int i = 0; i < rings; ++i)
    for (unsigned int j = 0; j < around; ++j) {
      unsigned int const a = i * around + j, b = i * around + (j + 1) % around;
      for (unsigned int const corner : {a, a + around, b, b, a + around, b + around})
        indices.push_back(corner);
    }
  zor::ref_ptr<zorCollide::Trimesh> const shape = new zorCollide::Trimesh(vertices, indices);
  zor::ref_ptr<zorRender::RenderData> const data = new zorRender::RenderData;
  data->setVertices(vertices);
  data->setNormals(vertices);
  data->setIndices(indices);
  zor::ref_ptr<zorRender::RenderMaterial> const material = new zorRender::RenderMaterial;
  material->setDiffuseColor(zorRender::Color(0.9f, 0.6f, 0.2f));
  data->setRenderMaterial(material.get());
  shape->setRenderData(data.get());
  return zor::ref_ptr<zorCollide::Shape>(shape.get());
}

/** An assembly of bodies that share ten shapes of 3,200 triangles: with templates and without. */
void createFromTemplates(benchmark::State& state) {
  zor::ref_ptr<zorSDK::Assembly> const assembly = new zorSDK::Assembly;
  std::vector<zor::ref_ptr<zorCollide::Shape>> shapes;
  for (unsigned int i = 0; i < 10; ++i)
    shapes.push_back(makeMeshShape(36 + i));
  for (size_t i = 0; i < static_cast<size_t>(state.range(0)); ++i)
    assembly->add(new zor::RigidBody(new zorCollide::Geometry(shapes[i % shapes.size()].get())));
  zor::ref_ptr<zorOSG::RigidBodyRenderCache> const cache = new zorOSG::RigidBodyRenderCache;
  Turns turns;
  for ([[maybe_unused]] auto _ : state) {
    osg::ref_ptr<osg::Group> const cached = new osg::Group, plain = new osg::Group;
    double const before = turns.ours.wall;
    turns.take([&] { zorOSG::createVisualTemplateCaching(assembly.get(), cached.get(), cache.get()); },
               [&] { zorOSG::createVisual(assembly.get(), plain.get()); });
    state.SetIterationTime(turns.ours.wall - before);
  }
  state.counters["plain_time_ratio"] = turns.theirs.processor / turns.ours.processor;
}

} // namespace

BENCHMARK(createVisuals)
    ->ArgNames({"bodies", "each", "colored"})
    ->ArgsProduct({{10000}, {0, 1}, {0, 1}})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(createFromTemplates)->ArgName("bodies")->Arg(1000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(findNodes)->ArgName("bodies")->Arg(1000)->Arg(100000)->UseManualTime()->Unit(
    benchmark::kMicrosecond);
BENCHMARK(drawFrames)
    ->ArgNames({"bodies", "moving", "colored"})
    ->ArgsProduct({{10000}, {0, 1}, {0, 1}})
    ->UseManualTime()
    ->MinTime(5)
    ->Unit(benchmark::kMillisecond);
