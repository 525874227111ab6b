#include <zor/ByteAllocator.h>
#include <zor/HashTable.h>
#include <zor/Name.h>
#include <zor/Vector.h>

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <sstream>
#include <thread>

namespace {

// Counts what is allocated, and may refuse.
class CountingAllocator : public zor::ByteAllocator {
public:
  CountingAllocator() { setDefault(this); }
  ~CountingAllocator() override { setDefault(nullptr); }

  void* allocate(std::size_t bytes, std::size_t alignment) override {
    if (bytes > limit) {
      throw std::bad_alloc();
    }
    used += bytes;
    return ByteAllocator::allocate(bytes, alignment);
  }
  void deallocate(void* memory, std::size_t bytes, std::size_t alignment) noexcept override {
    used -= bytes;
    ByteAllocator::deallocate(memory, bytes, alignment);
  }

  std::size_t used = 0;
  std::size_t limit = 1 << 20;
};

// Throws when it is copied for the n-th time.
struct Fragile {
  static inline int copiesLeft = 0;
  static inline int alive = 0;
  int value;
  explicit Fragile(int v) : value(v) { ++alive; }
  Fragile(Fragile const& other) : value(other.value) {
    if (copiesLeft-- == 0) {
      throw std::runtime_error("copy refused");
    }
    ++alive;
  }
  ~Fragile() { --alive; }
};

template <class T>
std::string text(zor::Vector<T> const& vector) {
  std::ostringstream result;
  for (T const& value : vector) {
    result << value << " ";
  }
  return result.str();
}

TEST(Vector, GrowsToFourThenDoubles) {
  zor::Vector<int> vector;
  EXPECT_EQ(vector.capacity(), 0u);
  EXPECT_EQ(vector.data(), nullptr);
  std::vector<std::size_t> capacities;
  for (int i = 0; i < 9; ++i) {
    vector.push_back(i);
    capacities.push_back(vector.capacity());
  }
  EXPECT_EQ(capacities, (std::vector<std::size_t>{4, 4, 4, 4, 8, 8, 8, 8, 16}));
  vector.clear();
  EXPECT_EQ(vector.capacity(), 16u);
  vector.reserve(2);
  EXPECT_EQ(vector.capacity(), 16u);
  EXPECT_EQ((zor::Vector<int>{1, 2}).capacity(), 4u);
}

TEST(Vector, InsertsAndErases) {
  zor::Vector<zor::String> v{"a", "b", "c"};
  EXPECT_EQ(*v.insert(v.begin() + 1, "x"), "x");
  v.insert(v.end(), 2, "y");
  v.insert(v.begin(), v.begin() + 1, v.begin() + 3); // a range of its own
  EXPECT_EQ(text(v), "x b a x b c y y ");
  EXPECT_EQ(*v.erase(v.begin()), "b");
  auto const last = v.erase(v.end() - 2, v.end());
  EXPECT_EQ(last, v.end());
  EXPECT_EQ(text(v), "b a x b c ");
  v.insert(v.begin(), v[4]); // an element that moves
  v.push_back(v[1]);
  v.erase(v.begin(), v.begin());
  EXPECT_EQ(text(v), "c b a x b c b ");
  EXPECT_EQ(v.find("x") - v.begin(), 3);
  EXPECT_FALSE(v.contains("nothing"));
}

TEST(Vector, PushingAnOwnElementWhileGrowing) {
  zor::Vector<zor::String> v{"a long text that is stored outside of the string object", "b", "c", "d"};
  ASSERT_EQ(v.size(), v.capacity());
  v.push_back(v.front());
  EXPECT_EQ(v.back(), v.front());
}

TEST(Vector, RefusesWhatIsOutside) {
  zor::Vector<int> v;
  zor::Vector<int> other{1, 2};
  EXPECT_THROW(v.front(), std::out_of_range);
  EXPECT_THROW(v.back(), std::out_of_range);
  EXPECT_THROW(v.pop_back(), std::out_of_range);
  EXPECT_THROW(v.at(0), std::out_of_range);
  EXPECT_THROW(v.erase(v.end()), std::out_of_range);
  v.push_back(7);
  EXPECT_THROW(v.erase(v.end()), std::out_of_range);
  EXPECT_THROW(v.insert(other.begin() + 1, 1), std::out_of_range);
  EXPECT_THROW(v.erase(v.end(), v.begin()), std::out_of_range);
  EXPECT_THROW(v.reserve(zor::Vector<int>::max_size() + 1), std::length_error);
  EXPECT_THROW(v.insert(v.end(), SIZE_MAX, 1), std::length_error);
  EXPECT_EQ(text(v), "7 ");
  try {
    v.at(3);
    FAIL();
  } catch (std::out_of_range const& e) {
    EXPECT_STREQ(e.what(), "Vector: index 3 out of range, size is 1");
  }
}

TEST(Vector, StorageComesFromTheInstalledAllocator) {
  CountingAllocator allocator;
  {
    zor::Vector<double> v(3, 1.5);
    EXPECT_EQ(allocator.used, 4 * sizeof(double));
    v.resize(100);
    allocator.limit = 100;
    EXPECT_THROW(v.reserve(1000), std::bad_alloc);
    EXPECT_EQ(v.size(), 100u);
    EXPECT_EQ(v[2], 1.5);
    EXPECT_EQ(v[99], 0.0);
    zor::ByteAllocator::setDefault(nullptr); // the vector keeps the one it began with
    zor::Vector<double> moved(std::move(v));
    EXPECT_EQ(v.size(), 0u);
    v = moved;
    EXPECT_EQ(v, moved);
  }
  EXPECT_EQ(allocator.used, 0u);
}

TEST(Vector, FailingCopiesLeaveTheElementsAlone) {
  Fragile::copiesLeft = 1000;
  {
    zor::Vector<Fragile> v;
    for (int i = 0; i < 4; ++i) {
      v.emplace_back(i);
    }
    Fragile::copiesLeft = 2;
    EXPECT_THROW(v.reserve(20), std::runtime_error);
    EXPECT_EQ(v.size(), 4u);
    EXPECT_EQ(v[3].value, 3);
    Fragile::copiesLeft = 2;
    EXPECT_THROW(zor::Vector<Fragile> copy(v), std::runtime_error);
    EXPECT_EQ(Fragile::alive, 4);
  }
  EXPECT_EQ(Fragile::alive, 0);
}

TEST(Vector, HoldsWhatCanOnlyBeMoved) {
  zor::Vector<std::unique_ptr<int>> v;
  for (int i = 0; i < 6; ++i) {
    v.push_back(std::make_unique<int>(i));
  }
  v.erase(v.begin() + 1);
  EXPECT_EQ(*v[1], 2);
}

TEST(HashTable, FindsReplacesAndReports) {
  zor::HashTable<int, zor::String> table{{1, "one"}, {2, "two"}};
  EXPECT_FALSE(table.insert(1, "uno"));
  EXPECT_EQ(table.at(1), "one");
  table.set(1, "uno");
  table[3] = "three";
  EXPECT_EQ(table.at(1), "uno");
  EXPECT_TRUE(table.erase(2));
  EXPECT_FALSE(table.erase(2));
  EXPECT_EQ(table.get(2, "none"), "none");
  EXPECT_THROW(table.at(2), std::out_of_range);
  EXPECT_EQ(table.size(), 2u);
}

TEST(Name, EqualTextIsStoredOnce) {
  zor::Name const a("body");
  zor::Name const b(zor::String("bo") + "dy");
  EXPECT_EQ(a, b);
  EXPECT_EQ(a.c_str(), b.c_str());
  EXPECT_NE(a, zor::Name("Body"));
  EXPECT_TRUE(zor::Name(static_cast<char const*>(nullptr)).empty());
  EXPECT_EQ(zor::Name(), zor::Name(""));
  EXPECT_LT(zor::Name("a"), zor::Name("b"));
}

TEST(Name, ComesAndGoesOnManyThreads) {
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([] {
      for (int i = 0; i < 5000; ++i) {
        zor::Name const name("shared" + std::to_string(i % 3));
        ASSERT_EQ(name.str().back(), '0' + i % 3);
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
}

} // namespace
