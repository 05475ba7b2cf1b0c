#include <cstdint>
#include <cstring>

/// A resource module that can be built to answer anything: see the definitions in CMakeLists.txt.
#ifndef MODULE_TYPE
#define MODULE_TYPE "Resource"
#endif
#ifndef MODULE_PRODUCT
#define MODULE_PRODUCT "1.0"
#endif
#ifndef MODULE_MINOR
#define MODULE_MINOR 0
#endif
#ifndef MODULE_ORDINAL
#define MODULE_ORDINAL 1
#endif

#define MODULE_EXPORT extern "C" __attribute__((visibility("default")))

#ifndef MODULE_WITHOUT_INTERFACE_VERSION
MODULE_EXPORT std::int32_t GetDLLInterfaceVersion(std::int32_t* major, std::int32_t* minor) {
  *major = 1;
  *minor = MODULE_MINOR;
  return 0;
}
#endif

MODULE_EXPORT std::int32_t GetDLLOrdinalVersion(std::int32_t* ordinal) {
  *ordinal = MODULE_ORDINAL;
  return 0;
}

MODULE_EXPORT std::int32_t GetDLLProductVersion(char* buffer, std::int32_t*) {
  std::strcpy(buffer, MODULE_PRODUCT);
  return 0;
}

MODULE_EXPORT std::int32_t GetDLLType(char* buffer, std::int32_t*) {
  std::strcpy(buffer, MODULE_TYPE);
  return 0;
}
