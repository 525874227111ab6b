#pragma once

#include <zor/Constraint1DOF.h>
#include <zor/ref_ptr.h>
#include <zorSDK/StepEventListener.h>

namespace zorModel {

/** Lets the lock of one joint follow the position of another. */
class MimicListener : public zorSDK::StepEventListener {
public:
  MimicListener(zor::Constraint1DOF* leader, zor::Constraint1DOF* follower, zor::Real multiplier,
                zor::Real offset);

  void preCollide(zor::TimeStamp time) override;

protected:
  ~MimicListener() override = default;

private:
  zor::ref_ptr<zor::Constraint1DOF> m_leader;
  zor::ref_ptr<zor::Constraint1DOF> m_follower;
  zor::Real m_multiplier;
  zor::Real m_offset;
};

} // namespace zorModel
