#pragma once

#include <zor/TypedEvent.h>
#include <zor/Types.h>

namespace zor {

/** Signal without a value. */
class Event : public TypedEvent<> {};

/** Signal with a truth value. */
class BoolEvent : public TypedEvent<bool> {};

} // namespace zor
