#pragma once

#include <objc/runtime.h>
