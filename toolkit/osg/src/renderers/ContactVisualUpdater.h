#pragma once

#include <osg/Group>
#include <osg/observer_ptr>

#include <zor/observer_ptr.h>
#include <zorCollide/GeometryContact.h>
#include <zorSDK/ContactEventListener.h>
#include <zorSDK/StepEventListener.h>

#include "debug/DebugLines.h"

namespace zorOSG {

/** Draws the contacts that a listener is called for, as points with their normals. */
class ContactVisualUpdater : public zorSDK::StepEventListener {
public:
  ContactVisualUpdater(zorSDK::ContactEventListener& listener, osg::Group& root);

  void addNotification() override;
  void removeNotification() override;
  void last(zor::TimeStamp time) override;

protected:
  ~ContactVisualUpdater() override = default;

private:
  void write(zorCollide::GeometryContact const& contact);

  zor::observer_ptr<zorSDK::ContactEventListener> m_listener;
  osg::observer_ptr<osg::Group> m_root;
  DebugLines m_lines;
};

} // namespace zorOSG
