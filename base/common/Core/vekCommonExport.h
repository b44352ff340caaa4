#pragma once

// VEK_EXPORT marks what the library exports: the classes and free functions of namespace vek.
#if defined(_WIN32)
#if defined(VEK_BUILDING_LIBRARY)
#define VEK_EXPORT __declspec(dllexport)
#else
#define VEK_EXPORT __declspec(dllimport)
#endif
#else
#define VEK_EXPORT __attribute__((visibility("default")))
#endif
