#pragma once

#include <zor/Object.h>
#include <zor/Vector.h>
#include <zor/observer_ptr.h>
#include <zor/ref_ptr.h>

namespace zor {

/** Object that is part of a larger one, its context, and may group other objects. */
class Component : public Object {
public:
  Component() = default;
  /** \param name - name, need not be unique */
  explicit Component(String const& name) : Object(name) {}

  /**
   * Called with the object that this component becomes part of.
   * \param context - the larger object, only observed; null when the component leaves it
   */
  virtual void setContext(zor::Object* context);

  /** \return the object that this component is part of, or null */
  zor::Object* getContext() const;

  /** Called when the context has changed so much that what was looked up in it must be looked up again. */
  virtual void rebind();

  /**
   * Groups an object with this component; one that is there already stays once.
   * \param object - the object, held by the component
   * \param bindNow - true: a component among them gets this one's context at once
   * \throws std::invalid_argument if object is null or this component
   */
  virtual void addObject(zor::Object* object, bool bindNow);

  /** \param object - the object that leaves; nothing happens if it is not in the group */
  virtual void removeObject(zor::Object* object);

  /** \return the grouped objects in the order of addition */
  zor::Vector<zor::ref_ptr<zor::Object>> const& getObjects() const { return m_objects; }

  /** Prints the names of this component and of all below it to standard output, one a line, indented. */
  virtual void printSubtree() const;

protected:
  ~Component() override;

private:
  zor::observer_ptr<zor::Object> m_context;
  zor::Vector<zor::ref_ptr<zor::Object>> m_objects;
};

} // namespace zor
