#include <zor/DeleteHandler.h>
#include <zor/Object.h>
#include <zor/observer_ptr.h>
#include <zor/ref_ptr.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace {

class Counted : public zor::Object {
public:
  explicit Counted(std::atomic<int>& alive) : m_alive(alive) { ++m_alive; }

protected:
  ~Counted() override { --m_alive; }

private:
  std::atomic<int>& m_alive;
};

class Derived : public Counted {
public:
  using Counted::Counted;
  zor::ref_ptr<Derived> other;
};

// Keeps dead objects until flush().
class LateHandler : public zor::DeleteHandler {
public:
  void requestDelete(zor::Referenced const* object) override { m_objects.push_back(object); }
  void flush() {
    for (zor::Referenced const* object : m_objects) {
      destroy(object);
    }
    m_objects.clear();
  }
  std::size_t size() const { return m_objects.size(); }

private:
  std::vector<zor::Referenced const*> m_objects;
};

template <class Work>
void onThreads(int count, Work work) {
  std::vector<std::thread> threads;
  for (int i = 0; i < count; ++i) {
    threads.emplace_back(work);
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
}

TEST(References, LastReferenceDestroys) {
  std::atomic<int> alive{0};
  zor::ref_ptr<Counted> a(new Derived(alive));
  EXPECT_EQ(a->getReferenceCount(), 1);
  zor::ref_ptr<zor::Object> b = a;
  zor::ref_ptr<Counted> c(std::move(a));
  EXPECT_EQ(a, nullptr);
  EXPECT_EQ(b->getReferenceCount(), 2);
  EXPECT_EQ(b, c);
  c = c.get(); // assignment of what it holds must not let go in between
  b.reset();
  EXPECT_EQ(alive, 1);
  c = nullptr;
  EXPECT_EQ(alive, 0);
}

TEST(References, ReleaseHandsOverWithoutDestroying) {
  std::atomic<int> alive{0};
  Counted* plain = zor::make_ref<Counted>(alive).release();
  ASSERT_EQ(alive, 1);
  EXPECT_EQ(plain->getReferenceCount(), 0);
  plain->reference();
  plain->unreference();
  EXPECT_EQ(alive, 0);
}

TEST(References, CopyOfAnObjectHasItsOwnCount) {
  zor::ref_ptr<zor::Object> original = zor::make_ref<zor::Object>("one");
  zor::ref_ptr<zor::Object> copy = zor::make_ref<zor::Object>(*original);
  *copy = *original;
  EXPECT_EQ(copy->getReferenceCount(), 1);
  EXPECT_EQ(original->getReferenceCount(), 1);
  EXPECT_EQ(copy->getName(), "one");
}

TEST(References, ChainDiesWhileItIsReassigned) {
  std::atomic<int> alive{0};
  zor::ref_ptr<Derived> first = zor::make_ref<Derived>(alive);
  first->other = zor::make_ref<Derived>(alive);
  first = first->other; // the assigned value lives in the object that dies
  EXPECT_EQ(alive, 1);
  EXPECT_EQ(first->getReferenceCount(), 1);
}

TEST(References, CountHoldsAcrossThreads) {
  std::atomic<int> alive{0};
  zor::ref_ptr<Counted> shared = zor::make_ref<Counted>(alive);
  onThreads(4, [&shared] {
    for (int i = 0; i < 20000; ++i) {
      zor::ref_ptr<Counted> const copy(shared);
    }
  });
  EXPECT_EQ(shared->getReferenceCount(), 1);
  shared.reset();
  EXPECT_EQ(alive, 0);
}

TEST(References, DeleteHandlerDecidesWhen) {
  std::atomic<int> alive{0};
  LateHandler handler;
  zor::Referenced::setDeleteHandler(&handler);
  zor::ref_ptr<Counted> object = zor::make_ref<Counted>(alive);
  zor::observer_ptr<Counted> const observer(object);
  object.reset();
  EXPECT_EQ(zor::Referenced::getDeleteHandler(), &handler);
  zor::Referenced::setDeleteHandler(nullptr);
  EXPECT_EQ(handler.size(), 1u);
  EXPECT_EQ(alive, 1);
  EXPECT_FALSE(observer.isValid()) << "an object that waits for destruction is out of bounds";
  handler.flush();
  EXPECT_EQ(alive, 0);
}

TEST(Observers, TurnNullWhenTheObjectDies) {
  std::atomic<int> alive{0};
  zor::ref_ptr<Counted> object = zor::make_ref<Counted>(alive);
  zor::observer_ptr<Counted> const observer(object);
  zor::observer_ptr<Counted> copy = observer;
  EXPECT_EQ(object->getReferenceCount(), 1);
  EXPECT_EQ(observer.lock(), object);
  object.reset();
  EXPECT_EQ(observer.get(), nullptr);
  EXPECT_EQ(observer.lock(), nullptr);
  EXPECT_EQ(copy, observer);
  copy = zor::observer_ptr<Counted>();
  EXPECT_EQ(copy.lock(), nullptr);
}

TEST(Observers, LockKeepsAliveOrFailsWhileAnotherThreadLetsGo) {
  std::atomic<int> alive{0};
  for (int round = 0; round < 300; ++round) {
    zor::ref_ptr<Counted> object = zor::make_ref<Counted>(alive);
    std::atomic<bool> go{false};
    std::thread watcher([&go, observer = zor::observer_ptr<Counted>(object)] {
      while (!go) {
      }
      while (zor::ref_ptr<Counted> const held = observer.lock()) {
        ASSERT_GE(held->getReferenceCount(), 1);
      }
    });
    go = true;
    object.reset();
    watcher.join();
  }
  EXPECT_EQ(alive, 0);
}

TEST(Observers, FirstObserversMayBeMadeOnManyThreads) {
  std::atomic<int> alive{0};
  zor::ref_ptr<Counted> object = zor::make_ref<Counted>(alive);
  onThreads(4, [&object] {
    zor::observer_ptr<Counted> const observer(object);
    EXPECT_EQ(observer.lock(), object);
  });
}

} // namespace
