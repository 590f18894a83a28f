#pragma once

#include "layer/pictures/SmallImage.h"
