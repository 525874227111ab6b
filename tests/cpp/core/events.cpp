#include <zor/Callback.h>
#include <zor/Component.h>
#include <zor/Event.h>
#include <zor/HighAccuracyTimer.h>
#include <zor/Mutex.h>
#include <zor/Singleton.h>

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

namespace {

typedef zor::TypedEvent<int> IntEvent;

TEST(Event, ListenersEndWithTheirOwner) {
  IntEvent event;
  int sum = 0;
  auto a = event.add([&](int value) { sum += value; });
  {
    auto const b = event.add([&](int value) { sum += 10 * value; });
    event.add(b); // twice is once
    event.raise(1);
    EXPECT_EQ(sum, 11);
  }
  event.raise(1);
  EXPECT_EQ(sum, 12);
  IntEvent::CallbackType const copy = a;
  a.reset();
  event.raise(1);
  EXPECT_EQ(sum, 13) << "a copy of the listener is still there";
  event.remove(copy);
  event.raise(1);
  EXPECT_EQ(sum, 13);
  EXPECT_EQ(event.getNumListeners(), 0u);
}

TEST(Event, MayChangeWhileItIsRaised) {
  IntEvent event;
  std::string calls;
  IntEvent::CallbackType second, third, added;
  auto const first = event.add([&](int) {
    calls += "1";
    event.remove(second);
    third.reset();
    if (!added.isValid()) {
      added = event.add([&](int) { calls += "4"; });
    }
  });
  second = event.add([&](int) { calls += "2"; });
  third = event.add([&](int) { calls += "3"; });
  auto const last = event.add([&](int depth) {
    calls += "5";
    if (depth > 0) {
      event.raise(depth - 1);
    }
  });
  event.raise(1);
  EXPECT_EQ(calls, "15154") << "removed: not called any more; added: called from the next round on";
}

TEST(Event, MayDieWhileItIsRaised) {
  auto event = std::make_unique<zor::BoolEvent>();
  int calls = 0;
  auto const first = event->add([&](bool) { event.reset(); });
  auto const second = event->add([&](bool) { ++calls; });
  event->raise(true);
  EXPECT_EQ(calls, 1);
}

TEST(Event, StaysUsableAfterAListenerHasThrown) {
  zor::Event event;
  auto const bad = event.add([] { throw std::runtime_error("no"); });
  EXPECT_THROW(event.raise(), std::runtime_error);
  event.remove(bad);
  EXPECT_NO_THROW(event.raise());
}

TEST(Event, CopyHasTheSameListenersAndItsOwnList) {
  zor::Event original;
  int calls = 0;
  auto const listener = original.add([&] { ++calls; });
  zor::Event copy(original);
  original.clear();
  original.raise();
  EXPECT_EQ(calls, 0);
  copy.raise();
  EXPECT_EQ(calls, 1);
  original = copy;
  original.raise();
  EXPECT_EQ(calls, 2);
}

TEST(Callback, EmptyOneDoesNothing) {
  zor::Callback empty;
  empty.call();
  int calls = 0;
  empty = zor::Callback([&] { ++calls; });
  zor::Callback const copy = empty;
  empty.clear();
  empty();
  copy();
  EXPECT_EQ(calls, 1);
}

class Part : public zor::Component {
public:
  using Component::Component;
  void rebind() override {
    ++rebinds;
    Component::rebind();
  }
  int rebinds = 0;
};

TEST(Component, GroupsObjectsAndPassesThingsOn) {
  auto const whole = zor::make_ref<zor::Object>("whole");
  auto const parent = zor::make_ref<Part>("parent");
  auto const child = zor::make_ref<Part>("child");
  zor::ref_ptr<zor::Object> const leaf = zor::make_ref<zor::Object>("leaf");
  parent->setContext(whole.get());
  parent->addObject(child.get(), true);
  parent->addObject(child.get(), false);
  child->addObject(leaf.get(), true);
  child->addObject(new zor::Object("held by the group alone"), true);
  EXPECT_EQ(child->getContext(), whole.get());
  EXPECT_EQ(parent->getObjects().size(), 1u);
  parent->rebind();
  EXPECT_EQ(child->rebinds, 1);
  EXPECT_THROW(parent->addObject(nullptr, false), std::invalid_argument);
  EXPECT_THROW(parent->addObject(parent.get(), false), std::invalid_argument);
  testing::internal::CaptureStdout();
  parent->printSubtree();
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "parent\n  child\n    leaf\n    held by the group alone\n");
  parent->removeObject(leaf.get());
  parent->removeObject(child.get());
  EXPECT_EQ(child->getReferenceCount(), 1);
}

TEST(HighAccuracyTimer, RunsStopsAndGoesOn) {
  using namespace std::chrono_literals;
  zor::HighAccuracyTimer timer;
  std::this_thread::sleep_for(2ms);
  EXPECT_EQ(timer.getTime(), 0);
  timer.start();
  std::this_thread::sleep_for(5ms);
  timer.stop();
  double const stopped = timer.getTime();
  EXPECT_GE(stopped, 5);
  std::this_thread::sleep_for(2ms);
  EXPECT_EQ(timer.getTime(), stopped);
  timer.start();
  std::this_thread::sleep_for(2ms);
  EXPECT_GE(timer.getTime(), stopped + 2);
  timer.reset();
  EXPECT_FALSE(timer.isRunning());
  EXPECT_EQ(timer.getTime(), 0);
}

TEST(Mutex, ExcludesOtherThreadsOnly) {
  zor::Mutex mutex;
  zor::ScopedLock const lock(mutex);
  zor::ScopedLock const again(mutex);
  bool taken = true;
  std::thread([&] { taken = mutex.tryLock(); }).join();
  EXPECT_FALSE(taken);
}

class Service : public zor::Singleton {
public:
  Service(char name, std::string& log) : m_name(name), m_log(log) {}
  std::unique_ptr<Service> other;

protected:
  void shutdown() override {
    m_log += m_name;
    other.reset();
  }

private:
  char m_name;
  std::string& m_log;
};

TEST(Singleton, ShutsDownInReverseOrder) {
  std::string log;
  Service const a('a', log);
  auto b = std::make_unique<Service>('b', log);
  Service c('c', log);
  c.other = std::move(b); // destroyed before its turn comes
  zor::Singleton::shutdownAll();
  EXPECT_EQ(log, "ca");
}

} // namespace
