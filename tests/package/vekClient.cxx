#include <iostream>

#include "vekErrorHelper.h"
#include "vekObject.h"

int main() {
  vek::Object* object = vek::Object::New();
  std::cout << *object;
  object->Release();
  std::cout << vek::ErrorHelper::GetErrorName(VEK_FILE_NOT_FOUND) << "\n";
  return vek::ErrorHelper::GetErrorName(VEK_FILE_NOT_FOUND) == "VEK_FILE_NOT_FOUND" ? 0 : 1;
}
