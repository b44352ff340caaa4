// A stand-in for the helper programs of calibration steps:
//   vekTestHelperProgram <exit code> <milliseconds to sleep> [file to create]
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <thread>

int main(int argc, char** argv) {
  int code = argc > 1 ? std::atoi(argv[1]) : 0;
  int milliseconds = argc > 2 ? std::atoi(argv[2]) : 0;
  if (argc > 3) std::ofstream(argv[3]) << "ran";
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
  return code;
}
