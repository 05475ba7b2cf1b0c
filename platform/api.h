#pragma once

/// Everything is hidden unless it says so: classes and functions that leave libqalplatform carry this mark.
#define PLATFORM_API __attribute__((visibility("default")))
