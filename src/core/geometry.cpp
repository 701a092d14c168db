#include "core/geometry.h"
