#pragma once

#include "platform/guard.h"
