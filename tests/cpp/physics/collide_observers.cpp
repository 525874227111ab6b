// Those who watch geometries from C++: what they are told, and that they may come and go meanwhile.

#include <zor/RigidBody.h>
#include <zorCollide/Box.h>
#include <zorCollide/Geometry.h>
#include <zorCollide/GeometryObserver.h>
#include <zorCollide/GeometryPrefetch.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

using zor::ref_ptr;
using zorCollide::Geometry;

namespace {

class Watcher : public zorCollide::GeometryObserver {
public:
  explicit Watcher(Geometry* geometry, std::string& log, char name) : m_log(log), m_name(name) {
    observe(geometry);
  }

  std::function<void()> atShapes;

protected:
  void geometryMoved() override { (m_log += m_name) += "m "; }
  void geometryShapesChanged() override {
    (m_log += m_name) += "s ";
    if (auto const act = atShapes)
      act();
  }
  void geometryLeft(zorCollide::Space* space, Geometry*) override {
    (m_log += m_name) += space ? "l " : "d ";
  }

private:
  std::string& m_log;
  char m_name;
};

ref_ptr<Geometry> makeGeometry() {
  return new Geometry(new zorCollide::Box(1, 1, 1));
}

} // namespace

TEST(GeometryObservers, AreToldInTheirOrderAndBeforeListeners) {
  std::string log;
  ref_ptr<Geometry> geometry = makeGeometry();
  Watcher const first(geometry.get(), log, 'a'), second(geometry.get(), log, 'b');
  auto const listener = geometry->getShapeChangeEvent().add([&](Geometry*) { log += "event "; });
  geometry->setPosition(zor::Vec3(1, 0, 0));
  geometry->add(new zorCollide::Box(1, 1, 1));
  geometry = nullptr;
  EXPECT_EQ(log, "am bm as bs event ad bd ");
  EXPECT_EQ(first.getObserved(), nullptr);
}

TEST(GeometryObservers, ComeAndGoWhileTheyAreTold) {
  std::string log;
  ref_ptr<Geometry> const geometry = makeGeometry();
  Watcher first(geometry.get(), log, 'a');
  auto second = std::make_unique<Watcher>(geometry.get(), log, 'b');
  Watcher const third(geometry.get(), log, 'c');
  std::unique_ptr<Watcher> fourth;
  first.atShapes = [&] {
    first.atShapes = nullptr;
    second = nullptr;
    fourth = std::make_unique<Watcher>(geometry.get(), log, 'd');
    // And once more from within.
    static_cast<zorCollide::Box*>(geometry->getShape(0))->setHalfExtents(zor::Vec3(2, 1, 1));
  };
  geometry->add(new zorCollide::Box(1, 1, 1));
  EXPECT_EQ(log, "as as cs ds cs ds ");
}

TEST(GeometryObservers, ShapesAwayFromTheFrameAreKnown) {
  ref_ptr<Geometry> const geometry = makeGeometry();
  EXPECT_FALSE(geometry->hasShapeTransforms());
  geometry->setShapeTransform(0, zor::AffineMatrix4x4::translate(0, 1, 0));
  EXPECT_TRUE(geometry->hasShapeTransforms());
  geometry->setShapeTransform(0, zor::AffineMatrix4x4());
  EXPECT_FALSE(geometry->hasShapeTransforms());
  ref_ptr<zorCollide::Shape> const away = new zorCollide::Box(1, 1, 1);
  geometry->add(away.get(), zor::AffineMatrix4x4::translate(0, 0, 1));
  EXPECT_TRUE(geometry->hasShapeTransforms());
  geometry->remove(away.get());
  EXPECT_FALSE(geometry->hasShapeTransforms());
}

TEST(GeometryPrefetch, TakesGeometriesWithAndWithoutBodiesAndShapes) {
  for (size_t const count : {0u, 1u, 5u, 40u}) {
    zorCollide::GeometryRefVector geometries;
    std::vector<ref_ptr<zor::RigidBody>> bodies;
    for (size_t i = 0; i < count; ++i) {
      geometries.push_back(i % 3 == 0 ? ref_ptr<Geometry>(new Geometry) : makeGeometry());
      if (i % 2 == 0)
        bodies.emplace_back(new zor::RigidBody(geometries[i].get()));
    }
    zorCollide::GeometryPrefetch const prefetch(geometries);
    for (size_t i = 0; i < count; ++i)
      EXPECT_NO_FATAL_FAILURE(prefetch.before(i));
  }
}
