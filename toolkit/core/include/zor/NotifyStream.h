#pragma once

#include <zor/Notify.h>
