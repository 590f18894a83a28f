#pragma once

#include "layer/pictures/StatusImages.h"
