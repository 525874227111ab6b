#pragma once

#include <zor/Vector.h>

#include <functional>
#include <memory>
#include <utility>

namespace zor {

/**
 * Signal to which any number of functions listen.
 *
 * A listener is a CallbackType value that its owner keeps: it listens as long as a copy of it lives, so an
 * owner that dies needs no farewell. Listeners may be added and removed, and the event may be destroyed,
 * while it is being raised: one that is removed is not called any more, one that is added is called from the
 * next time on. A copy of an event has the same listeners. Not meant for use from several threads at a time.
 */
template <class... Args>
class TypedEvent {
public:
  typedef std::function<void(Args...)> Function;

  /** A listener: copies share the function. */
  class CallbackType {
  public:
    CallbackType() = default;
    CallbackType(Function function) : m_function(std::make_shared<Function>(std::move(function))) {}

    /** \return true if there is a function to call */
    bool isValid() const { return m_function && *m_function; }

    /** Forgets the function; other copies go on listening. */
    void reset() { m_function.reset(); }

    /** Copies of one listener are equal. */
    bool operator==(CallbackType const&) const = default;

  private:
    friend class TypedEvent;
    std::shared_ptr<Function> m_function;
  };

  TypedEvent() = default;
  TypedEvent(TypedEvent const& other) : m_state(std::make_shared<State>()) { copyListeners(other); }
  TypedEvent& operator=(TypedEvent const& other) {
    if (this != &other) {
      m_state = std::make_shared<State>();
      copyListeners(other);
    }
    return *this;
  }
  ~TypedEvent() = default;

  /** Adds a listener, which the caller keeps. Adding one twice has it called once. */
  void add(CallbackType const& callback) {
    if (callback.isValid() && !contains(callback)) {
      m_state->listeners.push_back(callback.m_function);
    }
  }

  /** Adds a function. \return the listener; drop it to stop listening */
  [[nodiscard]] CallbackType add(Function function) {
    CallbackType callback(std::move(function));
    add(callback);
    return callback;
  }

  /** Removes a listener; nothing happens if it is not there. */
  void remove(CallbackType const& callback) {
    for (auto& listener : m_state->listeners) {
      if (isSame(listener, callback)) {
        listener.reset();
      }
    }
    m_state->tidy();
  }

  /** Removes all listeners. */
  void clear() {
    for (auto& listener : m_state->listeners) {
      listener.reset();
    }
    m_state->tidy();
  }

  /** \return true if the callback listens */
  bool contains(CallbackType const& callback) const {
    for (auto const& listener : m_state->listeners) {
      if (isSame(listener, callback)) {
        return true;
      }
    }
    return false;
  }

  /** \return the number of listeners alive */
  std::size_t getNumListeners() const {
    std::size_t count = 0;
    for (auto const& listener : m_state->listeners) {
      count += listener.expired() ? 0 : 1;
    }
    return count;
  }

  /** Calls every listener in the order of addition; what one throws ends the round and passes through. */
  void raise(Args... args) const {
    std::shared_ptr<State> const state = m_state; // a listener may destroy this event
    Round const round(*state);
    std::size_t const count = state->listeners.size();
    for (std::size_t i = 0; i < count; ++i) {
      if (std::shared_ptr<Function> const function = state->listeners[i].lock()) {
        (*function)(args...);
      }
    }
  }

  void operator()(Args... args) const { raise(args...); }

private:
  struct State {
    Vector<std::weak_ptr<Function>> listeners;
    int rounds = 0; // calls of raise() under way, during which positions must stay

    void tidy() {
      if (rounds > 0) {
        return;
      }
      auto const gone =
          std::remove_if(listeners.begin(), listeners.end(), [](auto const& f) { return f.expired(); });
      listeners.erase(gone, listeners.end());
    }
  };

  struct Round {
    State& state;
    explicit Round(State& s) : state(s) { ++state.rounds; }
    Round(Round const&) = delete;
    Round& operator=(Round const&) = delete;
    ~Round() {
      --state.rounds;
      state.tidy();
    }
  };

  static bool isSame(std::weak_ptr<Function> const& listener, CallbackType const& callback) {
    return callback.m_function && listener.lock() == callback.m_function;
  }

  void copyListeners(TypedEvent const& other) {
    m_state->listeners = other.m_state->listeners;
    m_state->tidy();
  }

  std::shared_ptr<State> m_state = std::make_shared<State>();
};

} // namespace zor
