#include <zorSDK/StepEventListener.h>

namespace zorSDK {

StepEventListener::StepEventListener(int mask) : EventListener(mask) {}

StepEventListener::~StepEventListener() = default;

void StepEventListener::preCollide(zor::TimeStamp) {}

void StepEventListener::pre(zor::TimeStamp) {}

void StepEventListener::post(zor::TimeStamp) {}

void StepEventListener::last(zor::TimeStamp) {}

} // namespace zorSDK
